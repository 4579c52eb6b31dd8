// The Intel fixture machines through the facade to report.json: the live block holds what the files say,
// and what the driver does not give is null.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <string>

#include "tests/report/machine_reports.h"

namespace {

const std::string kDiscrete = "/sys/devices/pci0000:00/0000:00:01.0/0000:03:00.0";

double fileNumber(const std::string& machine, const std::string& path) {
    std::ifstream in(std::string(SYSFS_FIXTURES) + "/" + machine + path);
    double value = -1;
    in >> value;
    return value;
}

nlohmann::json liveOf(const std::string& machine) {
    const nlohmann::json report = nlohmann::json::parse(reportOfMachine({machine, ""}).json, nullptr, false);
    EXPECT_FALSE(report.is_discarded()) << machine;
    for (const auto& gpu : report.at("gpus")) return gpu.at("live");
    ADD_FAILURE() << machine << ": no GPU";
    return {};
}

TEST(IntelMachineReports, TheLiveBlockHoldsWhatTheFilesSay) {
    const std::string a380 = "i915-arc-a380", hwmon = kDiscrete + "/hwmon/hwmon3/";
    nlohmann::json live = liveOf(a380);
    EXPECT_EQ(live["core_temperature_c"], fileNumber(a380, hwmon + "temp1_input") / 1000.0);
    EXPECT_EQ(live["fan_rpm"], fileNumber(a380, hwmon + "fan1_input"));
    EXPECT_EQ(live["current_gpu_clock_mhz"], fileNumber(a380, kDiscrete + "/drm/card0/gt_act_freq_mhz"));
    EXPECT_NEAR(live["current_volts"].get<double>(), fileNumber(a380, hwmon + "in0_input") / 1000.0, 1e-6);
    // No numbered states, no memory clock, no duty cycle; load needs a second read.
    for (const char* key : {"current_pstate", "current_memory_clock_mhz", "fan_percent", "gpu_load_percent"})
        EXPECT_TRUE(live[key].is_null()) << key;

    const std::string b580 = "xe-b580", xeHwmon = kDiscrete + "/hwmon/hwmon2/";
    live = liveOf(b580);
    EXPECT_EQ(live["core_temperature_c"], fileNumber(b580, xeHwmon + "temp2_input") / 1000.0);
    EXPECT_EQ(live["memory_temperature_c"], fileNumber(b580, xeHwmon + "temp3_input") / 1000.0);
    EXPECT_EQ(live["current_gpu_clock_mhz"], fileNumber(b580, kDiscrete + "/tile0/gt0/freq0/act_freq"));

    live = liveOf("i915-arc-old-kernel");
    EXPECT_TRUE(live["core_temperature_c"].is_null());
    EXPECT_TRUE(live["fan_rpm"].is_null());
    EXPECT_FALSE(live["current_gpu_clock_mhz"].is_null());

    live = liveOf("i915-laptop");
    for (const char* key : {"core_temperature_c", "fan_rpm", "current_volts"}) EXPECT_TRUE(live[key].is_null()) << key;
    EXPECT_EQ(live["current_gpu_clock_mhz"],
              fileNumber("i915-laptop", "/sys/devices/pci0000:00/0000:00:02.0/drm/card1/gt_act_freq_mhz"));
}

// Memory of its own the integrated GPU has none: the text report prints no size for it, as for every adapter
// whose size is unknown, and report.json's size is null rather than 0.
TEST(IntelMachineReports, TheIntegratedGpuHasNoMemorySize) {
    const RenderedReport r = reportOfMachine({"i915-laptop", ""});
    EXPECT_EQ(r.text.find("Memory size"), std::string::npos) << r.text;
    const nlohmann::json report = nlohmann::json::parse(r.json, nullptr, false);
    ASSERT_FALSE(report.is_discarded());
    EXPECT_TRUE(report.at("gpus").at(0).at("memory_size_mb").is_null());
}

}  // namespace
