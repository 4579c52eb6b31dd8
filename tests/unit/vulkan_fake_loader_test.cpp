#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <nlohmann/json.hpp>
#include <string>

#include "fakes/vulkan/fake_vulkan_values.h"
#include "report/json_vulkan.h"
#include "unit/compute_test_log.h"
#include "vulkan/vulkan_discovery.h"
#include "vulkan/vulkan_fields.h"
#include "vulkan/vulkan_limits.h"

// Discovery through the fake loader, on its normal machine and in each of its failure modes: whatever the
// loader answers, discovery returns, the record says what it could not read, and report.json's object of it
// is whole.
namespace {

using namespace vulkan;
namespace fv = fake_vulkan;

class FakeVulkan : public ::testing::Test {
protected:
    void TearDown() override {
        ::unsetenv(fv::kScenarioVariable);
        freeVulkanInfo();
    }
    const VulkanInfo& discover(const char* mode = nullptr) {
        if (mode) ::setenv(fv::kScenarioVariable, mode, 1);
        discoverVulkan(Kalidornm::MachineSnapshot{}, log.log(), FAKE_VULKAN_LIBRARY);
        return vulkanInfo();
    }
    // report.json's object, written and read back as a script would.
    static nlohmann::json asJson(const VulkanInfo& info) {
        const std::string text = report::vulkanJson(info).dump(2, ' ', false, nlohmann::json::error_handler_t::replace);
        return nlohmann::json::parse(text, nullptr, false);
    }
    bool anyProblemHas(const std::vector<std::string>& problems, const std::string& part) {
        return std::any_of(problems.begin(), problems.end(),
                           [&](const std::string& p) { return p.find(part) != std::string::npos; });
    }
    TestLog log;
};

std::string apiText(uint32_t v) {
    return std::to_string(VK_API_VERSION_MAJOR(v)) + "." + std::to_string(VK_API_VERSION_MINOR(v)) + "." +
           std::to_string(VK_API_VERSION_PATCH(v));
}

TEST_F(FakeVulkan, ReadsBothDevicesWithTheStructuresEachVersionOffers) {
    const VulkanInfo& info = discover();
    ASSERT_EQ(info.status, VulkanStatus::Read) << info.statusText;
    EXPECT_EQ(info.instanceVersion, fv::kLoaderVersion);
    EXPECT_EQ(info.instanceExtensions.size(), fv::kInstanceExtensionCount);
    ASSERT_EQ(info.layers.size(), fv::kLayerCount);
    EXPECT_EQ(info.layers[0].apiVersion, fv::kModernApiVersion);
    EXPECT_TRUE(info.problems.empty());
    ASSERT_EQ(info.devices.size(), 2u);

    const VulkanDeviceRecord& modern = info.devices[0];
    EXPECT_STREQ(modern.properties.deviceName, fv::kModernName);
    EXPECT_EQ(modern.properties.limits.maxImageDimension2D, fv::kMaxImageDimension2D);
    ASSERT_TRUE(modern.driver && modern.ids && modern.pciBus && modern.properties11 && modern.properties12 &&
                modern.properties13 && modern.features11 && modern.features12 && modern.features13);
    EXPECT_STREQ(modern.driver->driverName, fv::kDriverName);
    EXPECT_EQ(modern.pciBus->pciBus, fv::kPciBus);
    EXPECT_EQ(modern.features13->dynamicRendering, VK_TRUE);
    EXPECT_EQ(modern.extensions.size(), fv::kExtensionCount);
    ASSERT_TRUE(modern.hasMemoryBudget);
    ASSERT_EQ(modern.memoryHeaps.size(), 2u);
    for (size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(modern.memoryHeaps[i].size, fv::kHeapSizes[i]);
        EXPECT_EQ(modern.memoryHeaps[i].budget, fv::kHeapBudgets[i]);
        EXPECT_EQ(modern.memoryHeaps[i].usage, fv::kHeapUsages[i]);
    }
    EXPECT_EQ(modern.memoryTypes.size(), fv::kMemoryTypeCount);
    EXPECT_EQ(modern.queueFamilies.size(), fv::kQueueFamilyCount);
    EXPECT_EQ(modern.formats.size(), size_t(fv::kSupportedFormatsBelow - 1));  // VK_FORMAT_UNDEFINED is no format
    EXPECT_TRUE(modern.problems.empty());
    EXPECT_EQ(vkDriverVersionText(modern), apiText(fv::kModernDriverVersion));

    // A 1.0 device has none of the later structures, and its memory has no budget.
    const VulkanDeviceRecord& old = info.devices[1];
    EXPECT_STREQ(old.properties.deviceName, fv::kOldName);
    EXPECT_FALSE(old.driver || old.ids || old.pciBus || old.features11 || old.properties12 || old.properties13);
    EXPECT_FALSE(old.hasMemoryBudget);
    EXPECT_EQ(old.features.geometryShader, VK_TRUE);

    const std::vector<std::string> lines = log.messages();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], "Found 2 Vulkan device(s).");
    EXPECT_EQ(lines[1].find("- Vulkan device 0: " + std::string(fv::kModernName) + ", Vulkan " +
                            apiText(fv::kModernApiVersion)),
              0u)
        << lines[1];
}

