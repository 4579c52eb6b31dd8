#include <gtest/gtest.h>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "tests/unit/fake_nvml_machine.h"
#include "support/call_log_file.h"
#include "support/fixture_library.h"
#include "support/open_watch.h"
#include "support/live_reads.h"
#include "support/sysfs_tree.h"

namespace {

using namespace Kalidornm;

// The calls the fake management library saw, one "<bus id> <call>" a line.
class CallLog {
public:
    std::vector<std::string> lines() const { return m_file.lines(); }
    // Calls that named the GPU with this driver bus id ("00000000:02:00.0").
    size_t callsFor(const std::string& busId) const {
        size_t count = 0;
        for (const std::string& line : lines()) count += line.rfind(busId + " ", 0) == 0;
        return count;
    }
    bool has(const std::string& line) const {
        for (const std::string& l : lines())
            if (l == line) return true;
        return false;
    }

private:
    CallLogFile m_file{"FAKE_NVML_CALL_LOG", "nvml_calls"};
};

constexpr const char* kTwoGeForces =
    "driver 550.54.15\n"
    "gpu 0 pci_device 0x1C8210DE\ngpu 0 pci_subsystem 0x37631458\ngpu 0 bus 1\ngpu 0 temp 40\ngpu 0 fan 30\n"
    "gpu 0 util_gpu 5\ngpu 0 clock_gfx 300\ngpu 0 clock_mem 400\ngpu 0 pstate 8\ngpu 0 power 20000\n"
    "gpu 0 enforced 75000\ngpu 0 limit 75000\ngpu 0 default_limit 75000\ngpu 0 min_limit 50000\n"
    "gpu 0 max_limit 75000\ngpu 0 memory_mb 4096\n"
    "gpu 1 pci_device 0x1C8210DE\ngpu 1 pci_subsystem 0x37631458\ngpu 1 bus 2\ngpu 1 temp 41\ngpu 1 fan 31\n";

// A laptop's two NVIDIA GPUs: the one on bus 1 awake, the one on bus 2 runtime-suspended.
struct TwoNvidiaGpus {
    SysfsTree tree;
    std::string awakeDir, sleepingDir;
    TwoNvidiaGpus() {
        SysfsTree::Device awake = SysfsTree::gpu("0000:01:00.0", 0x10DE, 0x1C82, "nvidia");
        awake.subvendor = 0x1458, awake.subdevice = 0x3763;
        awakeDir = tree.addDevice(awake);
        SysfsTree::Device sleeping = awake;
        sleeping.address = "0000:02:00.0";
        sleeping.runtimeStatus = "suspended";
        sleepingDir = tree.addDevice(sleeping);
    }
};

int readEverything(Kalidor& library, int gpu) {
    return readEveryLiveValue(library, gpu).answered + (library.queryActive3DApps(gpu) > 0);
}

// The sleeping GPU is never named to the driver, whether or not the other one is awake: not enumerated at
// start-up, not read at a tick.
TEST(SleepRule, ASuspendedGpuGetsNoCallWhileItsNeighbourIsRead) {
    TwoNvidiaGpus machine;
    FakeNvmlMachine nvml(kTwoGeForces);
    CallLog calls;
    FixtureLibrary started({machine.tree.root(), nvml.path()});
    Kalidor& library = started.library();

    ASSERT_EQ(library.getGpuCount(), 2u);
    EXPECT_EQ(library.getGpuBusId(0), 1);
    EXPECT_EQ(library.getGpuBusId(1), 2);
    EXPECT_GT(readEverything(library, 0), 5);
    EXPECT_EQ(readEverything(library, 1), 0);

    // The sleeping GPU still has its record: name and figures from the GPU database, the kernel's driver.
    EXPECT_STREQ(library.getGpuName(1), "NVIDIA GeForce GTX 1050 Ti");
    EXPECT_STREQ(library.getGpuCodename(1), library.getGpuCodename(0));
    EXPECT_FALSE(library.hasGpuTemperature(1));

    EXPECT_GT(calls.callsFor("00000000:01:00.0"), 10u);
    EXPECT_EQ(calls.callsFor("00000000:02:00.0"), 0u);
    // Started without attaching to any GPU; the awake one asked for by its bus id, nothing listed.
    EXPECT_TRUE(calls.has("- InitWithFlags 2"));
    EXPECT_TRUE(calls.has("00000000:01:00.0 DeviceGetHandleByPciBusId"));
    EXPECT_FALSE(calls.has("- DeviceGetCount"));
}

// A GPU that falls asleep after start-up is left alone as well: the runtime state is asked at every read.
TEST(SleepRule, AGpuThatFallsAsleepLaterIsNotWokenByTheTick) {
    TwoNvidiaGpus machine;
    FakeNvmlMachine nvml(kTwoGeForces);
    CallLog calls;
    FixtureLibrary started({machine.tree.root(), nvml.path()});
    Kalidor& library = started.library();
    ASSERT_GT(readEverything(library, 0), 5);

    machine.tree.write(machine.awakeDir + "/power/runtime_status", "suspended\n");
    const size_t before = calls.callsFor("00000000:01:00.0");
    EXPECT_EQ(readEverything(library, 0), 0);
    EXPECT_EQ(library.readGpuCoreTemperature(0), 0.0f);
    EXPECT_EQ(calls.callsFor("00000000:01:00.0"), before);

    machine.tree.write(machine.awakeDir + "/power/runtime_status", "active\n");
    EXPECT_GT(readEverything(library, 0), 5);
}

// The snapshot's one refresh for all GPUs follows the same rule: the sleeping GPU is marked, not asked, and
// wakes into a full sample again.
TEST(SleepRule, TheSnapshotRefreshMarksTheSleepingGpuAndAsksItNothing) {
    TwoNvidiaGpus machine;
    FakeNvmlMachine nvml(kTwoGeForces);
    CallLog calls;
    FixtureLibrary started({machine.tree.root(), nvml.path()});
    Kalidor& library = started.library();

    library.refreshLiveSample();
    const MachineSnapshot& snapshot = library.snapshot();
    ASSERT_EQ(snapshot.gpus.size(), 2u);
    const LiveSample& awake = snapshot.gpus[0].live;
    EXPECT_FALSE(awake.suspended);
    EXPECT_EQ(awake.coreTemperatureC, 40.0f);
    EXPECT_EQ(awake.fanPercent, 30.0f);
    EXPECT_EQ(awake.gpuLoadPercent, 5.0f);
    EXPECT_TRUE(awake.currentGpuClockMhz.has_value());
    const LiveSample& asleep = snapshot.gpus[1].live;
    EXPECT_TRUE(asleep.suspended);
    EXPECT_FALSE(asleep.temperaturesRead || asleep.fanRead || asleep.loadRead);
    EXPECT_FALSE(asleep.coreTemperatureC || asleep.fanPercent || asleep.currentGpuClockMhz);
    EXPECT_EQ(calls.callsFor("00000000:02:00.0"), 0u);
    // Its identity stays in the snapshot.
    EXPECT_EQ(snapshot.gpus[1].name, "NVIDIA GeForce GTX 1050 Ti");

    machine.tree.write(machine.awakeDir + "/power/runtime_status", "suspended\n");
    const size_t before = calls.callsFor("00000000:01:00.0");
    library.refreshLiveSample();
    EXPECT_TRUE(library.snapshot().gpus[0].live.suspended);
    EXPECT_FALSE(library.snapshot().gpus[0].live.coreTemperatureC);
    EXPECT_EQ(calls.callsFor("00000000:01:00.0"), before);
}

// With every NVIDIA GPU asleep the library is not even loaded. Regression: the driver version then read 0 and
// the report printed "(R0.00)", though the kernel module tells it without waking anything.
TEST(SleepRule, WithEveryGpuAsleepTheLibraryIsNotStartedAndTheModuleTellsTheVersion) {
    TwoNvidiaGpus machine;
    machine.tree.write(machine.awakeDir + "/power/runtime_status", "suspended\n");
    machine.tree.write("/sys/module/nvidia/version", "550.54.15\n");
    FakeNvmlMachine nvml(kTwoGeForces);
    CallLog calls;
    FixtureLibrary started({machine.tree.root(), nvml.path()});
    Kalidor& library = started.library();
    EXPECT_EQ(library.getGpuCount(), 2u);
    EXPECT_TRUE(calls.lines().empty());
    EXPECT_EQ(library.getDriverVersionNumber(), 55054u);
    EXPECT_STREQ(library.getDriverBranch(), "r550");
}

// A library without the flag call starts through the plain init; without a call by bus id it could only list
// every GPU, waking the sleeping one, so it lists none and the awake GPU goes unread.
TEST(SleepRule, AnOldLibraryStartsPlainlyAndListsNothingWhileAGpuSleeps) {
    TwoNvidiaGpus machine;
    FakeNvmlMachine nvml(kTwoGeForces);
    CallLog calls;
    FixtureMachineSources sources{machine.tree.root(), nvml.path()};
    KalidorSources withOldLibrary = FixtureLibrary::sourcesFor(sources);
    withOldLibrary.nvmlLibrary = FakeNvmlMachine::library("legacy");
    Kalidor::setSources(withOldLibrary);
    Kalidor* library = Kalidor::getInstance();
    ASSERT_TRUE(library->startup(0, 0, 64, 64, 0, 0, true));
    readEverything(*library, 0);
    readEverything(*library, 1);
    EXPECT_TRUE(calls.has("- Init"));
    EXPECT_EQ(calls.callsFor("00000000:02:00.0"), 0u);
    EXPECT_FALSE(calls.has("- DeviceGetCount"));
    FixtureLibrary::stop();
}

// An Intel GPU that sleeps has none of its hwmon, DRM card, GT or tile files opened, nor their folders
// listed, by any read or refresh; awake, the same reads open them. On both drivers.
TEST(SleepRule, ASuspendedIntelGpuOpensNoneOfItsLiveFiles) {
    namespace fs = std::filesystem;
    const std::string device = "/sys/devices/pci0000:00/0000:00:01.0/0000:03:00.0";
    for (const std::string machine : {"xe-b580", "i915-arc-a380"}) {
        const std::string root = ::testing::TempDir() + "sleeping_" + std::to_string(::getpid()) + "_" + machine;
        fs::remove_all(root);
        fs::copy(std::string(SYSFS_FIXTURES) + "/" + machine, root,
                 fs::copy_options::recursive | fs::copy_options::copy_symlinks);
        std::ofstream(root + device + "/power/runtime_status") << "suspended\n";
        {
            FixtureLibrary started({root, ""});
            Kalidor& library = started.library();
            ASSERT_EQ(library.getGpuCount(), 1u) << machine;
            OpenWatch watch;
            size_t watched = 0;
            ASSERT_TRUE(watch.watch(root + device));
            for (const auto& entry : fs::recursive_directory_iterator(root + device)) {
                if (!entry.is_directory() || entry.path().filename() == "power") continue;
                ASSERT_TRUE(watch.watch(entry.path().string())) << entry.path();
                ++watched;
            }
            EXPECT_GT(watched, 5u) << machine;
            (void)watch.opened();  // the walk above opened the folders it watched

            EXPECT_EQ(readEveryLiveValue(library, 0).answered, 0) << machine;
            library.refreshLiveSample();
            library.refreshLiveSample();
            EXPECT_TRUE(library.snapshot().gpus[0].live.suspended);
            EXPECT_EQ(watch.opened().size(), 0u) << machine;

            std::ofstream(root + device + "/power/runtime_status") << "active\n";
            library.refreshLiveSample();
            EXPECT_TRUE(library.snapshot().gpus[0].live.currentGpuClockMhz) << machine;
            EXPECT_GT(watch.opened().size(), 5u) << machine;
        }
        fs::remove_all(root);
    }
}

// An amdgpu card with every file the live reads use (labelled sensors, power, clocks, memory, gpu_metrics).
std::string addAmdCard(SysfsTree& tree, const std::string& address, const std::string& runtimeStatus) {
    const std::string dir = tree.addDevice(SysfsTree::gpu(address, 0x1002, 0x73BF, "amdgpu", runtimeStatus));
    const std::string hwmon = dir + "/hwmon/hwmon1/";
    const char* files[][2] = {
        {"temp1_input", "45000"}, {"temp1_label", "edge"}, {"temp2_input", "52000"}, {"temp2_label", "junction"},
        {"in0_input", "862"},     {"in0_label", "vddgfx"}, {"pwm1", "77"},           {"pwm1_max", "255"},
        {"fan1_input", "1100"},   {"power1_average", "41000000"}, {"power1_cap", "203000000"},
        {"power1_cap_default", "203000000"}, {"freq1_input", "1815000000"}, {"freq1_label", "sclk"},
    };
    for (const auto& [name, value] : files) tree.write(hwmon + name, std::string(value) + "\n");
    tree.write(dir + "/pp_dpm_sclk", "0: 500Mhz\n1: 1815Mhz *\n");
    tree.write(dir + "/pp_dpm_mclk", "0: 96Mhz\n1: 1000Mhz *\n");
    tree.write(dir + "/gpu_busy_percent", "12\n");
    tree.write(dir + "/mem_info_vram_used", "1178599424\n");
    tree.write(dir + "/gpu_metrics", std::string("\x08\x00\x01\x03\x2c\x00\x34\x00", 8));
    return dir;
}

// A sleeping AMD card has none of its files opened by a refresh or by the vendor reader's extra reads, while
// the awake card beside it is read in full; once it wakes, it is read too.
TEST(SleepRule, ASleepingAmdCardHasNoFileOpenedByTheLiveReads) {
    SysfsTree tree;
    const std::string sleepingDir = addAmdCard(tree, "0000:01:00.0", "suspended");
    addAmdCard(tree, "0000:02:00.0", "active");
    FixtureLibrary started({tree.root(), ""});
    Kalidor& library = started.library();
    ASSERT_EQ(library.getGpuCount(), 2u);
    ASSERT_EQ(library.getGpuBusId(0), 1);

    OpenWatch watch;
    ASSERT_TRUE(watch.watch(tree.root() + sleepingDir));
    ASSERT_TRUE(watch.watch(tree.root() + sleepingDir + "/hwmon/hwmon1"));
    library.refreshLiveSample();
    LiveSample direct;
    library.readGpuMoreLive(0, direct);
    EXPECT_EQ(watch.opened(), std::vector<std::string>{});
    EXPECT_FALSE(direct.moreRead);
    const LiveSample& asleep = library.snapshot().gpus[0].live;
    EXPECT_TRUE(asleep.suspended);
    EXPECT_TRUE(asleep.temperaturesC.empty() && asleep.voltagesV.empty());
    EXPECT_FALSE(asleep.powerWatts || asleep.memoryUsedMb || asleep.moreRead || asleep.throttleRead);
    const LiveSample& awake = library.snapshot().gpus[1].live;
    EXPECT_TRUE(awake.moreRead);
    EXPECT_EQ(awake.hotspotTemperatureC, 52.0f);
    EXPECT_EQ(awake.powerWatts, 41.0f);

    tree.write(sleepingDir + "/power/runtime_status", "active\n");
    library.refreshLiveSample();
    EXPECT_FALSE(watch.opened().empty());
    EXPECT_EQ(library.snapshot().gpus[0].live.hotspotTemperatureC, 52.0f);
    EXPECT_EQ(library.snapshot().gpus[0].live.memoryUsedMb, 1124u);  // 1178599424 bytes / 2^20
}

}  // namespace
