#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <iterator>
#include <string>
#include <vector>

#include "tests/unit/fake_nvml_machine.h"
#include "kalidor/hardware_caps.h"
#include "kalidor/vendors/nvidia_pstates.h"
#include "kalidor/vendors/nvidia_reader.h"

namespace {

using namespace Kalidornm;

const std::string kNoSysfs = "/nonexistent-root";

TEST(NvidiaDriverVersion, NumberTextAndBranchComeFromTheMajorAndMinorVersion) {
    EXPECT_EQ(nvidiaDriverVersionNumber("550.54.15"), 55054u);
    EXPECT_EQ(nvidiaDriverVersionNumber("470.05"), 47005u);
    EXPECT_EQ(nvidiaDriverVersionNumber("535.104.05"), 53510u);  // only two digits of minor fit
    EXPECT_EQ(nvidiaDriverVersionNumber("560"), 56000u);
    EXPECT_EQ(nvidiaDriverVersionNumber(""), 0u);
    EXPECT_EQ(nvidiaDriverVersionNumber("n/a"), 0u);
    EXPECT_EQ(nvidiaDriverVersionNumber(nullptr), 0u);

    char text[512];
    formatNvidiaDriverVersion(55054, text);
    EXPECT_STREQ(text, "R550.54");
    formatNvidiaDriverVersion(47005, text);
    EXPECT_STREQ(text, "R470.05");
    formatNvidiaDriverVersion(0, text);
    EXPECT_STREQ(text, "R0.00");

    char branch[128] = "stale";
    formatNvidiaDriverBranch("550.54.15", branch);
    EXPECT_STREQ(branch, "r550");
    formatNvidiaDriverBranch("", branch);
    EXPECT_STREQ(branch, "");
}

TEST(NvidiaPstates, TheDriversListGivesEachRealStateOnceInAscendingOrder) {
    const nvmlPstates_t listed[] = {8, 0, NVML_PSTATE_UNKNOWN, 5, 8, 16, -1, 2, NVML_PSTATE_UNKNOWN};
    EXPECT_EQ(nvidiaPstateIds(listed, std::size(listed)), (std::vector<uint32_t>{0, 2, 5, 8}));
    EXPECT_EQ(nvidiaPstateIds(listed, 2), (std::vector<uint32_t>{0, 8}));  // nothing past the count is read
    EXPECT_TRUE(nvidiaPstateIds(nullptr, 16).empty());
}

TEST(NvidiaPstates, LevelsTakeEachStatesHighestClocksElseTheCurrentStateAlone) {
    NvidiaPstateReadings readings;
    readings.states = {{0, 210, 2100, 9751, 9751}, {8, 210, 1695, 405, 810}};
    readings.currentPstate = 8, readings.currentGpuMhz = 300, readings.currentMemMhz = 405;
    std::vector<PerfLevel> levels = buildNvidiaPerfLevels(readings);
    ASSERT_EQ(levels.size(), 2u);
    for (size_t i = 0; i < levels.size(); ++i) {
        const NvidiaPstateClocks& state = readings.states[i];
        EXPECT_EQ(levels[i].id, state.id);
        EXPECT_FLOAT_EQ(levels[i].gpuClockMhz, float(state.maxGpuMhz));
        EXPECT_FLOAT_EQ(levels[i].memClockMhz, float(state.maxMemMhz));
        EXPECT_FLOAT_EQ(levels[i].minGpuClockMhz.value_or(-1), float(state.minGpuMhz));
        EXPECT_FLOAT_EQ(levels[i].minMemClockMhz.value_or(-1), float(state.minMemMhz));
        EXPECT_FLOAT_EQ(levels[i].vddcVolts, 0.0f);
    }

    readings.states.clear();
    levels = buildNvidiaPerfLevels(readings);
    ASSERT_EQ(levels.size(), 1u);
    EXPECT_EQ(levels[0].id, 8u);
    EXPECT_FLOAT_EQ(levels[0].gpuClockMhz, 300.0f);
    EXPECT_FLOAT_EQ(levels[0].memClockMhz, 405.0f);
    EXPECT_FALSE(levels[0].minGpuClockMhz || levels[0].minMemClockMhz);

    readings.currentPstate = NvidiaPstateReadings::kUnknownPstate;
    EXPECT_TRUE(buildNvidiaPerfLevels(readings).empty());
}

// The NVIDIA backend with the others of the table, run as start-up runs them, on a machine whose PCI bus is
// read from `root` (none by default: the driver's own list then names the GPUs).
struct NvidiaRun {
    HardwareCaps caps;
    GpuList gpus;

