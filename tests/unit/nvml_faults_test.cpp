#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/unit/fake_nvml_machine.h"
#include "support/fixture_library.h"
#include "support/live_reads.h"
#include "support/sysfs_tree.h"

namespace {

using namespace Kalidornm;

// Makes the fake management library misbehave for the life of the object.
class NvmlFault {
public:
    explicit NvmlFault(const char* mode) { ::setenv("FAKE_NVML_FAULT", mode, 1); }
    ~NvmlFault() { ::unsetenv("FAKE_NVML_FAULT"); }
};

// The values beyond the classic reads, none of which a misbehaving driver may fill.
void expectNothingMoreLive(Kalidor& library) {
    LiveSample sample;
    library.readGpuMoreLive(0, sample);
    EXPECT_TRUE(sample.temperaturesC.empty());
    EXPECT_FALSE(sample.powerWatts || sample.powerLimitWatts || sample.energyJoules);
    EXPECT_FALSE(sample.memoryUsedMb || sample.memoryTotalMb);
    EXPECT_TRUE(sample.throttleReasons.empty());
}

// One NVIDIA GPU on bus 1 with every value answering; a device id the GPU database has or has not.
class OneNvidiaGpu {
public:
    explicit OneNvidiaGpu(uint32_t deviceId)
        : m_nvml("driver 550.54.15\n"
                 "gpu 0 pci_device 0x" + hex(deviceId) + "10DE\ngpu 0 bus 1\ngpu 0 name NVIDIA Prototype\n"
                 "gpu 0 vbios 86.04.55.00.01\ngpu 0 memory_mb 8192\ngpu 0 free_mb 4096\ngpu 0 cores 2560\n"
                 "gpu 0 bus_width 256\ngpu 0 pcie_width 16\ngpu 0 irq 40\ngpu 0 temp 50\ngpu 0 mem_temp 60\n"
                 "gpu 0 fan 40\ngpu 0 rpm 1400\ngpu 0 util_gpu 20\ngpu 0 util_mem 10\ngpu 0 clock_gfx 1500\n"
                 "gpu 0 clock_mem 7000\ngpu 0 max_gfx 1900\ngpu 0 max_mem 7000\ngpu 0 app_gfx 1600\n"
                 "gpu 0 app_mem 7000\ngpu 0 pstate 2\ngpu 0 power 120000\ngpu 0 enforced 200000\n"
                 "gpu 0 limit 200000\ngpu 0 default_limit 200000\ngpu 0 min_limit 100000\n"
                 "gpu 0 max_limit 250000\ngpu 0 gpc_offset 10\ngpu 0 mem_offset 20\ngpu 0 pids 1,2\n"
                 "gpu 0 energy 5000000\ngpu 0 pstates 0,2\ngpu 0 pstate_clocks 0 300 1900 7000 7000\n"
                 "gpu 0 pstate_clocks 2 300 1900 6500 7000\n") {
        m_tree.addDevice(SysfsTree::gpu("0000:01:00.0", 0x10DE, deviceId, "nvidia"));
    }
    FixtureMachineSources sources() const { return {m_tree.root(), m_nvml.path()}; }

private:
    static std::string hex(uint32_t value) {
        char text[8];
        std::snprintf(text, sizeof text, "%04X", value);
        return text;
    }
    SysfsTree m_tree;
    FakeNvmlMachine m_nvml;
};

// How the driver's texts read back when it writes them badly: the GPU's name and VBIOS as kept, and no driver
// version found in a text that holds none.
struct DriverTextFault {
    const char* mode;
    std::string name;
    std::string bios;
};

const DriverTextFault kDriverTextFaults[] = {
    // Regression: a name filling NVML's 96-byte buffer (or a VBIOS filling its 32 bytes) without a terminator
    // was read past the buffer's end (AddressSanitizer: stack-buffer-overflow).
    {"unterminated", std::string(96, 'X'), std::string(32, 'X')},
    // Texts as long as the buffer allows are kept whole.
    {"long_strings", std::string(95, 'L'), std::string(31, 'L')},
    // Special characters pass through unchanged; the VBIOS, longer than its buffer, was refused by the driver.
    {"special_chars", "<Quadro & \"RTX\"> 'A6000' %s%n%x \\ \t\xC3\x84\xE2\x82\xAC", ""},
};

TEST(NvmlFaults, DriverTextsEndAtTheirBuffersAndPassThroughUnchanged) {
    for (const DriverTextFault& text : kDriverTextFaults) {
        SCOPED_TRACE(text.mode);
        OneNvidiaGpu machine(0x7FFF);
        NvmlFault fault(text.mode);
        FixtureLibrary started(machine.sources());
        Kalidor& library = started.library();
        ASSERT_EQ(library.getGpuCount(), 1u);
        EXPECT_EQ(std::string(library.getGpuName(0)), text.name);
        EXPECT_EQ(std::string(library.getGpuBiosVersion(0)), text.bios);
        EXPECT_EQ(library.getDriverVersionNumber(), 0u);
        EXPECT_STREQ(library.getDriverBranch(), "");
    }
}

// Regression: outputs a failing call had scribbled over were taken as readings.
TEST(NvmlFaults, ErrorsFromEveryCallLeaveTheRecordFromThePciLayerAndNoReading) {
    OneNvidiaGpu machine(0x1180);
    NvmlFault fault("errors");
    FixtureLibrary started(machine.sources());
    Kalidor& library = started.library();
    ASSERT_EQ(library.getGpuCount(), 1u);
    EXPECT_STREQ(library.getGpuName(0), "NVIDIA GeForce GTX 680");  // ids from the PCI layer, name from the database
    EXPECT_EQ(library.getGpuBusId(0), 1);
    EXPECT_STREQ(library.getGpuBiosVersion(0), "");
    EXPECT_EQ(library.getGpuMemorySizeMb(0), 0u);
    EXPECT_EQ(library.getGpuShaderCores(0), 1536);  // the database's figure, not the scribbled 3
    EXPECT_EQ(library.getDriverVersionNumber(), 0u);
    EXPECT_FALSE(library.hasGpuTemperature(0));
    const LiveReadOutcome reads = readEveryLiveValue(library, 0);
    EXPECT_EQ(reads.answered, 0);
    EXPECT_FALSE(reads.outputsTouched);
    EXPECT_EQ(library.queryActive3DApps(0), 0u);
    EXPECT_EQ(library.getGpuPerfLevelCount(0), 0u);
    expectNothingMoreLive(library);
}

// Regression: 0xFFFFFFFF MHz and other "not available" answers were taken as readings and printed as -1MHz.
TEST(NvmlFaults, LargestValuesOfTheirTypeAreNoReadings) {
    OneNvidiaGpu machine(0x1180);
    NvmlFault fault("huge_values");
    FixtureLibrary started(machine.sources());
    Kalidor& library = started.library();
    ASSERT_EQ(library.getGpuCount(), 1u);
    EXPECT_EQ(library.getGpuPerfLevelCount(0), 0u);
    EXPECT_EQ(library.getGpuMemorySizeMb(0), 0u);
    uint32_t bits = 7;
    ASSERT_TRUE(library.getGpuMemoryBusWidth(0, &bits, nullptr));
    EXPECT_EQ(bits, 0u);
    EXPECT_FALSE(library.hasGpuTemperature(0));
    // Only the limiter bits and the board id answer: they are no quantities.
    EXPECT_EQ(readEveryLiveValue(library, 0).answered, 2);
    EXPECT_FALSE(library.setGpuPowerTarget(0, 90.0f));
    expectNothingMoreLive(library);  // the throttle reasons of the machine are none
}

// The P-state list filling all the room it is given, its states repeated among states no GPU has: each real
// state once, in order.
TEST(NvmlFaults, APstateListWithoutEndGivesEachStateOnce) {
    OneNvidiaGpu machine(0x1180);
    NvmlFault fault("huge_count");
    FixtureLibrary started(machine.sources());
    Kalidor& library = started.library();
    ASSERT_EQ(library.getGpuCount(), 1u);
    ASSERT_EQ(library.getGpuPerfLevelCount(0), 2u);
    uint32_t first = 99, second = 99;
    ASSERT_TRUE(library.readGpuPerfLevel(0, 0, &first, nullptr, nullptr, nullptr, nullptr));
    ASSERT_TRUE(library.readGpuPerfLevel(0, 1, &second, nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(first, 0u);
    EXPECT_EQ(second, 2u);
}

// A machine whose bus shows no NVIDIA GPU lists the driver's own GPUs, whatever count the driver claims.
TEST(NvmlFaults, ZeroAndHugeGpuAndProcessCountsAreBounded) {
    SysfsTree tree;
    tree.addDevice(SysfsTree::gpu("0000:00:02.0", 0x8086, 0x9A49, "i915"));
    FakeNvmlMachine nvml("gpu 0 pci_device 0x118010DE\ngpu 0 bus 1\ngpu 0 pids 10,11\n"
                         "gpu 1 pci_device 0x118010DE\ngpu 1 bus 2\n");
    {
        NvmlFault fault("zero_count");
        FixtureLibrary started({tree.root(), nvml.path()});
        EXPECT_EQ(started.library().getGpuCount(), 1u);  // the Intel GPU alone
    }
    NvmlFault fault("huge_count");
    FixtureLibrary started({tree.root(), nvml.path()});
    Kalidor& library = started.library();
    ASSERT_EQ(library.getGpuCount(), 3u);  // each of the two NVIDIA GPUs once, then the Intel one
    EXPECT_EQ(library.getGpuBusId(0), 1);
    EXPECT_EQ(library.getGpuBusId(1), 2);
    EXPECT_EQ(library.queryActive3DApps(0), 0u);  // 0xFFFFFFFF processes in a room of 128: not believed
}

}  // namespace
