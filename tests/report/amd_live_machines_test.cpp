#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/report/machine_reports.h"

namespace {

using Json = nlohmann::json;

// One AMD card of a fixture machine: its files as the test reads them, to work out what report.json must say.
struct CardFiles {
    std::string device;  // the device directory, from the fixture's root
    std::string hwmon;

    static std::string contents(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        EXPECT_TRUE(in) << path;
        std::ostringstream out;
        out << in.rdbuf();
        return out.str();
    }
    double deviceNumber(const std::string& name) const { return std::stod(contents(device + "/" + name)); }
    double hwmonNumber(const std::string& name) const { return std::stod(contents(hwmon + "/" + name)); }
    // A little-endian field of the gpu_metrics table.
    uint64_t metricsField(size_t offset, size_t width) const {
        const std::string bytes = contents(device + "/gpu_metrics");
        EXPECT_LE(offset + width, bytes.size());
        uint64_t value = 0;
        for (size_t i = width; i-- > 0;) value = (value << 8) | uint8_t(bytes.at(offset + i));
        return value;
    }
};

CardFiles cardOf(const std::string& machine, const std::string& device, const std::string& hwmon) {
    const std::string root = std::string(SYSFS_FIXTURES) + "/" + machine + "/sys/devices/pci0000:00/" + device;
    return {root, root + "/hwmon/" + hwmon};
}

// The live block of the machine's only GPU in report.json, as the facade fills it.
Json liveBlockOf(const std::string& machine) {
    const RenderedReport r = reportOfMachine({machine, ""});
    const Json json = Json::parse(r.json, nullptr, false);
    EXPECT_FALSE(json.is_discarded()) << machine;
    EXPECT_EQ(json.at("gpus").size(), 1u) << machine;
    return json.at("gpus").at(0).at("live");
}

float valueOf(const Json& live, const char* key) { return live.at(key).get<float>(); }

constexpr double kMib = 1024.0 * 1024.0;

// The offsets of gpu_metrics_v1_3 and v2_2 the fixtures use.
constexpr size_t kV1Edge = 4, kV1VrGfx = 10, kV1VrSoc = 12, kV1VrMem = 14, kV1Fan = 72, kV1Throttle = 112;
constexpr size_t kV2Gfx = 16, kV2Soc = 18, kV2Power = 44, kV2Throttle = 120;

TEST(AmdLiveMachines, Rdna2CardTakesHwmonFirstAndTheRegulatorsFromGpuMetrics) {
    const CardFiles card = cardOf("amdgpu-rx6800", "0000:00:01.0/0000:03:00.0", "hwmon2");
    const Json live = liveBlockOf("amdgpu-rx6800");
    const Json temperatures = live.at("temperatures_c");
    EXPECT_FLOAT_EQ(temperatures.at("edge").get<float>(), float(card.hwmonNumber("temp1_input") / 1000));
    EXPECT_FLOAT_EQ(temperatures.at("junction").get<float>(), float(card.hwmonNumber("temp2_input") / 1000));
    EXPECT_FLOAT_EQ(temperatures.at("memory").get<float>(), float(card.hwmonNumber("temp3_input") / 1000));
    EXPECT_FLOAT_EQ(temperatures.at("vr_gfx").get<float>(), float(card.metricsField(kV1VrGfx, 2)));
    EXPECT_FLOAT_EQ(temperatures.at("vr_soc").get<float>(), float(card.metricsField(kV1VrSoc, 2)));
    EXPECT_FLOAT_EQ(temperatures.at("vr_mem").get<float>(), float(card.metricsField(kV1VrMem, 2)));
    EXPECT_EQ(temperatures.size(), 6u);
    EXPECT_FLOAT_EQ(valueOf(live, "hotspot_temperature_c"), float(card.hwmonNumber("temp2_input") / 1000));
    EXPECT_FLOAT_EQ(valueOf(live, "memory_temperature_c"), float(card.hwmonNumber("temp3_input") / 1000));
    EXPECT_FLOAT_EQ(valueOf(live, "vrm_temperature_c"), float(card.metricsField(kV1VrGfx, 2)));
    EXPECT_FLOAT_EQ(valueOf(live, "current_volts"), float(card.hwmonNumber("in0_input") / 1000));
    EXPECT_FLOAT_EQ(live.at("voltages_v").at("vddgfx").get<float>(), float(card.hwmonNumber("in0_input") / 1000));
    EXPECT_FLOAT_EQ(valueOf(live, "power_watts"), float(card.hwmonNumber("power1_average") / 1e6));
    EXPECT_FLOAT_EQ(valueOf(live, "power_limit_watts"), float(card.hwmonNumber("power1_cap") / 1e6));
    EXPECT_FLOAT_EQ(valueOf(live, "fan_rpm"), float(card.hwmonNumber("fan1_input")));
    EXPECT_EQ(live.at("memory_used_mb"), uint64_t(card.deviceNumber("mem_info_vram_used") / kMib));
    EXPECT_EQ(live.at("memory_total_mb"), uint64_t(card.deviceNumber("mem_info_vram_total") / kMib));
    EXPECT_EQ(card.metricsField(kV1Throttle, 8), 0u);
    EXPECT_EQ(live.at("throttle_reasons"), Json::array());  // a status was read and names nothing
    EXPECT_TRUE(live.at("energy_joules").is_null());
}

TEST(AmdLiveMachines, Rdna3CardReadsTheInstantPowerAndPrefersHwmonToGpuMetrics) {
    const CardFiles card = cardOf("amdgpu-rx7900xtx", "0000:00:01.0/0000:03:00.0", "hwmon3");
    const Json live = liveBlockOf("amdgpu-rx7900xtx");
    // The fixture's gpu_metrics was taken a moment apart and reads one degree lower: hwmon's value stands.
    ASSERT_NE(card.metricsField(kV1Edge, 2) * 1000, uint64_t(card.hwmonNumber("temp1_input")));
    EXPECT_FLOAT_EQ(live.at("temperatures_c").at("edge").get<float>(), float(card.hwmonNumber("temp1_input") / 1000));
    EXPECT_FLOAT_EQ(valueOf(live, "hotspot_temperature_c"), float(card.hwmonNumber("temp2_input") / 1000));
    EXPECT_FLOAT_EQ(valueOf(live, "power_watts"), float(card.hwmonNumber("power1_input") / 1e6));
    EXPECT_FLOAT_EQ(valueOf(live, "fan_percent"), float(card.hwmonNumber("pwm1") * 100 / card.hwmonNumber("pwm1_max")));
    EXPECT_FLOAT_EQ(valueOf(live, "fan_rpm"), float(card.hwmonNumber("fan1_input")));
    // The marked P-state gives the clocks, and hwmon agrees with it.
    EXPECT_EQ(live.at("current_pstate"), 1);
    EXPECT_FLOAT_EQ(valueOf(live, "current_gpu_clock_mhz"), float(card.hwmonNumber("freq1_input") / 1e6));
    EXPECT_FLOAT_EQ(valueOf(live, "current_memory_clock_mhz"), float(card.hwmonNumber("freq2_input") / 1e6));
    EXPECT_EQ(live.at("memory_total_mb"), uint64_t(card.deviceNumber("mem_info_vram_total") / kMib));
}

TEST(AmdLiveMachines, Rdna4CardWithTheSleepLineMarkedTakesClocksFromHwmonAndTheFanFromGpuMetrics) {
    const CardFiles card = cardOf("amdgpu-rx9070xt", "0000:00:01.0/0000:03:00.0", "hwmon2");
    const Json live = liveBlockOf("amdgpu-rx9070xt");
    EXPECT_TRUE(live.at("current_pstate").is_null());  // only "S:" is marked: no numbered level
    EXPECT_FLOAT_EQ(valueOf(live, "current_gpu_clock_mhz"), float(card.hwmonNumber("freq1_input") / 1e6));
    EXPECT_FLOAT_EQ(valueOf(live, "current_memory_clock_mhz"), float(card.hwmonNumber("freq2_input") / 1e6));
    EXPECT_FLOAT_EQ(valueOf(live, "fan_percent"), float(card.hwmonNumber("pwm1") * 100 / card.hwmonNumber("pwm1_max")));
    EXPECT_FLOAT_EQ(valueOf(live, "fan_rpm"), float(card.metricsField(kV1Fan, 2)));  // no fan1_input
    EXPECT_EQ(card.metricsField(kV1VrMem, 2), 0xFFFFu);
    EXPECT_FALSE(live.at("temperatures_c").contains("vr_mem"));  // all ones: the firmware gives none
    EXPECT_FLOAT_EQ(live.at("temperatures_c").at("vr_gfx").get<float>(), float(card.metricsField(kV1VrGfx, 2)));
    EXPECT_FLOAT_EQ(valueOf(live, "power_watts"), float(card.hwmonNumber("power1_input") / 1e6));
    EXPECT_EQ(live.at("memory_used_mb"), uint64_t(card.deviceNumber("mem_info_vram_used") / kMib));
}

TEST(AmdLiveMachines, ApuTakesItsDieTemperaturesPowerAndThrottleReasonsFromGpuMetrics) {
    const CardFiles card = cardOf("amdgpu-apu-vangogh", "0000:00:08.1/0000:04:00.0", "hwmon4");
    const Json live = liveBlockOf("amdgpu-apu-vangogh");
    const Json temperatures = live.at("temperatures_c");
    EXPECT_FLOAT_EQ(temperatures.at("edge").get<float>(), float(card.hwmonNumber("temp1_input") / 1000));
    EXPECT_FLOAT_EQ(temperatures.at("gfx").get<float>(), float(card.metricsField(kV2Gfx, 2)) / 100);
    EXPECT_FLOAT_EQ(temperatures.at("soc").get<float>(), float(card.metricsField(kV2Soc, 2)) / 100);
    EXPECT_EQ(temperatures.size(), 3u);
    EXPECT_TRUE(live.at("hotspot_temperature_c").is_null());
    EXPECT_FLOAT_EQ(live.at("voltages_v").at("vddgfx").get<float>(), float(card.hwmonNumber("in0_input") / 1000));
    EXPECT_FLOAT_EQ(live.at("voltages_v").at("vddnb").get<float>(), float(card.hwmonNumber("in1_input") / 1000));
    EXPECT_FLOAT_EQ(valueOf(live, "power_watts"), float(card.metricsField(kV2Power, 2)) / 1000);  // mW
    EXPECT_TRUE(live.at("power_limit_watts").is_null());
    ASSERT_EQ(card.metricsField(kV2Throttle, 8), (uint64_t(1) << 4) | (uint64_t(1) << 37));
    EXPECT_EQ(live.at("throttle_reasons"), Json::array({"spl", "temp_soc"}));
    EXPECT_TRUE(live.at("fan_percent").is_null());
    EXPECT_TRUE(live.at("fan_rpm").is_null());
}

TEST(AmdLiveMachines, RadeonCardGivesItsTemperatureAndFanPercent) {
    const CardFiles card = cardOf("radeon-hd7850", "0000:00:01.0/0000:01:00.0", "hwmon0");
    const Json live = liveBlockOf("radeon-hd7850");
    EXPECT_FLOAT_EQ(valueOf(live, "core_temperature_c"), float(card.hwmonNumber("temp1_input") / 1000));
    EXPECT_EQ(live.at("temperatures_c").size(), 1u);
    EXPECT_FLOAT_EQ(live.at("temperatures_c").at("edge").get<float>(), float(card.hwmonNumber("temp1_input") / 1000));
    EXPECT_FLOAT_EQ(valueOf(live, "fan_percent"), float(card.hwmonNumber("pwm1") * 100 / card.hwmonNumber("pwm1_max")));
    EXPECT_TRUE(live.at("fan_rpm").is_null());
    EXPECT_EQ(live.at("voltages_v"), Json::object());  // read, and no rail named
    EXPECT_TRUE(live.at("throttle_reasons").is_null());  // no gpu_metrics: no status at all
    EXPECT_TRUE(live.at("current_gpu_clock_mhz").is_null());
    EXPECT_TRUE(live.at("memory_used_mb").is_null());
}

TEST(AmdLiveMachines, CardInDeepSleepTakesItsClocksFromHwmonAndAPwmFanWithoutTachometer) {
    const CardFiles card = cardOf("amdgpu-rx580-deep-sleep", "0000:00:01.0/0000:01:00.0", "hwmon1");
    const Json live = liveBlockOf("amdgpu-rx580-deep-sleep");
    EXPECT_TRUE(live.at("current_pstate").is_null());
    EXPECT_FLOAT_EQ(valueOf(live, "current_gpu_clock_mhz"), float(card.hwmonNumber("freq1_input") / 1e6));
    EXPECT_FLOAT_EQ(valueOf(live, "current_memory_clock_mhz"), float(card.hwmonNumber("freq2_input") / 1e6));
    EXPECT_FLOAT_EQ(valueOf(live, "fan_percent"), float(card.hwmonNumber("pwm1") * 100 / card.hwmonNumber("pwm1_max")));
    EXPECT_TRUE(live.at("fan_rpm").is_null());
    EXPECT_FLOAT_EQ(valueOf(live, "power_watts"), float(card.hwmonNumber("power1_average") / 1e6));
    EXPECT_FLOAT_EQ(valueOf(live, "current_volts"), float(card.hwmonNumber("in0_input") / 1000));
    EXPECT_TRUE(live.at("vrm_temperature_c").is_null());
    EXPECT_TRUE(live.at("throttle_reasons").is_null());
    EXPECT_EQ(live.at("memory_used_mb"), uint64_t(card.deviceNumber("mem_info_vram_used") / kMib));
}

}  // namespace
