#include <gtest/gtest.h>

#include <sys/stat.h>

#include <cstdio>
#include <string>
#include <vector>

#include "tests/unit/fake_nvml_machine.h"
#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"

namespace {

using namespace Kalidornm;

// The library with the NVIDIA records of one fake machine, made as start-up makes them.
class NvidiaFacade : public ::testing::Test {
protected:
    void start(const std::string& settings, const std::string& variant = "full") {
        m_machine.reset();  // its file and setting go before the next machine's arrive
        m_machine = std::make_unique<FakeNvmlMachine>(settings);
        library = Kalidor::getInstance();
        ASSERT_NE(library, nullptr);
        ASSERT_NE(library->caps(), nullptr);
        HardwareCaps& caps = *library->caps();
        caps.sources.nvmlLibrary = FakeNvmlMachine::library(variant);
        caps.sources.rootDir = ::testing::TempDir() + "no-sysfs";  // no sleeping GPU to respect
        caps.pci = PciBus::scan(caps.sources.rootDir);
        caps._createGpuRecords(gGlobals.gpus);
        gGlobals.snapshot.reset();  // the facade reads its static facts from the records made here
    }
    void TearDown() override {
        gGlobals.gpus.clear();
        gGlobals.snapshot.reset();
        if (library && library->caps()) {
            library->caps()->cleanup();
            library->caps()->nvidia.reset();
            library->caps()->sources = KalidorSources{};
        }
    }
    GpuRecord& record(long i) { return *gGlobals.gpus.at(i); }

