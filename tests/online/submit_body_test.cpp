#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "online/form_fields.h"
#include "report/online/submit_body.h"

namespace {

using namespace online;
using online_test::FormFields;
using online_test::splitForm;

std::string bodyOf(const SubmissionFacts& facts, const char* screenName = "", const char* password = "") {
    std::string body;
    EXPECT_TRUE(buildSubmitBody(facts, screenName, password, body));
    return body;
}

FormFields fieldsOf(const SubmissionFacts& facts, const char* screenName = "", const char* password = "") {
    return splitForm(bodyOf(facts, screenName, password));
}

SubmitGpu nvidiaGpu() {
    SubmitGpu g;
    g.vendorId = 0x10DE, g.deviceId = 0x1180, g.subvendorId = 0x10DE, g.subdeviceId = 0x0969;
    g.driverVersion = "R550.54";
    g.name = "NVIDIA GeForce GTX 680";
    g.codename = "GK104";
    g.shaderCores = 1536;
    g.busId = 3;
    g.baseClocks = ClockPair{1006.0f, 3004.0f};
    g.boostClocks = ClockPair{1058.9f, 3004.0f};
    g.powerTargetPercent = 80.0f;
    g.powerPolicy = SubmitPowerPolicy{40.0f, 140.0f, 100.0f};
    g.clockOffsets = SubmitClockOffsets{-50.0f, 200.0f, 0.0f};
    g.perfLevels = {{1110.0f, 3004.0f, 1.1f}};
    g.p0Clocks = SubmitClocks{1110.0f, 3004.0f, 1.1f};
    return g;
}

SubmitGpu radeonGpu() {
    SubmitGpu g;
    g.vendorId = 0x1002, g.deviceId = 0x67DF;
    g.name = "AMD Radeon RX 580";
    g.busId = 5;
    g.perfLevels = {{300.0f, 300.0f, 0.75f}, {1340.7f, 2000.0f, 1.15f}, {900.0f, 1750.0f, 0.9f}};
    return g;
}

TEST(SubmitBody, AnonymousInAnyCaseAndEmptyNamesSendNoScreenName) {
    const SubmissionFacts facts;
    for (const char* name : {"", "Anonymous", "ANONYMOUS", "anonymous", "aNoNyMoUs"})
        EXPECT_FALSE(fieldsOf(facts, name).has("screen_name")) << name;
    EXPECT_EQ(fieldsOf(facts, "Anonymous2").get("screen_name"), "Anonymous2");
    EXPECT_EQ(fieldsOf(facts, "Jane%20Doe").get("screen_name"), "Jane%20Doe");
    EXPECT_FALSE(fieldsOf(facts, "x", "").has("submit_password"));
    EXPECT_EQ(fieldsOf(facts, "x", "secret").get("submit_password"), "secret");

    std::string body = "left over";
    EXPECT_FALSE(buildSubmitBody(facts, nullptr, "", body));
    EXPECT_FALSE(buildSubmitBody(facts, "", nullptr, body));
    // A second build starts afresh instead of doubling the body.
    ASSERT_TRUE(buildSubmitBody(facts, "", "", body));
    const std::string once = body;
    ASSERT_TRUE(buildSubmitBody(facts, "", "", body));
    EXPECT_EQ(body, once);
}

TEST(SubmitBody, NoDriverTextFallsBackToThePlatformAndOpenGlForGpuZeroOnly) {
    SubmissionFacts facts;
    facts.glVersion = "4.6 (Core Profile) Mesa 22.3.6";
    facts.gpus = {radeonGpu(), radeonGpu()};
    const FormFields f = fieldsOf(facts);
    EXPECT_EQ(f.get("gpu0_graphics_drivers"), "Linux(64-bit)_GL_4.6_(Core_Profile)_Mesa_22.3.6");
    EXPECT_FALSE(f.has("gpu1_graphics_drivers"));
    EXPECT_EQ(f.get("num_gpus"), "2");
    EXPECT_EQ(f.get("gpu1_bus_id"), "5");
}

TEST(SubmitBody, AmdDriverTextsNameCatalystOrCrimsonFirst) {
    SubmissionFacts facts;
    SubmitGpu g = radeonGpu();
    g.driverVersion = "15.301.1201.0";
    g.catalystVersion = "16.2.1";
    g.isCrimson = true;
    facts.gpus = {g};
    EXPECT_EQ(fieldsOf(facts).get("gpu0_graphics_drivers"), "Crimson%2016.2.1%20(15.301.1201.0)");
    facts.gpus[0].isCrimson = false;
    EXPECT_EQ(fieldsOf(facts).get("gpu0_graphics_drivers"), "Catalyst%2016.2.1%20(15.301.1201.0)");
    facts.gpus[0].catalystVersion.clear();
    EXPECT_EQ(fieldsOf(facts).get("gpu0_graphics_drivers"), "15.301.1201.0");
    // The Catalyst form belongs to AMD alone.
    facts.gpus[0] = nvidiaGpu();
    facts.gpus[0].catalystVersion = "16.2.1";
    EXPECT_EQ(fieldsOf(facts).get("gpu0_graphics_drivers"), "R550.54");
}

TEST(SubmitBody, BoostEraNvidiaGpuSendsItsDriverClocksAndNotThePerformanceLevels) {
    SubmissionFacts facts;
    facts.gpus = {nvidiaGpu()};
    const FormFields f = fieldsOf(facts);
    EXPECT_EQ(f.get("gpu0_core_clock_base_mhz"), "1006");
    EXPECT_EQ(f.get("gpu0_core_clock_boost_mhz"), "1058");
    EXPECT_EQ(f.count("gpu0_core_clock_base_mhz"), 1u);
    EXPECT_EQ(f.get("gpu0_nv_power_target_percent"), "80");
    EXPECT_EQ(f.get("gpu0_nv_power_target_default_percent"), "100");
    // Offsets go out only when above 0.
    EXPECT_FALSE(f.has("gpu0_nv_core_clock_offset"));
    EXPECT_EQ(f.get("gpu0_nv_mem_clock_offset"), "200");
    // The P0 read fills only what the driver clocks left open.
    EXPECT_EQ(f.get("gpu0_core_voltage_mv"), "1100");
    EXPECT_EQ(f.get("gpu0_mem_clock_mhz"), "3004");
    EXPECT_EQ(f.get("gpu0_name"), "NVIDIA%20GeForce%20GTX%20680");

    // Without a power target the policy is not looked at.
    facts.gpus[0].powerTargetPercent.reset();
    const FormFields noTarget = fieldsOf(facts);
    EXPECT_FALSE(noTarget.has("gpu0_nv_power_target_percent"));
    EXPECT_FALSE(noTarget.has("gpu0_nv_power_target_min_percent"));
    // Without a boost clock the offsets are not looked at.
    facts.gpus[0].boostClocks.reset();
    EXPECT_FALSE(fieldsOf(facts).has("gpu0_nv_mem_clock_offset"));
}

TEST(SubmitBody, ClockRowsFallBackToThePerformanceLevelsThenToTheP0Read) {
    // No driver clocks: the top of the performance levels, each row once.
    SubmissionFacts facts;
    facts.gpus = {radeonGpu()};
    FormFields f = fieldsOf(facts);
    EXPECT_EQ(f.get("gpu0_core_clock_base_mhz"), "1340");
    EXPECT_EQ(f.get("gpu0_mem_clock_mhz"), "2000");
    EXPECT_EQ(f.get("gpu0_core_voltage_mv"), "1150");
    for (const char* once : {"gpu0_core_clock_base_mhz", "gpu0_mem_clock_mhz", "gpu0_core_voltage_mv"})
        EXPECT_EQ(f.count(once), 1u) << once;

    // What the levels leave open, the P0 read fills.
    SubmitGpu g = radeonGpu();
    g.perfLevels = {{500.0f, 0.0f, 0.0f}};
    g.p0Clocks = SubmitClocks{1200.0f, 1750.0f, 1.05f};
    facts.gpus = {g};
    f = fieldsOf(facts);
    EXPECT_EQ(f.get("gpu0_core_clock_base_mhz"), "500");
    EXPECT_EQ(f.get("gpu0_mem_clock_mhz"), "1750");
    EXPECT_EQ(f.get("gpu0_core_voltage_mv"), "1050");

    // A GPU the P0 read does not serve offers what the base and boost reads left: here only a base clock,
    // written once as the base clock, with its memory clock.
    g = radeonGpu();
    g.perfLevels.clear();
    g.baseClocks = ClockPair{800.0f, 1600.0f};
    facts.gpus = {g};
    f = fieldsOf(facts);
    EXPECT_EQ(f.get("gpu0_core_clock_base_mhz"), "800");
    EXPECT_EQ(f.count("gpu0_core_clock_base_mhz"), 1u);
    EXPECT_EQ(f.get("gpu0_mem_clock_mhz"), "1600");
    EXPECT_FALSE(f.has("gpu0_core_voltage_mv"));
}

TEST(SubmitBody, WithoutAGpuRecordThePrimaryDeviceIsSentAsGpuZero) {
    SubmissionFacts facts;
    facts.glRenderer = "llvmpipe (LLVM 15.0.6, 256 bits)";
    facts.glVersion = "4.5 (Core Profile) Mesa 22.3.6";
    facts.primary.vendorKind = 1;
    facts.primary.nvDriverVersionNumber = 53518;
    facts.primary.nvDriverBranch = "r535_00";
    facts.primary.driverVersion = "535.183.01";
    facts.primary.driverDate = "2024-06-01";
    facts.primary.vendorId = 0x10DE, facts.primary.deviceId = 0x2204;
    facts.primary.tdpWatts = 350;
    FormFields f = fieldsOf(facts);
    EXPECT_EQ(f.get("num_gpus"), "1");
    EXPECT_EQ(f.get("gpu0_graphics_drivers"), "R535.18%20(r535_00)%20/%20535.183.01%20(2024-06-01)");
    EXPECT_EQ(f.get("gpu0_vendor_id"), "4318");
    EXPECT_EQ(f.get("gpu0_subdevice_id"), "-1");
    EXPECT_EQ(f.get("gpu0_name"), "Linux(64-bit)_llvmpipe%20(LLVM%2015.0.6%20256%20bits)");
    EXPECT_EQ(f.get("gpu0_tdp"), "350");
    EXPECT_FALSE(f.has("gpu0_cores"));
    EXPECT_FALSE(f.has("gpu0_bus_id"));  // no record, no live or bus values

    facts.primary.vendorKind = 4;
    facts.primary.gpuName = "Intel UHD Graphics 630";
    f = fieldsOf(facts);
    EXPECT_EQ(f.get("gpu0_graphics_drivers"), "Linux(64-bit)%20|%20OpenGL%204.5%20(Core%20Profile)%20Mesa%2022.3.6");
    EXPECT_EQ(f.get("gpu0_name"), "Intel%20UHD%20Graphics%20630");
}

TEST(SubmitBody, OpenGlLimitsFollowTheDatabasesOrderAndListsEndEachNameWithAnEscapedBlank) {
    SubmissionFacts facts;
    facts.glVendor = "Mesa";
    facts.glRenderer = "llvmpipe";
    facts.glVersion = "4.5";
    SubmitGlCap triple{"GL_MAX_COMPUTE_WORK_GROUP_COUNT", 5, 0, {65535, 65535, 65535}};
    SubmitGlCap samples{"GL_MAX_SAMPLES", 1, 32, {}};
    SubmitGlCap samplesAgain{"GL_MAX_SAMPLES", 1, 4, {}};  // an extension's row of the same limit
    SubmitGlCap unlisted{"GL_MAX_LIGHTS", 1, 8, {}};
    SubmitGlCap cull{"GL_MAX_CULL_DISTANCES", 1, 8, {}};
    facts.glCaps = {cull, samples, unlisted, triple, samplesAgain};
    facts.glExtensions = {"GL_ARB_multitexture", "GL_EXT_texture3D"};
    const std::string body = bodyOf(facts);
    EXPECT_NE(body.find("&opengl_GL_VENDOR=Mesa&opengl_GL_RENDERER=llvmpipe&opengl_GL_VERSION=4.5"
                        "&opengl_caps_GL_MAX_COMPUTE_WORK_GROUP_COUNT=65535_65535_65535"
                        "&opengl_caps_GL_MAX_SAMPLES=32&opengl_caps_GL_MAX_CULL_DISTANCES=8"
                        "&opengl_num_extensions=2&opengl_GL_EXTENSIONS=GL_ARB_multitexture%20GL_EXT_texture3D%20"),
              std::string::npos)
        << body;
    EXPECT_EQ(body.find("GL_MAX_LIGHTS"), std::string::npos);
}

TEST(SubmitBody, ExtensionListsStopAtTheLastWholeNameThatFits) {
    SubmissionFacts facts;
    for (int i = 0; i < 1000; ++i) facts.glExtensions.push_back("GL_EXT_extension_number_" + std::to_string(i));
    const FormFields f = fieldsOf(facts);
    EXPECT_EQ(f.get("opengl_num_extensions"), "1000");
    const std::string list = f.get("opengl_GL_EXTENSIONS");
    EXPECT_LT(list.size(), kGlExtensionListSize);
    EXPECT_GT(list.size(), kGlExtensionListSize - 40);
    EXPECT_TRUE(list.ends_with("%20"));
    const size_t lastName = list.rfind("GL_EXT_extension_number_");
    EXPECT_NE(list.substr(lastName).find("%20"), std::string::npos);
}

TEST(SubmitBody, DriverTextsCannotInjectFormItems) {
    SubmissionFacts facts;
    SubmitGpu g = nvidiaGpu();
    g.name = "Evil&screen_name=x";
    g.driverVersion = "1.0&submit_password=leak";
    g.biosVersion = "a=b";
    facts.gpus = {g};
    facts.osDescription = "os&x=1";
    const FormFields f = fieldsOf(facts, "", "");
    EXPECT_FALSE(f.has("screen_name"));
    EXPECT_FALSE(f.has("submit_password"));
    EXPECT_FALSE(f.has("x"));
    EXPECT_EQ(f.get("gpu0_name"), "Evilscreen_namex");
}

}  // namespace
