// The Vulkan section of the text and XML reports over hand-filled records: last in the report, every row of
// every group the device gave, memory, queues and formats by name, and a badly answering driver.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "tests/report/rendered_report.h"
#include "tests/report/report_fixtures.h"
#include "tests/report/vulkan_records_by_hand.h"
#include "vulkan/vulkan_fields.h"

namespace {

using ::testing::HasSubstr;
using ::testing::Not;

constexpr const char* kHeading = "===================================[ Vulkan Capabilities ]\n";

size_t countOf(const std::string& text, const std::string& part) {
    size_t count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++count;
    return count;
}

std::string sectionOf(const std::string& text) {
    const size_t at = text.find(kHeading);
    return at == std::string::npos ? std::string() : text.substr(at);
}

// The "\t\t- " lines under the line "\t- GROUP:".
std::vector<std::string> rowLines(const std::string& section, const std::string& group) {
    std::vector<std::string> lines;
    const size_t at = section.find("\t- " + group + ":\n");
    if (at == std::string::npos) return lines;
    std::istringstream in(section.substr(at + group.size() + 5));
    for (std::string line; std::getline(in, line) && line.rfind("\t\t- ", 0) == 0;) lines.push_back(line);
    return lines;
}

size_t limitRowCount() {
    for (const vulkan::VkFieldGroup& group : vulkan::vkFieldGroups())
        if (std::string(group.name) == "VkPhysicalDeviceLimits") return group.rows.size();
    return 0;
}

TEST(VulkanSection, StandsLastWithOrWithoutADisplayAndSaysWhyNothingWasRead) {
    for (report::ReportSnapshot s : {report_fixtures::nvidiaMachine(), report_fixtures::noDriverMachine()}) {
        const RenderedReport plain = renderReport(s);
        const std::string section = sectionOf(plain.text);
        ASSERT_FALSE(section.empty());
        EXPECT_EQ(section, std::string(kHeading) + "- Vulkan: not read: no Vulkan loader\n");
        EXPECT_THAT(plain.xml, HasSubstr("<vulkan status=\"not read: no Vulkan loader\" />\n\n</lumen_scope>"));

        s.vulkan.status = vulkan::VulkanStatus::SkippedForSleepingGpu;
        s.vulkan.statusText = "skipped: the GPU at 0000:01:00.0 sleeps and its driver also serves an awake GPU";
        const RenderedReport skipped = renderReport(s);
        EXPECT_EQ(sectionOf(skipped.text), std::string(kHeading) + "- Vulkan: " + s.vulkan.statusText + "\n");
        // Everything before the section is the same whatever Vulkan gave.
        EXPECT_EQ(skipped.text.substr(0, skipped.text.find(kHeading)), plain.text.substr(0, plain.text.find(kHeading)));
    }
}

TEST(VulkanSection, EveryRowOfEveryGroupTheDeviceGaveIsALineAndAnAttribute) {
    report::ReportSnapshot s = report_fixtures::noDriverMachine();
    const vulkan::VulkanDeviceRecord device = vulkan_by_hand::softwareDevice();
    s.vulkan = vulkan_by_hand::instanceWith({device});
    const RenderedReport r = renderReport(s);
    const std::string section = sectionOf(r.text);

    int offered = 0;
    for (const vulkan::VkFieldGroup& group : vulkan::vkFieldGroups()) {
        const void* structure = group.locate(device);
        if (!structure) {
            EXPECT_THAT(section, HasSubstr("\t- " + std::string(group.name) + ": not offered\n"));
            EXPECT_THAT(r.xml, Not(HasSubstr("<" + std::string(group.name) + " ")));
            continue;
        }
        ++offered;
        EXPECT_EQ(rowLines(section, group.name).size(), group.rows.size()) << group.name;
        const size_t element = r.xml.find("<" + std::string(group.name) + " ");
        ASSERT_NE(element, std::string::npos) << group.name;
        const std::string attributes = r.xml.substr(element, r.xml.find("/>", element) - element);
        size_t count = 0;
        for (size_t at = attributes.find("=\""); at != std::string::npos; at = attributes.find("=\"", at + 2)) ++count;
        EXPECT_EQ(count, group.rows.size()) << group.name;
    }
    EXPECT_GE(offered, 4);  // properties, limits, sparse properties, features; driver and 1.2 features as filled

    const VkPhysicalDeviceLimits& limits = device.properties.limits;
    const std::vector<std::string> limitLines = rowLines(section, "VkPhysicalDeviceLimits");
    EXPECT_THAT(limitLines, ::testing::Contains("\t\t- maxImageDimension2D: " + std::to_string(limits.maxImageDimension2D)));
    EXPECT_THAT(limitLines, ::testing::Contains("\t\t- maxViewports: " + std::to_string(limits.maxViewports)));
    EXPECT_THAT(rowLines(section, "VkPhysicalDeviceFeatures"), ::testing::Contains("\t\t- geometryShader: true"));
    EXPECT_THAT(rowLines(section, "VkPhysicalDeviceVulkan12Features"),
                ::testing::Contains("\t\t- timelineSemaphore: true"));
    EXPECT_THAT(r.xml, HasSubstr("\n\t\t\t\t\tmaxImageDimension2D=\"16384\""));
}

TEST(VulkanSection, InstanceMemoryQueuesAndFormatsStandInBytesAndNamedBits) {
    report::ReportSnapshot s = report_fixtures::noDriverMachine();
    s.vulkan = vulkan_by_hand::instanceWith({vulkan_by_hand::softwareDevice()});
    const std::string section = sectionOf(renderReport(s).text);
    const auto heapMb = static_cast<unsigned long long>(vulkan_by_hand::kHeapBytes / (1024 * 1024));
    const std::string expected = std::string(kHeading) +
        "- Vulkan instance version: 1.3.239\n"
        "- Instance extensions: 2\n"
        "\t- VK_KHR_surface (revision 25)\n"
        "\t- VK_EXT_debug_utils (revision 2)\n"
        "- Instance layers: 1\n"
        "\t- VK_LAYER_MESA_device_select (Vulkan 1.3.211, implementation 1): Linux device selection layer\n"
        "- Num Vulkan devices: 1\n"
        "- Vulkan Device 0: llvmpipe (LLVM 15.0.6, 256 bits)\n"
        "\t- Driver version: 0.0.1\n";
    EXPECT_EQ(section.substr(0, expected.size()), expected);
    EXPECT_THAT(section, HasSubstr("\t- Extensions: 2\n\t\t- VK_KHR_maintenance1 (revision 2)\n"
                                   "\t\t- VK_EXT_memory_budget (revision 1)\n"));
    EXPECT_THAT(section, HasSubstr("\t- Memory heaps: 1\n\t\t- Heap 0: size " + std::to_string(vulkan_by_hand::kHeapBytes) +
                                   " (" + std::to_string(heapMb) + " MB), flags VK_MEMORY_HEAP_DEVICE_LOCAL_BIT, budget " +
                                   std::to_string(vulkan_by_hand::kBudgetBytes) + ", usage 0\n"));
    EXPECT_THAT(section, HasSubstr("\t\t- Type 0: heap 0, flags VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT | "
                                   "VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT\n"));
    EXPECT_THAT(section, HasSubstr("\t- Queue families: 1\n\t\t- Family 0: flags VK_QUEUE_GRAPHICS_BIT | "
                                   "VK_QUEUE_COMPUTE_BIT | VK_QUEUE_TRANSFER_BIT, queues 1, timestamp bits 64, "
                                   "granularity 1x1x1\n"));
    EXPECT_THAT(section, HasSubstr("\t- Formats: 2\n\t\t- VK_FORMAT_R8G8B8A8_UNORM: linear "
                                   "VK_FORMAT_FEATURE_SAMPLED_IMAGE_BIT; optimal VK_FORMAT_FEATURE_SAMPLED_IMAGE_BIT | "
                                   "VK_FORMAT_FEATURE_COLOR_ATTACHMENT_BIT; buffer VK_FORMAT_FEATURE_VERTEX_BUFFER_BIT\n"
                                   "\t\t- VK_FORMAT_BC1_RGB_UNORM_BLOCK: linear 0; optimal 0; buffer 0\n"));
    EXPECT_THAT(section, Not(HasSubstr("Not read")));
}

TEST(VulkanSection, ABadlyAnsweringDriverLeavesTheReportWholeAndSaysWhatWasNotRead) {
    report::ReportSnapshot s = report_fixtures::nvidiaMachine();
    s.vulkan = vulkan_by_hand::instanceWith({vulkan_by_hand::badlyAnsweringDevice(), vulkan_by_hand::softwareDevice()});
    s.vulkan.problems = {"vkEnumerateInstanceLayerProperties: VK_ERROR_OUT_OF_HOST_MEMORY"};
    const RenderedReport r = renderReport(s);
    const std::string section = sectionOf(r.text);

    // The name filled to its last byte is cut there, not read on into the next member.
    const std::string name = "<&" + std::string(VK_MAX_PHYSICAL_DEVICE_NAME_SIZE - 2, 'N');
    EXPECT_THAT(section, HasSubstr("- Vulkan Device 0: " + name + "\n"));
    EXPECT_THAT(r.xml, HasSubstr("name=\"&lt;&amp;" + name.substr(2) + "\""));
    EXPECT_THAT(section, HasSubstr("flags VK_MEMORY_HEAP_DEVICE_LOCAL_BIT | 0x80000000\n"));
    EXPECT_THAT(section, HasSubstr("\t\t- VkFormat 1000999000: linear 0; optimal 0; buffer 0\n"));
    EXPECT_THAT(section, HasSubstr("\t- Not read: 2\n\t\t- vkEnumerateDeviceExtensionProperties: VK_INCOMPLETE\n"
                                   "\t\t- vkGetPhysicalDeviceFeatures2: missing\n"));
    EXPECT_THAT(section, HasSubstr("- Not read: 1\n\t- vkEnumerateInstanceLayerProperties: VK_ERROR_OUT_OF_HOST_MEMORY\n"));
    // The second device follows whole.
    EXPECT_THAT(section, HasSubstr("- Vulkan Device 1: llvmpipe (LLVM 15.0.6, 256 bits)\n"));
    EXPECT_EQ(rowLines(section.substr(section.find("- Vulkan Device 1")), "VkPhysicalDeviceLimits").size(),
              limitRowCount());
    EXPECT_EQ(limitRowCount(), 106u);
    EXPECT_THAT(r.xml, HasSubstr("<problem>vkGetPhysicalDeviceFeatures2: missing</problem>"));
}

// A device that gives its PCI address is shown against the GPU record at that address, and only that one.
TEST(VulkanSection, APciAddressNamesTheGpuRecordAtThatAddress) {
    report::ReportSnapshot s = report_fixtures::nvidiaMachine();
    ASSERT_FALSE(s.gpus.empty());
    s.gpus[0].pciAddress = "0000:0a:00.0";
    vulkan::VulkanDeviceRecord onGpu = vulkan_by_hand::softwareDevice();
    onGpu.pciBus = VkPhysicalDevicePCIBusInfoPropertiesEXT{};
    onGpu.pciBus->pciBus = 0x0a;
    vulkan::VulkanDeviceRecord elsewhere = onGpu;
    elsewhere.pciBus->pciDevice = 0x1f;
    elsewhere.pciBus->pciFunction = 3;
    s.vulkan = vulkan_by_hand::instanceWith({onGpu, elsewhere, vulkan_by_hand::softwareDevice()});
    const RenderedReport r = renderReport(s);
    const std::string section = sectionOf(r.text);
    EXPECT_THAT(section, HasSubstr("\t- Driver version: 0.0.1\n\t- PCI address: 0000:0a:00.0 (GPU 0: " +
                                   s.gpus[0].name.value() + ")\n"));
    EXPECT_THAT(section, HasSubstr("\t- Driver version: 0.0.1\n\t- PCI address: 0000:0a:1f.3\n"));
    EXPECT_EQ(countOf(section, "\t- PCI address: "), 2u);
    EXPECT_THAT(r.xml, HasSubstr("driver_version=\"0.0.1\" pci_address=\"0000:0a:00.0\">"));
}

}  // namespace