// report.json holds every group's rows under the structure's name, null for a structure the device lacks,
// and the values worked out from the fake's own answers.
TEST_F(FakeVulkan, TheJsonObjectHoldsEveryRowOfEveryGroup) {
    const nlohmann::json json = asJson(discover());
    ASSERT_FALSE(json.is_discarded());
    EXPECT_EQ(json["status"], "read");
    EXPECT_EQ(json["instance"]["version"], apiText(fv::kLoaderVersion));
    ASSERT_EQ(json["devices"].size(), 2u);
    const nlohmann::json& modern = json["devices"][0];
    for (const VkFieldGroup& group : vkFieldGroups()) {
        ASSERT_TRUE(modern["structures"][group.name].is_object()) << group.name;
        EXPECT_EQ(modern["structures"][group.name].size(), group.rows.size()) << group.name;
    }
    EXPECT_EQ(modern["structures"]["VkPhysicalDeviceLimits"]["maxImageDimension2D"], fv::kMaxImageDimension2D);
    EXPECT_EQ(modern["structures"]["VkPhysicalDeviceLimits"]["pointSizeGranularity"].get<double>(),
              double(fv::kPointSizeGranularity));
    EXPECT_EQ(modern["structures"]["VkPhysicalDeviceLimits"]["framebufferColorSampleCounts"],
              nlohmann::json({"VK_SAMPLE_COUNT_1_BIT", "VK_SAMPLE_COUNT_4_BIT"}));
    EXPECT_EQ(modern["structures"]["VkPhysicalDeviceDriverProperties"]["driverID"], "VK_DRIVER_ID_MESA_RADV");
    char address[16];
    std::snprintf(address, sizeof address, "%04x:%02x:%02x.%x", fv::kPciDomain, fv::kPciBus, fv::kPciDevice,
                  fv::kPciFunction);
    EXPECT_EQ(modern["pci_address"], address);
    EXPECT_EQ(modern["memory"]["memoryHeaps"][1]["budget"], fv::kHeapBudgets[1]);
    EXPECT_EQ(modern["extensions"][VK_EXT_MEMORY_BUDGET_EXTENSION_NAME], 2);

    const nlohmann::json& old = json["devices"][1];
    EXPECT_TRUE(old["structures"]["VkPhysicalDeviceVulkan12Features"].is_null());
    EXPECT_TRUE(old["pci_address"].is_null());
    EXPECT_FALSE(old["memory"]["memoryHeaps"][0].contains("budget"));
}

