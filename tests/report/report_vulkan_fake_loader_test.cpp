// The text and XML reports over what discovery read through the fake Vulkan loader, in its normal machine and
// each of its failure modes: the reports stay whole, every device read is in them, and the Vulkan section
// lists every problem discovery named.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "fakes/vulkan/fake_vulkan_values.h"
#include "tests/report/rendered_report.h"
#include "tests/report/report_fixtures.h"
#include "vulkan/vulkan_discovery.h"

namespace {

using ::testing::HasSubstr;
using ::testing::Not;
namespace fv = fake_vulkan;

size_t countOf(const std::string& text, const std::string& part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
    return count;
}

struct QuietLog : base::LogSink {
    void writeLine(std::string_view) override {}
};

class ReportOverFakeVulkan : public ::testing::TestWithParam<const char*> {
protected:
    void TearDown() override {
        ::unsetenv(fv::kScenarioVariable);
        vulkan::freeVulkanInfo();
    }
};

TEST_P(ReportOverFakeVulkan, StaysWholeWithEveryDeviceAndEveryProblem) {
    if (*GetParam()) ::setenv(fv::kScenarioVariable, GetParam(), 1);
    QuietLog quiet;
    vulkan::discoverVulkan(Kalidornm::MachineSnapshot{}, quiet, FAKE_VULKAN_LIBRARY);
    report::ReportSnapshot s = report_fixtures::nvidiaMachine();
    s.vulkan = vulkan::vulkanInfo();
    const RenderedReport r = renderReport(s);

    const size_t heading = r.text.find("[ Vulkan Capabilities ]\n");
    ASSERT_NE(heading, std::string::npos);
    const std::string section = r.text.substr(heading);
    ASSERT_EQ(section.back(), '\n');
    EXPECT_EQ(countOf(section, "\n- Vulkan Device "), s.vulkan.devices.size());
    EXPECT_EQ(countOf(r.xml, "<vulkan_device "), s.vulkan.devices.size());
    EXPECT_EQ(countOf(r.xml, "</vulkan_device>"), s.vulkan.devices.size());
    if (s.vulkan.status == vulkan::VulkanStatus::Read) {
        EXPECT_THAT(r.xml, HasSubstr("\n\t\t</vulkan>\n\n</lumen_scope>"));
    } else {
        EXPECT_THAT(section, HasSubstr("\n- Vulkan: " + s.vulkan.statusText + "\n"));
        EXPECT_THAT(section, Not(HasSubstr("Vulkan: Vulkan")));
        EXPECT_THAT(r.xml, HasSubstr(" />\n\n</lumen_scope>"));
    }
    for (const std::string& problem : s.vulkan.problems) EXPECT_THAT(section, HasSubstr("\n\t- " + problem + "\n"));
    for (const vulkan::VulkanDeviceRecord& device : s.vulkan.devices) {
        // A name without its terminator is cut at the array's end.
        const std::string name(device.properties.deviceName,
                               strnlen(device.properties.deviceName, VK_MAX_PHYSICAL_DEVICE_NAME_SIZE));
        EXPECT_THAT(section, HasSubstr(": " + name + "\n\t- Driver version: "));
        for (const std::string& problem : device.problems)
            EXPECT_THAT(section, HasSubstr("\n\t\t- " + problem + "\n"));
    }
}

INSTANTIATE_TEST_SUITE_P(EveryMode, ReportOverFakeVulkan,
                         ::testing::Values("", fv::mode::kNoDevices, fv::mode::kInstanceFails, fv::mode::kHugeCounts,
                                           fv::mode::kIncomplete, fv::mode::kMissingEntryPoints,
                                           fv::mode::kNoCreateInstance, fv::mode::kUnterminated, fv::mode::kErrors,
                                           fv::mode::kMemoryCounts),
                         [](const ::testing::TestParamInfo<const char*>& mode) {
                             return *mode.param ? std::string(mode.param) : std::string("normal");
                         });

}  // namespace