    explicit NvidiaRun(const std::string& library, const std::string& root = kNoSysfs) {
        caps.sources.nvmlLibrary = library;
        caps.sources.rootDir = root;
        caps.sources.eglLibrary = "";
        caps.pci = PciBus::scan(root);
    }
    void start() { caps._createGpuRecords(gpus); }
    const NvidiaState& state() const { return caps.nvidia; }
};

// Two display slots with the ids of two identical cards, as a machine whose driver lists each card.
void addTwoIdenticalSlots(DisplayDeviceData& display) {
    for (int i = 0; i < 2; ++i) {
        DisplaySlot& slot = display.slots[i];
        slot.ids = {0x10DE, 0x1180, 0x10DE, 0x0969, 0xA1};
        copyText(slot.deviceId, pciDeviceIdString(slot.ids).c_str());
        std::snprintf(slot.deviceName, sizeof slot.deviceName, "\\\\.\\DISPLAY%d", i + 1);
        std::snprintf(slot.deviceString, sizeof slot.deviceString, "GTX 680 #%d", i + 1);
    }
}

TEST(NvidiaReader, NoLibraryOrNoDriverMakesNoRecord) {
    FakeNvmlMachine machine("gpu 0 pci_device 0x118010DE\n");
    for (const std::string& path : {std::string("/nonexistent/libnvidia-ml.so.1"),
                                    FakeNvmlMachine::library("broken")}) {
        NvidiaRun run(path);
        run.start();
        EXPECT_TRUE(run.gpus.empty()) << path;
        EXPECT_EQ(run.state().library(), nullptr) << path;
        EXPECT_EQ(run.state().nvPhysicalGpuCount, 0u);
    }

    FakeNvmlMachine failing("init_fails\ngpu 0 pci_device 0x118010DE\n");
    NvidiaRun run(FakeNvmlMachine::library());
    run.start();
    EXPECT_TRUE(run.gpus.empty());
    EXPECT_EQ(run.caps.readerFor(kVendorClassNvidia), nullptr);
    EXPECT_EQ(run.state().nvDriverVersion, 0u);
}

TEST(NvidiaReader, TwoIdenticalCardsGetARecordAndADisplaySlotEach) {
    FakeNvmlMachine machine(
        "driver 550.54.15\n"
        "gpu 0 pci_device 0x118010DE\ngpu 0 pci_subsystem 0x096910DE\ngpu 0 bus 4\ngpu 0 temp 40\n"
        "gpu 1 pci_device 0x118010DE\ngpu 1 pci_subsystem 0x096910DE\ngpu 1 bus 2\ngpu 1 temp 41\n");
    NvidiaRun run(FakeNvmlMachine::library());
    addTwoIdenticalSlots(run.caps.display);
    run.start();
    const GpuList& gpus = run.gpus;
    const NvidiaState& state = run.state();
    const DisplayDeviceData& display = run.caps.display;

    ASSERT_EQ(gpus.size(), 2u);
    ASSERT_EQ(state.nvPhysicalGpuCount, 2u);
    EXPECT_EQ(state.nvLogicalGpuCount, 2u);
    // Driver order, not bus order.
    EXPECT_EQ(gpus.at(0)->busId, 4);
    EXPECT_EQ(gpus.at(1)->busId, 2);
    for (uint32_t i = 0; i < 2; ++i) {
        const GpuRecord& r = *gpus.at(long(i));
        EXPECT_EQ(r.nvPhysicalGpu, state.nvPhysicalGpus[i]);
        EXPECT_EQ(r.displaySlot, i);
        EXPECT_STREQ(r.displayDeviceString, display.slots[i].deviceString);
        EXPECT_STREQ(r.name, "NVIDIA GeForce GTX 680");
        EXPECT_STREQ(r.driverVersion, "R550.54");
        EXPECT_TRUE(r.hasTemperature);
    }
}

TEST(NvidiaReader, UnknownDeviceZeroTemperatureAndFailingReadsKeepDefaults) {
    FakeNvmlMachine machine(
        "gpu 0 pci_device 0x7FFF10DE\ngpu 0 name NVIDIA Prototype\ngpu 0 temp 0\n"
        "gpu 1 pci_device 0x118010DE\ngpu 1 temp 50\ngpu 1 fail DeviceGetTemperature\n"
        "gpu 1 fail DeviceGetVbiosVersion\ngpu 1 fail DeviceGetNumGpuCores\ngpu 1 fail DeviceGetPerformanceState\n"
        "gpu 1 fail DeviceGetMaxClockInfo\n");
    NvidiaRun run(FakeNvmlMachine::library());
    run.start();
    const GpuList& gpus = run.gpus;
    ASSERT_EQ(gpus.size(), 2u);
    const GpuRecord& prototype = *gpus.at(0);
    EXPECT_STREQ(prototype.name, "NVIDIA Prototype");
    EXPECT_STREQ(prototype.codename, "");
    EXPECT_EQ(prototype.tmus, 0);
    EXPECT_FALSE(prototype.hasTemperature);  // 0 °C at idle reads as no sensor

    const GpuRecord& failing = *gpus.at(1);
    EXPECT_FALSE(failing.hasTemperature);
    EXPECT_FLOAT_EQ(failing.sensorGpu.current, 0.0f);
    EXPECT_STREQ(failing.biosVersion, "");
    EXPECT_EQ(failing.shaderCores, 0);
    EXPECT_EQ(failing.perfLevelCount, 0u);
    EXPECT_EQ(failing.perfLevels, nullptr);
}

TEST(NvidiaReader, OldLibraryStartsThroughThePlainInitAndLacksTheNewerReads) {
    FakeNvmlMachine machine(kBusyGtx680);
    NvidiaRun run(FakeNvmlMachine::library("legacy"));
    run.start();
    const GpuList& gpus = run.gpus;
    ASSERT_EQ(gpus.size(), 1u);
    const GpuRecord& r = *gpus.at(0);
    EXPECT_EQ(r.deviceId, 0x1180u);
    EXPECT_EQ(r.busId, 3);
    EXPECT_FLOAT_EQ(r.sensorGpu.current, 45.0f);
    EXPECT_FLOAT_EQ(r.sensorMemory.current, 0.0f);  // no field-value query
}

}  // namespace