TEST_F(FakeVulkan, AMachineWithoutDevicesOrWithoutADriverIsAnEmptySectionThatSaysWhy) {
    {
        const VulkanInfo& info = discover(fv::mode::kNoDevices);
        EXPECT_EQ(info.status, VulkanStatus::Read);
        EXPECT_TRUE(info.devices.empty());
        EXPECT_EQ(log.messages().at(0), "Found 0 Vulkan device(s).");
    }
    log.clear();
    {
        const VulkanInfo& info = discover(fv::mode::kInstanceFails);
        EXPECT_EQ(info.status, VulkanStatus::InstanceFailed);
        EXPECT_NE(info.statusText.find("VK_ERROR_INCOMPATIBLE_DRIVER"), std::string::npos) << info.statusText;
        EXPECT_TRUE(info.devices.empty());
        // The record holds the reason alone; the log, the report and the window each put "Vulkan: " before it.
        EXPECT_EQ(log.messages(), std::vector<std::string>{"Vulkan: " + info.statusText});
        EXPECT_EQ(info.statusText.rfind("no instance (VK_ERROR_INCOMPATIBLE_DRIVER)", 0), 0u) << info.statusText;
        EXPECT_EQ(asJson(info)["status_text"], info.statusText);
    }
    log.clear();
    {
        const VulkanInfo& info = discover(fv::mode::kNoCreateInstance);
        EXPECT_EQ(info.status, VulkanStatus::NoLoader);
        EXPECT_NE(info.statusText.find("vkCreateInstance"), std::string::npos) << info.statusText;
    }
    log.clear();
    discoverVulkan(Kalidornm::MachineSnapshot{}, log.log(), "/nonexistent/libvulkan.so.1");
    EXPECT_EQ(vulkanInfo().status, VulkanStatus::NoLoader);
    EXPECT_EQ(log.messages(), std::vector<std::string>{"Vulkan: could not find /nonexistent/libvulkan.so.1."});
    EXPECT_EQ(vulkanInfo().statusText, "could not find /nonexistent/libvulkan.so.1.");
    EXPECT_EQ(asJson(vulkanInfo())["devices"].size(), 0u);
    log.clear();
    discoverVulkan(Kalidornm::MachineSnapshot{}, log.log(), "libm.so.6");  // a library, but no loader
    EXPECT_EQ(vulkanInfo().status, VulkanStatus::NoLoader);
    EXPECT_EQ(log.messages(), std::vector<std::string>{"Vulkan: libm.so.6 has no vkGetInstanceProcAddr."});
}

// INT_MAX of everything: each list stops at its cap and says so; nothing is allocated from the count.
TEST_F(FakeVulkan, HugeCountsAreCappedAndNamed) {
    const VulkanInfo& info = discover(fv::mode::kHugeCounts);
    ASSERT_EQ(info.status, VulkanStatus::Read);
    EXPECT_EQ(info.devices.size(), kMaxVulkanDevices);
    EXPECT_EQ(info.instanceExtensions.size(), kMaxVulkanExtensions);
    EXPECT_EQ(info.layers.size(), kMaxVulkanLayers);
    const std::string capped = std::to_string(INT_MAX) + " reported, the first ";
    EXPECT_TRUE(anyProblemHas(info.problems, "vkEnumeratePhysicalDevices: " + capped + "64 read"));
    EXPECT_TRUE(anyProblemHas(info.problems, "vkEnumerateInstanceLayerProperties: " + capped));
    const VulkanDeviceRecord& device = info.devices[0];
    EXPECT_EQ(device.extensions.size(), kMaxVulkanExtensions);
    EXPECT_EQ(device.queueFamilies.size(), kMaxVulkanQueueFamilies);
    EXPECT_TRUE(anyProblemHas(device.problems, "vkEnumerateDeviceExtensionProperties: " + capped + "4096 read"));
    EXPECT_TRUE(anyProblemHas(device.problems, "vkGetPhysicalDeviceQueueFamilyProperties: " + capped));
    EXPECT_FALSE(asJson(info).is_discarded());
}

// A list that grows on every call is asked a few times, then kept as read, with the reason in its problems.
TEST_F(FakeVulkan, AListThatKeepsGrowingIsKeptAfterItsTries) {
    const VulkanInfo& info = discover(fv::mode::kIncomplete);
    ASSERT_EQ(info.status, VulkanStatus::Read);
    EXPECT_FALSE(info.devices.empty());
    EXPECT_TRUE(anyProblemHas(info.problems, "vkEnumeratePhysicalDevices: VK_INCOMPLETE after every try"));
    EXPECT_TRUE(anyProblemHas(info.devices[0].problems, "vkEnumerateDeviceExtensionProperties: VK_INCOMPLETE"));
    EXPECT_FALSE(asJson(info).is_discarded());
}

