#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "report/json_report.h"
#include "tests/report/report_fixtures.h"

namespace {

using nlohmann::json;
using namespace report;
using namespace report_fixtures;

json parsed(const ReportSnapshot& s) {
    const std::string text = jsonReportText(s);
    EXPECT_TRUE(json::accept(text)) << text.substr(0, 200);
    return json::parse(text);
}

TEST(JsonReport, CarriesTheSnapshotsValuesWithTheirTypes) {
    const ReportSnapshot s = nvidiaMachine();
    const json j = parsed(s);
    EXPECT_EQ(j["schema_version"], kJsonReportSchemaVersion);
    EXPECT_EQ(j["program"]["version"], "1.26.0.0");
    ASSERT_EQ(j["gpus"].size(), 1u);
    const json& g = j["gpus"][0];
    EXPECT_EQ(g["vendor_id"], 0x10DE);
    EXPECT_TRUE(g["vendor_id"].is_number_unsigned());
    EXPECT_EQ(g["name"], *s.gpus[0].name);
    EXPECT_EQ(g["memory_bus_width_bits"], 256);
    EXPECT_EQ(g["boost_clock_mhz"], 1058.5);
    // A P-state's clocks are its highest, its lowest beside them; NVIDIA's driver gives no voltage, so the
    // level's 0 V (1.175 here) is unknown.
    const json& p0 = g["performance_levels"][0];
    EXPECT_EQ(p0["gpu_clock_mhz"], 1006.0);
    EXPECT_EQ(p0["min_gpu_clock_mhz"], double(*s.gpus[0].perfLevels[0].minGpuClockMhz));
    EXPECT_EQ(p0["min_memory_clock_mhz"], double(*s.gpus[0].perfLevels[0].minMemClockMhz));
    EXPECT_TRUE(p0["vddc_volts"].is_null());
    EXPECT_EQ(g["live"]["fan_rpm"], 1170.0);
    EXPECT_EQ(j["driver"]["nvidia_driver_version"], 53518);

    const json& gl = j["opengl"];
    EXPECT_EQ(gl["renderer"], s.gl.renderer);
    EXPECT_EQ(gl["features"]["fbo"], true);
    EXPECT_EQ(gl["msaa_sample_counts"], json::array({2, 4, 8}));
    EXPECT_EQ(gl["extensions"][0]["note"], "OpenGL 3.0");
    EXPECT_TRUE(gl["extensions"][1]["note"].is_null());
    // The separator is not a capability; every other entry keeps its type.
    ASSERT_EQ(gl["capabilities"].size(), s.gl.catalogue.size() - 1);
    EXPECT_EQ(gl["capabilities"][0]["value"], 8);
    EXPECT_TRUE(gl["capabilities"][1]["value"].is_number_float());
    EXPECT_EQ(gl["capabilities"][2]["value"], 18446744073709551LL);
    EXPECT_EQ(gl["capabilities"][3]["value"], json::array({65535, 65535, 65535}));
    EXPECT_TRUE(gl["capabilities"][5]["group"].is_null());

    const json& device = j["opencl"]["platforms"][0]["devices"][0];
    EXPECT_EQ(device["global_mem_size_bytes"], 12884901888ULL);
    EXPECT_EQ(device["nv_warp_size"], 32);
    EXPECT_EQ(device["max_work_item_sizes"], json::array({4096, 4096, 4096}));
    EXPECT_EQ(j["cuda"]["devices"][0]["compute_capability"], json::array({3, 0}));
    EXPECT_EQ(j["cuda"]["devices"][0]["total_memory_bytes"], 2147483648ULL);
}

TEST(JsonReport, AbsentValuesAreNullNeverZero) {
    const json amd = parsed(amdMachineWithoutCatalyst());
    const json& g = amd["gpus"][0];
    for (const char* key : {"catalyst_version", "crimson_driver", "bios_version", "memory_bus_width_bits",
                            "memory_location"})
        EXPECT_TRUE(g[key].is_null()) << key;
    for (const char* key : {"fan_percent", "fan_rpm", "gpu_load_percent", "current_pstate", "vrm_temperature_c"})
        EXPECT_TRUE(g["live"][key].is_null()) << key;
    EXPECT_EQ(g["live"]["core_temperature_c"], 38.0);
    // AMD levels have a voltage and no clock range.
    const json& level = g["performance_levels"][1];
    EXPECT_EQ(level["vddc_volts"], 1.15);  // the float's shortest decimal
    EXPECT_TRUE(level["min_gpu_clock_mhz"].is_null());
    EXPECT_TRUE(level["min_memory_clock_mhz"].is_null());
    EXPECT_TRUE(amd["opencl"]["platforms"][0]["devices"][0]["nv_warp_size"].is_null());
    EXPECT_TRUE(amd["system"]["installed_memory_mb"].is_null());
    EXPECT_TRUE(amd["system"]["physx_version"].is_null());
    EXPECT_TRUE(amd["driver"]["nvidia_driver_branch"].is_null());

    const json none = parsed(noDriverMachine());
    EXPECT_FALSE(none["has_display_device"]);
    EXPECT_TRUE(none["opengl"].is_null());
    EXPECT_TRUE(none["gpus"].empty());
    EXPECT_TRUE(none["cuda"]["devices"].empty());

    const json intel = parsed(intelSoftwareMachine());
    EXPECT_TRUE(intel["gpus"][0]["memory_size_mb"].is_null());
    EXPECT_TRUE(intel["gpus"][0]["codename"].is_null());
    EXPECT_EQ(intel["gpus"][0]["bus_id"], 0);  // bus 0 is a bus
}

TEST(JsonReport, TextsThatAreNotUtf8StillGiveValidJson) {
    ReportSnapshot s = intelSoftwareMachine();
    s.gpus[0].name = std::string("Caf\xe9 \x80 GPU");
    s.gl.renderer = "quote \" backslash \\ tab \t";
    const json j = parsed(s);
    EXPECT_EQ(j["opengl"]["renderer"], s.gl.renderer);
    EXPECT_TRUE(j["gpus"][0]["name"].is_string());
    EXPECT_FALSE(writeJsonReport(s, nullptr));
    EXPECT_FALSE(writeJsonReport(s, "/proc/report.json"));
}

}  // namespace