    Kalidor* library = nullptr;

private:
    std::unique_ptr<FakeNvmlMachine> m_machine;
};

TEST_F(NvidiaFacade, LiveReadsGiveTheDriversValuesInTheirUnits) {
    start(kBusyGtx680);
    ASSERT_EQ(library->getGpuCount(), 1u);

    float core = -1, board = -1, memory = -1, vrm = -1;
    ASSERT_TRUE(library->readGpuTemperatures(0, &core, &board, &memory, &vrm));
    EXPECT_FLOAT_EQ(core, 45.0f);
    EXPECT_FLOAT_EQ(memory, 60.0f);
    EXPECT_FLOAT_EQ(board, -1.0f);  // the library has no board sensor: unknown, not 0 °C
    EXPECT_FLOAT_EQ(vrm, -1.0f);
    EXPECT_FLOAT_EQ(library->readGpuCoreTemperature(0), 45.0f);

    float percent = -1, rpm = -1;
    ASSERT_TRUE(library->readGpuFanSpeed(0, &percent, &rpm));
    EXPECT_FLOAT_EQ(percent, 35.0f);
    EXPECT_FLOAT_EQ(rpm, 1500.0f);

    float gpuLoad = -1, fbLoad = -1;
    ASSERT_TRUE(library->readGpuLoad(0, &gpuLoad, &fbLoad));
    EXPECT_FLOAT_EQ(gpuLoad, 12.0f);
    EXPECT_FLOAT_EQ(fbLoad, 7.0f);
    EXPECT_FLOAT_EQ(record(0).videoLoadPercent, 3.0f);

    uint32_t pstate = 0;
    float gpuMhz = -1, memMhz = -1, shaderMhz = -7, volts = -7;
    ASSERT_TRUE(library->readGpuCurrentClocks(0, &pstate, &gpuMhz, &memMhz, &shaderMhz, &volts));
    EXPECT_EQ(pstate, 8u);
    EXPECT_FLOAT_EQ(gpuMhz, 405.0f);
    EXPECT_FLOAT_EQ(memMhz, 810.0f);
    EXPECT_FLOAT_EQ(shaderMhz, -7.0f);  // neither reported by the driver
    EXPECT_FLOAT_EQ(volts, -7.0f);

    // The fake lists no P-states: the table is the current state alone, at its current clocks, with no range.
    uint32_t id = 99;
    ASSERT_EQ(library->getGpuPerfLevelCount(0), 1u);
    ASSERT_TRUE(library->readGpuPerfLevel(0, 0, &id, &gpuMhz, &memMhz, nullptr, &volts));
    EXPECT_EQ(id, 8u);
    EXPECT_FLOAT_EQ(gpuMhz, 405.0f);
    EXPECT_FLOAT_EQ(volts, 0.0f);
    EXPECT_FALSE(library->getGpuPerfLevelMinClocks(0, 0, &gpuMhz, &memMhz));
    EXPECT_FALSE(library->readGpuPerfLevel(0, 1, &id, nullptr, nullptr, nullptr, nullptr));

    const std::pair<uint32_t, std::pair<float, float>> clockTypes[] = {
        {0, {405, 810}}, {1, {1006, 3004}}, {2, {1110, 3004}}, {3, {405, 810}}};
    for (auto [type, expected] : clockTypes) {
        ASSERT_TRUE(library->readGpuClockFrequencies(0, type, &gpuMhz, &memMhz)) << type;
        EXPECT_FLOAT_EQ(gpuMhz, expected.first) << type;
        EXPECT_FLOAT_EQ(memMhz, expected.second) << type;
    }
    // P0 runs at the maximum clocks, which the snapshot keeps as the P0 set.
    const std::optional<ClockSet>& p0 = library->snapshot().gpus.at(0).nvidia.p0Clocks;
    ASSERT_TRUE(p0);
    EXPECT_FLOAT_EQ(p0->gpuMhz, clockTypes[2].second.first);
    float coreOffset = 0, memOffset = 0;
    ASSERT_TRUE(library->readGpuClockOffsets(0, &coreOffset, &memOffset, nullptr));
    EXPECT_FLOAT_EQ(coreOffset, -50.0f);
    EXPECT_FLOAT_EQ(memOffset, 200.0f);

    uint32_t mw = 0;
    ASSERT_TRUE(library->readGpuPowerUsage(0, &percent, &mw));
    EXPECT_FLOAT_EQ(percent, 60.0f);  // 150 W of the 250 W default limit, not of the 300 W enforced one
    EXPECT_EQ(mw, 150000u);
    ASSERT_TRUE(library->readGpuPowerTarget(0, &percent, &mw));
    EXPECT_FLOAT_EQ(percent, 80.0f);  // 200 W limit against the 250 W default
    EXPECT_EQ(mw, 200000u);
    float minPct = 0, maxPct = 0, defPct = 0;
    uint32_t minMw = 0, maxMw = 0, defMw = 0;
    ASSERT_TRUE(library->readGpuPowerPolicy(0, &minPct, &minMw, &maxPct, &maxMw, &defPct, &defMw));
    EXPECT_FLOAT_EQ(minPct, 40.0f);
    EXPECT_FLOAT_EQ(maxPct, 140.0f);
    EXPECT_FLOAT_EQ(defPct, 100.0f);
    EXPECT_EQ(minMw, 100000u);
    EXPECT_EQ(maxMw, 350000u);
    EXPECT_EQ(defMw, 250000u);
    ASSERT_TRUE(library->setGpuPowerTarget(0, 90.0f));
    ASSERT_TRUE(library->readGpuPowerTarget(0, &percent, &mw));
    EXPECT_EQ(mw, 225000u);
    EXPECT_FALSE(library->setGpuPowerTarget(0, 200.0f));  // above the driver's maximum

    uint32_t totalKb = 0, availableKb = 0;
    float used = 0;
    ASSERT_TRUE(library->readGpuMemoryUsage(0, &totalKb, &availableKb, &used));
    EXPECT_EQ(totalKb, 2048u * 1024u);
    EXPECT_EQ(availableKb, 512u * 1024u);
    EXPECT_FLOAT_EQ(used, 75.0f);

    ASSERT_TRUE(library->readGpuPerfLimiters(0));
    bool active = false;
    const char* name = nullptr;
    ASSERT_TRUE(library->getGpuPerfLimiter(0, 0, &active, &name));
    EXPECT_TRUE(active);
    EXPECT_STREQ(name, "power");
    ASSERT_TRUE(library->getGpuPerfLimiter(0, 1, &active, &name));
    EXPECT_TRUE(active);
    EXPECT_STREQ(name, "temperature");
    ASSERT_TRUE(library->getGpuPerfLimiter(0, 2, &active, &name));
    EXPECT_FALSE(active);
    EXPECT_FALSE(library->getGpuPerfLimiter(0, 4, &active, &name));

    uint8_t board16[16] = {};
    ASSERT_TRUE(library->readGpuBoardInfo(0, board16));
    EXPECT_EQ(board16[0], 0x00);
    EXPECT_EQ(board16[1], 0x03);

    EXPECT_EQ(library->getDriverVersionNumber(), 55054u);
    EXPECT_STREQ(library->getDriverBranch(), "r550");
    EXPECT_EQ(library->getGpuMemorySizeMb(0), 2048u);
}

TEST_F(NvidiaFacade, ActiveApplicationsAreNamedFromTheProcessTable) {
    const std::string root = ::testing::TempDir() + "nvidia_proc_" + std::to_string(::getpid());
    ::mkdir(root.c_str(), 0755);
    ::mkdir((root + "/proc").c_str(), 0755);
    ::mkdir((root + "/proc/1234").c_str(), 0755);
    if (FILE* comm = std::fopen((root + "/proc/1234/comm").c_str(), "w")) {
        std::fputs("glxgears\n", comm);
        std::fclose(comm);
    }
    start(kBusyGtx680);
    library->caps()->sources.rootDir = root;

    ASSERT_EQ(library->queryActive3DApps(0), 2u);
    EXPECT_EQ(library->getActiveAppPid(0, 0), 1234u);
    EXPECT_STREQ(library->getActiveAppName(0, 0), "glxgears");
    EXPECT_EQ(library->getActiveAppPid(0, 1), 99999u);
    EXPECT_STREQ(library->getActiveAppName(0, 1), "");  // gone before its name was read
    EXPECT_EQ(record(0).activeApps[127].structVersion, 0x20108u);
    EXPECT_EQ(library->getActiveAppPid(0, 128), 0u);
    EXPECT_EQ(library->getActiveAppName(0, 128), nullptr);

    std::remove((root + "/proc/1234/comm").c_str());
    ::rmdir((root + "/proc/1234").c_str());
    ::rmdir((root + "/proc").c_str());
    ::rmdir(root.c_str());
}

TEST_F(NvidiaFacade, FanPercentWithoutRpmStillReads) {
    start(kBusyGtx680, "legacy");
    float percent = -1, rpm = -1;
    ASSERT_TRUE(library->readGpuFanSpeed(0, &percent, &rpm));
    EXPECT_FLOAT_EQ(percent, 35.0f);
    EXPECT_FLOAT_EQ(rpm, -1.0f);
    EXPECT_FLOAT_EQ(record(0).fanRpm, -1.0f);
    // The old throttle-reasons call stands in for the clocks event reasons.
    EXPECT_TRUE(library->readGpuPerfLimiters(0));
    // Without the decoder query the video load stays never read.
    ASSERT_TRUE(library->readGpuLoad(0, nullptr, nullptr));
    EXPECT_FLOAT_EQ(record(0).videoLoadPercent, -1.0f);
}

// NVIDIA-only reads refuse records past the end, records of other vendors, and indices past the driver's list.
TEST_F(NvidiaFacade, OnlyTheDriversOwnRecordsAreRead) {
    start(kBusyGtx680);
    auto other = std::make_unique<GpuRecord>();
    other->vendorClass = kVendorClassNvidia;  // claims NVIDIA but is not in the driver's list
    gGlobals.gpus.append(std::move(other));
    auto intel = std::make_unique<GpuRecord>();
    intel->vendorId = 0x8086;
    gGlobals.gpus.append(std::move(intel));

    float percent = -3;
    uint32_t mw = 5;
    for (int gpu : {1, 2, 3, -1}) {
        EXPECT_FALSE(library->readGpuPowerUsage(gpu, &percent, &mw)) << gpu;
        EXPECT_FALSE(library->readGpuClockFrequencies(gpu, 0, &percent, &percent)) << gpu;
        EXPECT_EQ(library->queryActive3DApps(gpu), 0u) << gpu;
        EXPECT_EQ(library->getActiveAppName(gpu, 0), nullptr) << gpu;
    }
    EXPECT_FALSE(library->readGpuFanSpeed(2, &percent, nullptr));
    EXPECT_FLOAT_EQ(percent, -3.0f);
    EXPECT_EQ(mw, 5u);
    EXPECT_TRUE(library->readGpuPowerUsage(0, &percent, &mw));
}

// The GTX 680 with the driver's P-state list in an order of its own: P12 has no clock range, P5's range is
// upside down; both are left out.
std::string gtx680WithPstates() {
    return std::string(kBusyGtx680) +
           "gpu 0 pstates 8,0,12,5\n"
           "gpu 0 pstate_clocks 0 324 1110 3004 3004\n"
           "gpu 0 pstate_clocks 5 900 540 1502 1502\n"
           "gpu 0 pstate_clocks 8 324 705 324 810\n"
           "gpu 0 energy 7200500\n";
}

TEST_F(NvidiaFacade, PstatesComeFromTheDriversListAtTheirHighestClocks) {
    start(gtx680WithPstates());
    ASSERT_EQ(library->getGpuPerfLevelCount(0), 2u);
    const struct {
        uint32_t id;
        float minGpu, maxGpu, minMem, maxMem;
    } expected[] = {{0, 324, 1110, 3004, 3004}, {8, 324, 705, 324, 810}};
    for (uint32_t level = 0; level < 2; ++level) {
        uint32_t id = 99;
        float gpuMhz = -1, memMhz = -1, volts = -1, minGpu = -1, minMem = -1;
        ASSERT_TRUE(library->readGpuPerfLevel(0, level, &id, &gpuMhz, &memMhz, nullptr, &volts));
        ASSERT_TRUE(library->getGpuPerfLevelMinClocks(0, level, &minGpu, &minMem));
        EXPECT_EQ(id, expected[level].id);
        EXPECT_FLOAT_EQ(gpuMhz, expected[level].maxGpu);
        EXPECT_FLOAT_EQ(memMhz, expected[level].maxMem);
        EXPECT_FLOAT_EQ(minGpu, expected[level].minGpu);
        EXPECT_FLOAT_EQ(minMem, expected[level].minMem);
        EXPECT_FLOAT_EQ(volts, 0.0f);  // the driver gives no voltage
    }
}

// A library without the P-state list, or one whose list does not fit the room every P-state fits in, or one
// whose ranges all fail, gives the current state alone.
TEST_F(NvidiaFacade, WithoutTheDriversPstatesOnlyTheCurrentStateIsShown) {
    const std::string tooLong = std::string(kBusyGtx680) + "gpu 0 pstates 0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15,8\n" +
                                "gpu 0 pstate_clocks 0 324 1110 3004 3004\n";
    const std::pair<std::string, std::string> machines[] = {
        {gtx680WithPstates(), "legacy"},
        {tooLong, "full"},
        {gtx680WithPstates() + "gpu 0 fail DeviceGetMinMaxClockOfPState\n", "full"},
        {gtx680WithPstates() + "gpu 0 fail DeviceGetSupportedPerformanceStates\n", "full"},
    };
    for (const auto& [settings, variant] : machines) {
        start(settings, variant);
        ASSERT_EQ(library->getGpuPerfLevelCount(0), 1u) << settings;
        uint32_t id = 99;
        float gpuMhz = -1, memMhz = -1;
        ASSERT_TRUE(library->readGpuPerfLevel(0, 0, &id, &gpuMhz, &memMhz, nullptr, nullptr));
        EXPECT_EQ(id, 8u);
        EXPECT_FLOAT_EQ(gpuMhz, 405.0f);
        EXPECT_FLOAT_EQ(memMhz, 810.0f);
        EXPECT_FALSE(library->getGpuPerfLevelMinClocks(0, 0, nullptr, nullptr));
        TearDown();
    }
}

TEST_F(NvidiaFacade, MoreLiveValuesInTheirUnits) {
    start(gtx680WithPstates());
    LiveSample sample;
    sample.coreTemperatureC = 45.0f;  // as the temperature read of the same refresh left them
    sample.memoryTemperatureC = 60.0f;
    library->readGpuMoreLive(0, sample);
    ASSERT_EQ(sample.temperaturesC.size(), 2u);
    EXPECT_EQ(sample.temperaturesC[0].name, "edge");
    EXPECT_FLOAT_EQ(sample.temperaturesC[0].value, 45.0f);
    EXPECT_EQ(sample.temperaturesC[1].name, "memory");
    EXPECT_FLOAT_EQ(sample.temperaturesC[1].value, 60.0f);
    EXPECT_FLOAT_EQ(sample.powerWatts.value_or(-1), 150000 / 1000.0f);   // power, mW
    EXPECT_FLOAT_EQ(sample.powerLimitWatts.value_or(-1), 300000 / 1000.0f);  // enforced, mW
    EXPECT_DOUBLE_EQ(sample.energyJoules.value_or(-1), 7200500 / 1000.0);   // energy, mJ
    EXPECT_EQ(sample.memoryTotalMb.value_or(0), 2048u);
    EXPECT_EQ(sample.memoryUsedMb.value_or(0), 2048u - 512u);  // memory_mb less free_mb
    // reasons 0x24: the software power cap (bit 2) and the software thermal slowdown (bit 5).
    EXPECT_EQ(sample.throttleReasons, (std::vector<std::string>{"sw_power_cap", "sw_thermal_slowdown"}));
    EXPECT_FALSE(sample.requestedGpuClockMhz);
    EXPECT_TRUE(sample.voltagesV.empty());  // the driver gives no voltage

    TearDown();
    start(gtx680WithPstates(), "legacy");
    LiveSample old;
    library->readGpuMoreLive(0, old);
    EXPECT_FALSE(old.energyJoules);  // no energy counter in an old library
    EXPECT_TRUE(old.powerWatts && old.memoryTotalMb);
    EXPECT_EQ(old.throttleReasons.size(), 2u);  // through the older throttle-reasons call
    EXPECT_TRUE(old.temperaturesC.empty());  // nothing read this refresh
}

TEST_F(NvidiaFacade, EveryThrottleBitHasOneName) {
    start(std::string(kBusyGtx680) + "gpu 0 reasons 0x1FF\n");
    LiveSample sample;
    library->readGpuMoreLive(0, sample);
    EXPECT_EQ(sample.throttleReasons,
              (std::vector<std::string>{"gpu_idle", "applications_clocks_setting", "sw_power_cap", "hw_slowdown",
                                        "sync_boost", "sw_thermal_slowdown", "hw_thermal_slowdown",
                                        "hw_power_brake_slowdown", "display_clock_setting"}));
    TearDown();
    start(std::string(kBusyGtx680) + "gpu 0 reasons 0x8000000000000200\n");  // bits without a name
    LiveSample none;
    library->readGpuMoreLive(0, none);
    EXPECT_TRUE(none.throttleReasons.empty());
}

TEST_F(NvidiaFacade, NoDriverLeavesTheBlockEmpty) {
    start("init_fails\n");
    EXPECT_EQ(library->getGpuCount(), 0u);
    EXPECT_EQ(library->getDriverVersionNumber(), 0u);
    EXPECT_STREQ(library->getDriverBranch(), "");
    EXPECT_FALSE(library->readGpuPowerUsage(0, nullptr, nullptr));
}

}  // namespace