// Without the device queries beyond the core properties and features each part is named, not guessed.
TEST_F(FakeVulkan, MissingEntryPointsAreProblemsOfTheirOwn) {
    const VulkanInfo& info = discover(fv::mode::kMissingEntryPoints);
    ASSERT_EQ(info.status, VulkanStatus::Read);
    for (const char* call : {"vkGetPhysicalDeviceProperties2", "vkEnumerateDeviceExtensionProperties",
                             "vkGetPhysicalDeviceMemoryProperties2", "vkGetPhysicalDeviceFormatProperties"})
        EXPECT_TRUE(anyProblemHas(info.problems, std::string(call) + ": not offered by the loader")) << call;
    ASSERT_EQ(info.devices.size(), 2u);
    const VulkanDeviceRecord& modern = info.devices[0];
    EXPECT_STREQ(modern.properties.deviceName, fv::kModernName);
    EXPECT_FALSE(modern.driver);
    EXPECT_TRUE(modern.memoryHeaps.empty() && modern.queueFamilies.empty() && modern.formats.empty());
    EXPECT_TRUE(anyProblemHas(modern.problems, "vkGetPhysicalDeviceMemoryProperties: not offered"));
    EXPECT_EQ(asJson(info)["devices"][0]["problems"].size(), modern.problems.size());
}

// Names that fill their arrays without a terminator end at the array's last byte, never beyond it.
TEST_F(FakeVulkan, UnterminatedNamesAreCutAtTheirArrays) {
    const VulkanInfo& info = discover(fv::mode::kUnterminated);
    ASSERT_EQ(info.status, VulkanStatus::Read);
    ASSERT_FALSE(info.layers.empty());
    EXPECT_EQ(info.layers[0].name, std::string(VK_MAX_EXTENSION_NAME_SIZE, 'U'));
    EXPECT_EQ(info.layers[0].description, std::string(VK_MAX_DESCRIPTION_SIZE, 'U'));
    const VulkanDeviceRecord& modern = info.devices.at(0);
    EXPECT_EQ(std::strlen(modern.properties.deviceName), size_t(VK_MAX_PHYSICAL_DEVICE_NAME_SIZE - 1));
    ASSERT_TRUE(modern.driver);
    EXPECT_EQ(std::strlen(modern.driver->driverInfo), size_t(VK_MAX_DRIVER_INFO_SIZE - 1));
    EXPECT_EQ(modern.extensions.at(0).name, std::string(VK_MAX_EXTENSION_NAME_SIZE, 'U'));
    const nlohmann::json json = asJson(info);
    EXPECT_EQ(json["devices"][0]["structures"]["VkPhysicalDeviceDriverProperties"]["driverName"],
              std::string(VK_MAX_DRIVER_NAME_SIZE - 1, 'U'));
}

TEST_F(FakeVulkan, FailingEnumerationsAndOversizedMemoryCountsLeaveTheRestWhole) {
    {
        const VulkanInfo& info = discover(fv::mode::kErrors);
        EXPECT_EQ(info.status, VulkanStatus::Read);
        EXPECT_TRUE(anyProblemHas(info.problems, "vkEnumerateInstanceVersion: VK_ERROR_OUT_OF_HOST_MEMORY"));
        EXPECT_TRUE(anyProblemHas(info.problems, "vkEnumeratePhysicalDevices: VK_ERROR_INITIALIZATION_FAILED"));
        EXPECT_TRUE(info.devices.empty());
        EXPECT_TRUE(info.instanceExtensions.empty());
    }
    {
        const VulkanInfo& info = discover(fv::mode::kMemoryCounts);
        ASSERT_EQ(info.devices.size(), 2u);
        EXPECT_EQ(info.devices[0].memoryHeaps.size(), size_t(VK_MAX_MEMORY_HEAPS));
        EXPECT_EQ(info.devices[0].memoryTypes.size(), size_t(VK_MAX_MEMORY_TYPES));
        EXPECT_TRUE(anyProblemHas(info.devices[0].problems, "1000 heaps and 1000 types reported"));
        EXPECT_EQ(info.devices[0].queueFamilies.size(), fv::kQueueFamilyCount);
    }
}

}  // namespace
