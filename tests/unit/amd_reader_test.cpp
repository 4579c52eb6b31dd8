#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>

#include "kalidor/hardware_caps.h"
#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"
#include "kalidor/vendors/amd_live_reader.h"
#include "kalidor/vendors/amd_reader.h"

namespace {

using namespace Kalidornm;
namespace fs = std::filesystem;

const std::string kFixtures = SYSFS_FIXTURES;
const std::string kRx6800Hwmon = "/sys/bus/pci/devices/0000:03:00.0/hwmon/hwmon2/";

// A machine replayed from a fixture tree, its records made as start-up makes them (no NVIDIA library).
struct Machine {
    HardwareCaps caps;
    GpuList gpus;

    explicit Machine(const std::string& root) {
        caps.sources.rootDir = root;
        caps.sources.nvmlLibrary = "";
        caps.sources.eglLibrary = "";
        caps.init(gpus);
    }
    AmdLiveReader& reader() { return *dynamic_cast<AmdLiveReader*>(caps.readerFor(kVendorClassAmd)); }
    GpuRecord& gpu(long i) { return *gpus.at(i); }
};

// A writable copy of a fixture, for tests that change what the driver says between reads.
struct FixtureCopy {
    std::string root;
    explicit FixtureCopy(const std::string& machine) {
        root = (fs::temp_directory_path() / ("amd_fixture_" + std::to_string(::getpid()) + "_" + machine)).string();
        fs::remove_all(root);
        fs::copy(kFixtures + "/" + machine, root, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    }
    ~FixtureCopy() { fs::remove_all(root); }
    void write(const std::string& relative, const std::string& text) const {
        std::ofstream(root + relative, std::ios::trunc) << text;
    }
};

TEST(AmdReader, FourOutputsOnOneBusMakeOneRecordWithItsReadings) {
    Machine m(kFixtures + "/amdgpu-rx6800");
    EXPECT_TRUE(m.caps.amd.adlLoaded);
    EXPECT_EQ(m.caps.amd.adlAdapterCount, 4);
    EXPECT_EQ(m.caps.amd.amdAdapterCount, 1u);
    EXPECT_EQ(m.caps.amd.amdUsableAdapterCount, 1u);
    EXPECT_EQ(m.caps.amd.agsGpuCount, 1u);
    EXPECT_EQ(m.caps.amd.agsCrossfireGpuCount, 0u);
    ASSERT_EQ(m.gpus.size(), 1u);

    GpuRecord& r = m.gpu(0);
    EXPECT_EQ(r.vendorClass, kVendorClassAmd);
    EXPECT_TRUE(r.hasTemperature);
    EXPECT_EQ(r.busId, 3);
    EXPECT_EQ(r.adlAdapterIndex, 0);
    EXPECT_EQ(r.overdriveVersion, 6u);
    EXPECT_EQ(r.vendorId, 0x1002u);
    EXPECT_EQ(r.deviceId, 0x73BFu);
    EXPECT_EQ(r.subvendorId, 0x1002u);
    EXPECT_EQ(r.subdeviceId, 0x0E3Au);
    EXPECT_STREQ(r.name, "AMD Radeon RX 6800/6800 XT / 6900 XT");
    EXPECT_STREQ(r.codename, "Navi 21(RDNA2)");
    EXPECT_EQ(r.displaySlot, 0u);
    EXPECT_STREQ(r.displayDeviceKey, "/sys/bus/pci/devices/0000:03:00.0");
    EXPECT_STREQ(r.biosVersion, "113-D4120100-100");  // the kernel driver's values of its device

    // Start-up readings: m°C / 1000, pwm1 / pwm1_max × 100, RPM.
    EXPECT_FLOAT_EQ(r.sensorGpu.current, 45.0f);
    EXPECT_NEAR(r.fanPercent, 77.0f * 100.0f / 255.0f, 1e-4);
    EXPECT_FLOAT_EQ(r.fanRpm, 1100.0f);

    // Three engine levels, paired with the first three memory levels; the current one carries in0 in volts.
    ASSERT_EQ(r.perfLevelCount, 3u);
    EXPECT_FLOAT_EQ(r.perfLevels[0].gpuClockMhz, 500.0f);
    EXPECT_FLOAT_EQ(r.perfLevels[0].memClockMhz, 96.0f);
    EXPECT_FLOAT_EQ(r.perfLevels[2].memClockMhz, 673.0f);
    EXPECT_FLOAT_EQ(r.perfLevels[1].vddcVolts, 0.862f);
    EXPECT_FLOAT_EQ(r.perfLevels[0].vddcVolts, 0.0f);

    float load = -1, frameBuffer = -7;
    ASSERT_TRUE(m.reader().readLoad(r, &load, &frameBuffer));
    EXPECT_FLOAT_EQ(load, 12.0f);
    EXPECT_FLOAT_EQ(frameBuffer, -7.0f);  // AMD gives the first value only

    uint32_t pstate = 99;
    float gpuMhz = 0, memMhz = 0, shaderMhz = -1, volts = 4.0f;
    ASSERT_TRUE(m.reader().readCurrentClocks(r, &pstate, &gpuMhz, &memMhz, &shaderMhz, &volts));
    EXPECT_EQ(pstate, 1u);
    EXPECT_FLOAT_EQ(gpuMhz, 1815.0f);
    EXPECT_FLOAT_EQ(memMhz, 1000.0f);
    EXPECT_FLOAT_EQ(shaderMhz, 0.0f);
    EXPECT_FLOAT_EQ(volts, 4.0f);  // untouched

    int32_t current = 0, def = 0, min = 0, max = 0;
    ASSERT_TRUE(m.reader().readPowerControl(r, &current, &def, &min, &max));
    EXPECT_EQ(current, 100);
    EXPECT_EQ(def, 100);
    EXPECT_EQ(min, 85);   // 173 W of 203 W
    EXPECT_EQ(max, 115);  // 233 W of 203 W

    // A second initialisation without shutdown is refused and adds nothing.
    const BackendServices services{m.caps.sources, m.caps.pci, m.caps.display};
    std::vector<const PciDevice*> devices;
    for (const PciDevice& device : m.caps.pci.devices()) devices.push_back(&device);
    EXPECT_FALSE(AMD_Display_Library_Init(m.caps.amd, m.reader(), devices, services, m.gpus));
    EXPECT_EQ(m.gpus.size(), 1u);
}

TEST(AmdReader, LiveReadsFollowTheDriverAtEveryCall) {
    FixtureCopy copy("amdgpu-rx6800");
    Machine m(copy.root);
    GpuRecord& r = m.gpu(0);
    copy.write(kRx6800Hwmon + "temp1_input", "71500\n");
    copy.write(kRx6800Hwmon + "pwm1", "255\n");
    copy.write(kRx6800Hwmon + "power1_cap", "101500000\n");
    copy.write("/sys/bus/pci/devices/0000:03:00.0/pp_dpm_sclk", "0: 500Mhz *\n1: 1815Mhz\n2: 2475Mhz\n");

    float core = 0, board = -3;
    ASSERT_TRUE(m.reader().readTemperatures(r, &core, &board, nullptr, nullptr));
    EXPECT_FLOAT_EQ(core, 71.5f);
    EXPECT_FLOAT_EQ(board, -3.0f);  // no board sensor: unknown, not 0 °C
    float percent = 0, rpm = 0;
    ASSERT_TRUE(m.reader().readFanSpeed(r, &percent, &rpm));
    EXPECT_FLOAT_EQ(percent, 100.0f);
    int32_t current = 0;
    ASSERT_TRUE(m.reader().readPowerControl(r, &current, nullptr, nullptr, nullptr));
    EXPECT_EQ(current, 50);

    uint32_t id = 7;
    float gpuMhz = 0, memMhz = 0, volts = -1;
    ASSERT_TRUE(m.reader().readPerfLevel(r, 0, &id, &gpuMhz, &memMhz, nullptr, &volts));
    EXPECT_EQ(id, 0u);
    EXPECT_FLOAT_EQ(gpuMhz, 500.0f);
    EXPECT_FLOAT_EQ(volts, 0.862f);  // the voltage moved to the new current level
    EXPECT_FALSE(m.reader().readPerfLevel(r, 3, &id, &gpuMhz, &memMhz, nullptr, &volts));
}

// The kernel numbers the channels per chip: the labels say which sensor a channel is, not its number.
TEST(AmdReader, SensorsAreMatchedByTheirLabelsNotTheirNumbers) {
    FixtureCopy copy("amdgpu-rx6800");
    copy.write(kRx6800Hwmon + "temp2_label", "mem\n");
    copy.write(kRx6800Hwmon + "temp3_label", "junction\n");
    copy.write(kRx6800Hwmon + "in1_input", "700\n");
    copy.write(kRx6800Hwmon + "in1_label", "vddnb\n");
    copy.write(kRx6800Hwmon + "in0_label", "vddsoc\n");  // no rail of ours
    Machine m(copy.root);
    LiveSample sample;
    m.reader().readMoreLive(m.gpu(0), sample);
    ASSERT_TRUE(sample.moreRead);
    EXPECT_EQ(sample.hotspotTemperatureC, 48.0f);  // temp3_input
    EXPECT_EQ(sample.memoryTemperatureC, 52.0f);   // temp2_input
    ASSERT_EQ(sample.voltagesV.size(), 1u);
    EXPECT_EQ(sample.voltagesV[0].name, "vddnb");
    EXPECT_FLOAT_EQ(sample.voltagesV[0].value, 0.7f);
    EXPECT_FALSE(sample.currentVolts);  // no vddgfx rail

    // Values the driver mangles are no readings; the rest of the sample stands.
    copy.write(kRx6800Hwmon + "power1_average", "-5\n");
    copy.write(kRx6800Hwmon + "power1_cap", "garbage\n");
    copy.write("/sys/bus/pci/devices/0000:03:00.0/gpu_metrics", "\x78\x00\x01");
    LiveSample mangled;
    m.reader().readMoreLive(m.gpu(0), mangled);
    EXPECT_FALSE(mangled.powerWatts);  // no power1_input either
    EXPECT_FALSE(mangled.powerLimitWatts);
    EXPECT_FALSE(mangled.vrmTemperatureC || mangled.throttleRead);
    EXPECT_EQ(mangled.hotspotTemperatureC, 48.0f);
}

// Cards the older radeon driver still runs get a record from the AMD reader and their hwmon values, but are no
// amdgpu GPUs.
TEST(AmdReader, RadeonCardGetsItsTemperatureAndFanPercent) {
    Machine m(kFixtures + "/radeon-hd7850");
    EXPECT_EQ(m.caps.amd.agsGpuCount, 0u);
    ASSERT_EQ(m.gpus.size(), 1u);
    GpuRecord& r = m.gpu(0);
    EXPECT_EQ(r.vendorClass, kVendorClassAmd);
    EXPECT_EQ(r.deviceId, 0x6819u);
    EXPECT_FLOAT_EQ(r.sensorGpu.current, 43.0f);
    EXPECT_NEAR(r.fanPercent, 102.0f * 100.0f / 255.0f, 1e-4);
    EXPECT_EQ(r.perfLevelCount, 0u);  // radeon has no DPM tables in sysfs
}

TEST(AmdReader, ACardWithoutHwmonGetsARecordButNoLiveRead) {
    Machine m(kFixtures + "/amdgpu-no-hwmon");
    ASSERT_EQ(m.gpus.size(), 1u);
    GpuRecord& r = m.gpu(0);
    EXPECT_EQ(r.overdriveVersion, 0u);
    EXPECT_EQ(r.deviceId, 0x67DFu);
    EXPECT_EQ(r.perfLevelCount, 0u);

    // Regression: without a read path the temperature read said true with a stale 0 °C, and the fan read set
    // both values to 0 before failing.
    float core = -5;
    EXPECT_FALSE(m.reader().readTemperatures(r, &core, nullptr, nullptr, nullptr));
    EXPECT_FLOAT_EQ(core, -5.0f);
    EXPECT_FALSE(r.sensorGpu.read);
    float percent = 5, rpm = 5;
    EXPECT_FALSE(m.reader().readFanSpeed(r, &percent, &rpm));
    EXPECT_FLOAT_EQ(percent, 5.0f);
    EXPECT_FLOAT_EQ(rpm, 5.0f);
    EXPECT_FLOAT_EQ(r.fanPercent, -1.0f);  // still never read
    EXPECT_FALSE(m.reader().readLoad(r, &percent, nullptr));
    EXPECT_FLOAT_EQ(r.gpuLoadPercent, -1.0f);
    EXPECT_FALSE(m.reader().readCurrentClocks(r, nullptr, nullptr, nullptr, nullptr, nullptr));
    EXPECT_FALSE(m.reader().readPowerControl(r, nullptr, nullptr, nullptr, nullptr));
}

TEST(AmdReader, ASuspendedDgpuBesideAnIntelIgpuIsListedButNotWoken) {
    Machine m(kFixtures + "/amdgpu-suspended");
    EXPECT_EQ(m.caps.amd.agsGpuCount, 1u);  // the i915 device is not counted
    EXPECT_EQ(m.caps.amd.adlAdapterCount, 1);  // no outputs: one entry for the card
    ASSERT_EQ(m.gpus.size(), 2u);  // the Intel GPU follows as an other adapter
    GpuRecord& r = m.gpu(0);
    EXPECT_EQ(r.busId, 1);
    EXPECT_EQ(r.deviceId, 0x73FFu);
    EXPECT_EQ(r.overdriveVersion, 6u);
    EXPECT_FLOAT_EQ(r.sensorGpu.current, 0.0f);  // 38 °C sits in the file, unread
    EXPECT_EQ(r.perfLevelCount, 0u);
    EXPECT_FALSE(m.reader().readLoad(r, nullptr, nullptr));
    EXPECT_FALSE(m.reader().readCurrentClocks(r, nullptr, nullptr, nullptr, nullptr, nullptr));
    EXPECT_FALSE(m.reader().readFanSpeed(r, nullptr, nullptr));
}

TEST(AmdReader, TwoCardsAreReadEachFromItsOwnFiles) {
    Machine m(kFixtures + "/amdgpu-two-cards");
    EXPECT_EQ(m.caps.amd.agsGpuCount, 2u);  // the audio function is another driver's
    EXPECT_EQ(m.caps.amd.adlAdapterCount, 3);
    EXPECT_EQ(m.caps.amd.amdAdapterCount, 2u);
    ASSERT_EQ(m.gpus.size(), 2u);
    GpuRecord& hawaii = m.gpu(0);
    GpuRecord& tahiti = m.gpu(1);
    EXPECT_EQ(hawaii.busId, 3);
    EXPECT_EQ(tahiti.busId, 10);
    EXPECT_EQ(tahiti.adlAdapterIndex, 2);
    // The PCI id list names 0x67B0 "...[Radeon R9 290X/390X]" and 0x6798 "...[Radeon HD 7970/...]".
    EXPECT_STREQ(hawaii.name, "AMD Radeon R9 290X");
    EXPECT_EQ(hawaii.tdpWatts, 250);
    EXPECT_STREQ(tahiti.name, "AMD Radeon HD 7970");

    EXPECT_FLOAT_EQ(hawaii.sensorGpu.current, 61.0f);
    EXPECT_FLOAT_EQ(tahiti.sensorGpu.current, 52.0f);
    float load = 0;
    ASSERT_TRUE(m.reader().readLoad(tahiti, &load, nullptr));
    EXPECT_FLOAT_EQ(load, 3.0f);
    int32_t current = 0, min = -1, max = 0;
    ASSERT_TRUE(m.reader().readPowerControl(hawaii, &current, nullptr, &min, &max));
    EXPECT_EQ(min, 50);
    EXPECT_EQ(max, 150);
    ASSERT_TRUE(m.reader().readPowerControl(tahiti, &current, nullptr, &min, &max));
    EXPECT_EQ(min, 0);
    EXPECT_EQ(tahiti.perfLevelCount, 4u);
    EXPECT_FLOAT_EQ(tahiti.perfLevels[3].memClockMhz, 1500.0f);  // fewer memory levels: the top one serves
}

TEST(AmdReader, MalformedAttributesFailTheirReadCleanly) {
    Machine m(kFixtures + "/amdgpu-malformed");
    ASSERT_EQ(m.gpus.size(), 1u);
    GpuRecord& r = m.gpu(0);
    float core = -5;
    EXPECT_FALSE(m.reader().readTemperatures(r, &core, nullptr, nullptr, nullptr));  // empty temp1_input
    EXPECT_FLOAT_EQ(core, -5.0f);
    EXPECT_FALSE(m.reader().readFanSpeed(r, nullptr, nullptr));  // pwm1 above pwm1_max, negative RPM
    EXPECT_FALSE(m.reader().readLoad(r, nullptr, nullptr));      // 101 percent
    EXPECT_FALSE(m.reader().readCurrentClocks(r, nullptr, nullptr, nullptr, nullptr, nullptr));  // no '*'
    EXPECT_FALSE(m.reader().readPerfLevel(r, 0, nullptr, nullptr, nullptr, nullptr, nullptr));  // garbage mclk
    EXPECT_FALSE(m.reader().readPowerControl(r, nullptr, nullptr, nullptr, nullptr));  // default limit 0

    // Huge and negative sensor values are no readings either.
    FixtureCopy copy("amdgpu-rx6800");
    Machine good(copy.root);
    GpuRecord& g = good.gpu(0);
    copy.write(kRx6800Hwmon + "temp1_input", "99999999999999999999\n");
    EXPECT_FALSE(good.reader().readTemperatures(g, &core, nullptr, nullptr, nullptr));
    EXPECT_FLOAT_EQ(g.sensorGpu.current, 45.0f);  // the last good reading stays
    copy.write(kRx6800Hwmon + "temp1_input", "4000000000\n");
    EXPECT_FALSE(good.reader().readTemperatures(g, &core, nullptr, nullptr, nullptr));
    EXPECT_FLOAT_EQ(g.sensorGpu.current, 45.0f);
    copy.write(kRx6800Hwmon + "power1_cap", "-203000000\n");
    EXPECT_FALSE(good.reader().readPowerControl(g, nullptr, nullptr, nullptr, nullptr));
    copy.write("/sys/bus/pci/devices/0000:03:00.0/gpu_busy_percent", "");
    EXPECT_FALSE(good.reader().readLoad(g, nullptr, nullptr));
    // A fan without tachometer still has its PWM percent; the RPM output is left as given.
    fs::remove(copy.root + kRx6800Hwmon + "fan1_input");
    float percent = -5, rpm = -5;
    EXPECT_TRUE(good.reader().readFanSpeed(g, &percent, &rpm));
    EXPECT_FLOAT_EQ(percent, 77.0f * 100.0f / 255.0f);
    EXPECT_FLOAT_EQ(rpm, -5.0f);
    fs::remove(copy.root + kRx6800Hwmon + "pwm1");
    EXPECT_FALSE(good.reader().readFanSpeed(g, &percent, &rpm));
    copy.write("/sys/bus/pci/devices/0000:03:00.0/pp_dpm_mclk", "0: 96Mhz\n");
    EXPECT_FALSE(good.reader().readCurrentClocks(g, nullptr, nullptr, nullptr, nullptr, nullptr));
}

TEST(AmdReader, AMachineWithoutAmdgpuHasNoAmdRecord) {
    Machine m(kFixtures + "/no-such-machine");
    EXPECT_FALSE(m.caps.amd.adlLoaded);
    EXPECT_EQ(m.caps.amd.agsGpuCount, 0u);
    EXPECT_TRUE(m.gpus.empty());
}

TEST(KalidorAmd, FacadeReadsPowerControlAndCounts) {
    Kalidor* library = Kalidor::getInstance();
    ASSERT_NE(library, nullptr);
    HardwareCaps* caps = library->caps();
    ASSERT_NE(caps, nullptr);
    caps->sources.rootDir = kFixtures + "/amdgpu-two-cards";
    caps->sources.nvmlLibrary = "";
    caps->init(gGlobals.gpus);
    gGlobals.snapshot.reset();  // the facade reads its static facts from the records made here

    EXPECT_EQ(library->getAmdAgsGpuCount(), 2u);
    EXPECT_EQ(library->getAmdCrossfireGpuCount(), 0u);
    EXPECT_EQ(library->getAmdAdapterCount(), 2u);
    EXPECT_EQ(library->getAmdUsableAdapterCount(), 2u);
    int32_t current = 0, def = 0, min = 0, max = 0;
    ASSERT_TRUE(library->readGpuPowerControl(1, &current, &def, &min, &max));
    EXPECT_EQ(def, 100);
    EXPECT_EQ(gGlobals.gpus.at(1)->powerControlMax, 100);
    EXPECT_FALSE(library->readGpuPowerControl(2, &current, &def, &min, &max));
    EXPECT_FLOAT_EQ(library->readGpuCoreTemperature(1), 52.0f);
    float gpuMhz = 0;
    ASSERT_TRUE(library->readGpuPerfLevel(0, 1, nullptr, &gpuMhz, nullptr, nullptr, nullptr));
    EXPECT_FLOAT_EQ(gpuMhz, 1040.0f);

    gGlobals.gpus.clear();
    gGlobals.snapshot.reset();
    caps->cleanup();
    *caps = HardwareCaps{};
}

}  // namespace
