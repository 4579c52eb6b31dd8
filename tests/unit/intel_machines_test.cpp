// Intel GPUs on i915 and xe replayed from fixture machines through the facade: every live value against the
// fixture's own files, power and load over two ticks of a clock the test moves.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/fixture_library.h"

namespace {

using namespace Kalidornm;
namespace fs = std::filesystem;

int64_t gNowMicroseconds = 0;
int64_t testClock() { return gNowMicroseconds; }

constexpr int64_t kSecond = 1'000'000;  // µs
const std::string kDiscrete = "/sys/devices/pci0000:00/0000:00:01.0/0000:03:00.0";
const std::string kIntegrated = "/sys/devices/pci0000:00/0000:00:02.0";

// A writable copy of a fixture machine with the library started on it and the test's clock.
class IntelMachine {
public:
    explicit IntelMachine(const std::string& machine)
        : m_root((fs::temp_directory_path() / ("intel_" + std::to_string(::getpid()) + "_" + machine)).string()) {
        fs::remove_all(m_root);
        fs::copy(std::string(SYSFS_FIXTURES) + "/" + machine, m_root,
                 fs::copy_options::recursive | fs::copy_options::copy_symlinks);
        KalidorSources sources = FixtureLibrary::sourcesFor({m_root, ""});
        sources.monotonicMicroseconds = &testClock;
        Kalidor::setSources(sources);
        m_library = Kalidor::getInstance();
        m_started = m_library && m_library->startup(0, 0, 64, 64, 0, 0, true);
    }
    ~IntelMachine() {
        FixtureLibrary::stop();
        fs::remove_all(m_root);
    }

    bool started() const { return m_started; }
    Kalidor& library() { return *m_library; }

    // A value file of the machine as a number; -1 when it cannot be read.
    double number(const std::string& path) const {
        std::ifstream in(m_root + path);
        double value = -1;
        in >> value;
        return value;
    }
    void write(const std::string& path, const std::string& text) const {
        std::ofstream(m_root + path, std::ios::trunc) << text << '\n';
    }
    void add(const std::string& path, double amount) const { write(path, std::to_string(int64_t(number(path) + amount))); }

