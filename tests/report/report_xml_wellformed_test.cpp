#include <gtest/gtest.h>

#include <string>

#include "integration/program_runner.h"
#include "tests/report/rendered_report.h"
#include "tests/report/report_fixtures.h"
#include "tests/report/vulkan_records_by_hand.h"

namespace {

namespace fs = std::filesystem;
using namespace report;
using namespace report_fixtures;

// Every XML report is checked by an independent parser: xmllint of libxml2.
class XmlReportUnderXmllint : public ::testing::Test {
protected:
    fs::path dir = fs::temp_directory_path() /
                   ("report_xmllint_" + std::to_string(getpid()) + "_" +
                    ::testing::UnitTest::GetInstance()->current_test_info()->name());
    void SetUp() override { fs::create_directories(dir); }
    void TearDown() override { fs::remove_all(dir); }

    // The XML file exactly as the batch branch writes it.
    void write(const ReportSnapshot& s) { std::ofstream(dir / "report.xml", std::ios::binary) << renderReport(s).xml; }

    ProgramRun xmllint(const std::vector<std::string>& args) {
        std::vector<std::string> all = args;
        all.push_back("report.xml");
        ProgramRun run = runProgram(XMLLINT_BINARY, dir, all);
        EXPECT_NE(run.exitCode, 127) << "xmllint (Debian package libxml2-utils) is needed";
        return run;
    }

    void expectWellFormed() {
        const ProgramRun run = xmllint({"--noout"});
        EXPECT_EQ(run.exitCode, 0) << run.errorText.substr(0, 2000);
        EXPECT_EQ(run.errorText, "");
    }

    // The string value of an XPath expression, as the parser reads it.
    std::string read(const std::string& xpath) {
        std::string value = xmllint({"--xpath", "string(" + xpath + ")"}).outputText;
        if (!value.empty() && value.back() == '\n') value.pop_back();
        return value;
    }
};

// A Vulkan device name is whatever the driver wrote into its array, to the last byte.
TEST_F(XmlReportUnderXmllint, AVulkanDeviceWithAnUnterminatedHostileNamePassesXmllint) {
    ReportSnapshot s = intelSoftwareMachine();
    s.vulkan.devices.insert(s.vulkan.devices.begin(), vulkan_by_hand::badlyAnsweringDevice());
    write(s);
    expectWellFormed();
    const std::string name = "<&" + std::string(VK_MAX_PHYSICAL_DEVICE_NAME_SIZE - 2, 'N');
    EXPECT_EQ(read("//vulkan_device[1]/@name"), name);
    EXPECT_EQ(read("//vulkan_device[1]/VkPhysicalDeviceProperties/@deviceName"), name);
    EXPECT_EQ(read("//vulkan_device[2]/VkPhysicalDeviceLimits/@maxImageDimension2D"), "16384");
    EXPECT_EQ(read("//vulkan_device[1]/problem[2]"), "vkGetPhysicalDeviceFeatures2: missing");
}

// Names used to go in unescaped, so an OS name with & or < made the whole file unreadable.
TEST_F(XmlReportUnderXmllint, AnOsNameWithAmpersandAndAngleBracketPassesXmllint) {
    ReportSnapshot s = nvidiaMachine();
    s.system.osDescription = "Debian & <Friends> GNU/Linux 12";
    s.driver.nvDriverBranch = "r535_00 \"beta\" & 'rc'";
    s.clPlatforms[0].devices[0].extensions.push_back("cl_vendor_<odd>&name");
    s.links = ReportLinks{{{"", "https://drivers.example/?a=1&b=2"}}, {{"GTX", "https://reviews.example/?x<y"}}};
    write(s);
    expectWellFormed();
    EXPECT_EQ(read("//operating_system/@description"), "Debian & <Friends> GNU/Linux 12");
    EXPECT_EQ(read("//gpu/@branch"), "r535_00 \"beta\" & 'rc'");
    EXPECT_EQ(read("//device/extensions/li[last()]"), "cl_vendor_<odd>&name");
    EXPECT_EQ(read("//graphics_drivers/driver/@url"), "https://drivers.example/?a=1&b=2");
}

// The file says UTF-8, so a driver's Latin-1 byte or a control character must not reach it as it is.
TEST_F(XmlReportUnderXmllint, TextsReadBackAsGivenAndBadBytesAsReplacementCharacters) {
    ReportSnapshot s = nvidiaMachine();
    const std::string layout = "tab\there, line\nfeed, return\r, \"quotes\" 'both', <&>, Caf\xC3\xA9 \xF0\x9F\x8E\xAE";
    s.gpus[0].name = layout;
    s.gl.extensions[1].name = layout;
    s.gpus[0].biosVersion = std::string("80.04\xE9 \x01") + "rev";
    write(s);
    expectWellFormed();
    EXPECT_EQ(read("//gpu/@name"), layout);  // tabs and line ends survive attribute normalisation
    EXPECT_EQ(read("(//opengl_extensions)[2]/li[2]"), layout);
    EXPECT_EQ(read("//gpu/@bios_version"), "80.04\xEF\xBF\xBD \xEF\xBF\xBDrev");
}

// Reports used to stop at a 1,000,000-byte buffer: a thousand OpenCL devices left the XML unclosed.
TEST_F(XmlReportUnderXmllint, AThousandOpenClPlatformsAndAThousandDevicesGiveWellFormedXml) {
    ReportSnapshot s = intelSoftwareMachine();
    ASSERT_EQ(s.clPlatforms.size(), 1u);
    ASSERT_EQ(s.clPlatforms[0].devices.size(), 1u);
    const ReportClPlatform one = s.clPlatforms[0];
    s.clPlatforms.assign(1000, one);
    ReportClPlatform crowded = one;
    crowded.devices.assign(1000, one.devices[0]);
    s.clPlatforms.push_back(crowded);
    write(s);
    expectWellFormed();
    EXPECT_EQ(read("count(//opencl/platform)"), "1001");
    EXPECT_EQ(read("count(//opencl/device)"), "2000");
    EXPECT_EQ(read("/lumen_scope/graphics_cards/gpu/@name"), *s.gpus[0].name);
}

}  // namespace