    // One refresh after the clock moved on by `elapsed`; the first GPU's sample.
    const LiveSample& tick(int64_t elapsed = kSecond) {
        gNowMicroseconds += elapsed;
        m_library->refreshLiveSample();
        return m_library->snapshot().gpus.at(0).live;
    }

private:
    std::string m_root;
    Kalidor* m_library = nullptr;
    bool m_started = false;
};

std::vector<std::string> namesOf(const std::vector<NamedReading>& readings) {
    std::vector<std::string> names;
    for (const NamedReading& r : readings) names.push_back(r.name);
    return names;
}

float valueOf(const std::vector<NamedReading>& readings, const std::string& name) {
    for (const NamedReading& r : readings)
        if (r.name == name) return r.value;
    return -1000.0f;
}

TEST(IntelMachines, ArcOnI915GivesItsHwmonAndClocksAndPowerOverTwoTicks) {
    IntelMachine m("i915-arc-a380");
    ASSERT_TRUE(m.started());
    ASSERT_EQ(m.library().getGpuCount(), 1u);
    const std::string hwmon = kDiscrete + "/hwmon/hwmon3/", card = kDiscrete + "/drm/card0/";

    const LiveSample first = m.tick();
    EXPECT_FALSE(first.suspended);
    EXPECT_EQ(first.coreTemperatureC, float(m.number(hwmon + "temp1_input") / 1000.0));
    EXPECT_EQ(namesOf(first.temperaturesC), std::vector<std::string>{"package"});
    EXPECT_FLOAT_EQ(valueOf(first.temperaturesC, "package"), float(m.number(hwmon + "temp1_input") / 1000.0));
    EXPECT_FALSE(first.memoryTemperatureC);
    EXPECT_EQ(first.fanRpm, float(m.number(hwmon + "fan1_input")));
    EXPECT_FALSE(first.fanPercent);  // no duty cycle from this driver
    EXPECT_EQ(first.currentGpuClockMhz, float(m.number(card + "gt_act_freq_mhz")));
    EXPECT_EQ(first.requestedGpuClockMhz, float(m.number(card + "gt_cur_freq_mhz")));
    EXPECT_FALSE(first.currentMemClockMhz);
    EXPECT_FALSE(first.currentPstate);  // the driver numbers no states
    EXPECT_EQ(first.currentVolts, float(m.number(hwmon + "in0_input") / 1000.0));
    EXPECT_EQ(namesOf(first.voltagesV), std::vector<std::string>{"gt"});
    EXPECT_DOUBLE_EQ(*first.energyJoules, m.number(hwmon + "energy1_input") / 1e6);
    EXPECT_FLOAT_EQ(*first.powerLimitWatts, float(m.number(hwmon + "power1_max") / 1e6));  // PL1, not the TDP
    EXPECT_EQ(first.throttleReasons, std::vector<std::string>{"pl1"});
    // The first read only stores the counters.
    EXPECT_FALSE(first.powerWatts);
    EXPECT_FALSE(first.gpuLoadPercent);

    // 37.5 J and 300 ms of rc6 in two seconds: 18.75 W, busy 85 % of the time.
    m.add(hwmon + "energy1_input", 37'500'000);
    m.add(card + "gt/gt0/rc6_residency_ms", 300);
    const LiveSample second = m.tick(2 * kSecond);
    ASSERT_TRUE(second.powerWatts);
    EXPECT_FLOAT_EQ(*second.powerWatts, 37.5f / 2.0f);
    ASSERT_TRUE(second.gpuLoadPercent);
    EXPECT_NEAR(*second.gpuLoadPercent, (1.0 - 300.0 / 2000.0) * 100.0, 1e-3);
    EXPECT_DOUBLE_EQ(*second.energyJoules, m.number(hwmon + "energy1_input") / 1e6);

    // A counter that went backwards (reset) gives no power for that tick and counts from there on.
    m.write(hwmon + "energy1_input", "1000000");
    m.write(card + "gt/gt0/rc6_residency_ms", "10");
    const LiveSample reset = m.tick();
    EXPECT_FALSE(reset.powerWatts);
    EXPECT_FALSE(reset.gpuLoadPercent);
    EXPECT_DOUBLE_EQ(*reset.energyJoules, 1.0);
    m.write(hwmon + "energy1_input", "11000000");
    m.write(card + "gt/gt0/rc6_residency_ms", "1010");
    const LiveSample after = m.tick();
    EXPECT_FLOAT_EQ(after.powerWatts.value_or(-1), 10.0f);
    EXPECT_NEAR(after.gpuLoadPercent.value_or(-1), 0.0, 1e-3);  // idle the whole second

    // A clock that did not move gives no rate either.
    m.add(hwmon + "energy1_input", 5'000'000);
    EXPECT_FALSE(m.tick(0).powerWatts);
}

TEST(IntelMachines, B580OnXeReadsItsChannelsByTheirLabels) {
    IntelMachine m("xe-b580");
    ASSERT_TRUE(m.started());
    const std::string hwmon = kDiscrete + "/hwmon/hwmon2/", gt = kDiscrete + "/tile0/gt0/";

    const LiveSample first = m.tick();
    EXPECT_EQ(namesOf(first.temperaturesC), (std::vector<std::string>{"package", "vram"}));
    EXPECT_FLOAT_EQ(valueOf(first.temperaturesC, "package"), float(m.number(hwmon + "temp2_input") / 1000.0));
    EXPECT_FLOAT_EQ(valueOf(first.temperaturesC, "vram"), float(m.number(hwmon + "temp3_input") / 1000.0));
    EXPECT_EQ(first.coreTemperatureC, float(m.number(hwmon + "temp2_input") / 1000.0));
    EXPECT_EQ(first.memoryTemperatureC, float(m.number(hwmon + "temp3_input") / 1000.0));
    EXPECT_EQ(first.fanRpm, float(m.number(hwmon + "fan1_input")));
    EXPECT_EQ(namesOf(first.voltagesV), std::vector<std::string>{"pkg"});
    EXPECT_FLOAT_EQ(valueOf(first.voltagesV, "pkg"), float(m.number(hwmon + "in1_input") / 1000.0));
    // The first GT is the graphics one; the media GT's clock is not the GPU's.
    EXPECT_EQ(first.currentGpuClockMhz, float(m.number(gt + "freq0/act_freq")));
    EXPECT_EQ(first.requestedGpuClockMhz, float(m.number(gt + "freq0/cur_freq")));
    // The card's counter, not the package's.
    EXPECT_DOUBLE_EQ(*first.energyJoules, m.number(hwmon + "energy1_input") / 1e6);
    // The card's PL1 reads 0 (disabled): its default TDP stands.
    ASSERT_EQ(m.number(hwmon + "power1_max"), 0.0);
    EXPECT_FLOAT_EQ(*first.powerLimitWatts, float(m.number(hwmon + "power1_rated_max") / 1e6));
    EXPECT_EQ(first.memoryTotalMb, uint64_t(m.number(kDiscrete + "/tile0/physical_vram_size_bytes")) >> 20);
    EXPECT_TRUE(first.throttleReasons.empty());

    m.add(hwmon + "energy1_input", 95'250'000);
    m.add(hwmon + "energy2_input", 50'000'000);
    m.add(gt + "gtidle/idle_residency_ms", 250);
    m.write(gt + "freq0/throttle/status", "1");
    m.write(gt + "freq0/throttle/reason_thermal", "1");
    m.write(gt + "freq0/throttle/reason_pl2", "1");
    const LiveSample second = m.tick();
    EXPECT_FLOAT_EQ(second.powerWatts.value_or(-1), 95.25f);
    EXPECT_NEAR(second.gpuLoadPercent.value_or(-1), 75.0, 1e-3);
    EXPECT_EQ(second.throttleReasons, (std::vector<std::string>{"pl2", "thermal"}));
}

TEST(IntelMachines, ArcOnAnOlderKernelHasNoFanAndNoTemperatureButTheRest) {
    IntelMachine m("i915-arc-old-kernel");
    ASSERT_TRUE(m.started());
    const std::string hwmon = kDiscrete + "/hwmon/hwmon4/", card = kDiscrete + "/drm/card0/";
    const LiveSample first = m.tick();
    EXPECT_FALSE(first.temperaturesRead);
    EXPECT_FALSE(first.coreTemperatureC);
    EXPECT_TRUE(first.temperaturesC.empty());
    EXPECT_FALSE(first.fanRead);
    EXPECT_FALSE(first.fanRpm);
    EXPECT_EQ(first.currentGpuClockMhz, float(m.number(card + "gt_act_freq_mhz")));
    EXPECT_EQ(first.currentVolts, float(m.number(hwmon + "in0_input") / 1000.0));
    EXPECT_FLOAT_EQ(*first.powerLimitWatts, float(m.number(hwmon + "power1_max") / 1e6));
    EXPECT_EQ(first.throttleReasons, std::vector<std::string>{"thermal"});
    m.add(hwmon + "energy1_input", 150'000'000);
    EXPECT_FLOAT_EQ(m.tick().powerWatts.value_or(-1), 150.0f);
}

TEST(IntelMachines, LaptopIgpuHasClocksAndLoadAndNoHwmonValueNorMemory) {
    IntelMachine m("i915-laptop");
    ASSERT_TRUE(m.started());
    const std::string card = kIntegrated + "/drm/card1/";
    const LiveSample first = m.tick();
    EXPECT_FALSE(first.temperaturesRead || first.fanRead);
    EXPECT_TRUE(first.temperaturesC.empty() && first.voltagesV.empty());
    EXPECT_FALSE(first.currentVolts || first.energyJoules || first.powerWatts || first.powerLimitWatts);
    EXPECT_FALSE(first.memoryTotalMb);  // no memory of its own: unknown, never 0
    EXPECT_EQ(first.currentGpuClockMhz, float(m.number(card + "gt_act_freq_mhz")));
    EXPECT_EQ(first.requestedGpuClockMhz, float(m.number(card + "gt_cur_freq_mhz")));
    EXPECT_TRUE(first.throttleReasons.empty());
    m.add(card + "gt/gt0/rc6_residency_ms", 900);
    EXPECT_NEAR(m.tick().gpuLoadPercent.value_or(-1), 10.0, 1e-3);
    // The record is the one every display adapter gets; the text report's memory line keeps its 0.
    EXPECT_EQ(m.library().getGpuMemorySizeMb(0), 0u);
    EXPECT_EQ(m.library().getGpuBusId(0), 0);
}

// Files that are not what the driver writes leave their values unknown and the others standing.
TEST(IntelMachines, GarbageInAFileLosesOnlyItsOwnValue) {
    IntelMachine m("xe-b580");
    ASSERT_TRUE(m.started());
    const std::string hwmon = kDiscrete + "/hwmon/hwmon2/";
    m.write(hwmon + "temp2_input", "hot");
    m.write(hwmon + "energy1_input", "-5");
    m.write(hwmon + "in1_input", "99999999999999999999999");
    m.write(kDiscrete + "/tile0/gt0/freq0/act_freq", "");
    const LiveSample sample = m.tick();
    EXPECT_FALSE(sample.coreTemperatureC);
    EXPECT_EQ(namesOf(sample.temperaturesC), std::vector<std::string>{"vram"});
    EXPECT_FALSE(sample.energyJoules);
    EXPECT_TRUE(sample.voltagesV.empty());
    EXPECT_FALSE(sample.currentGpuClockMhz);
    EXPECT_EQ(sample.fanRpm, float(m.number(hwmon + "fan1_input")));
    EXPECT_TRUE(sample.requestedGpuClockMhz);
}

}  // namespace
