#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <vulkan/vulkan_core.h>

// What Vulkan discovery learned of the instance and each physical device; read-only once discovery is done.
// The driver's own structures are kept as it filled them (their pNext pointers cleared), so the field rows of
// vulkan_fields.h reach every member by offset, and a record filled by hand replays any machine.
namespace vulkan {

struct VulkanExtension {
    std::string name;
    uint32_t version = 0;  // the extension's own revision
};

struct VulkanLayer {
    std::string name;
    std::string description;
    uint32_t apiVersion = 0;  // the Vulkan version the layer was written against
    uint32_t implementationVersion = 0;
};

struct VulkanMemoryHeap {
    VkDeviceSize size = 0;
    VkMemoryHeapFlags flags = 0;
    std::optional<VkDeviceSize> budget;  // only where the device offers VK_EXT_memory_budget
    std::optional<VkDeviceSize> usage;
};

struct VulkanMemoryType {
    VkMemoryPropertyFlags propertyFlags = 0;
    uint32_t heapIndex = 0;
};

struct VulkanQueueFamily {
    VkQueueFlags flags = 0;
    uint32_t count = 0;
    uint32_t timestampValidBits = 0;
    VkExtent3D minImageTransferGranularity{};
};

struct VulkanFormatSupport {
    VkFormat format = VK_FORMAT_UNDEFINED;
    VkFormatFeatureFlags linearTilingFeatures = 0;
    VkFormatFeatureFlags optimalTilingFeatures = 0;
    VkFormatFeatureFlags bufferFeatures = 0;
};

struct VulkanDeviceRecord {
    VkPhysicalDeviceProperties properties{};  // the limits and the sparse properties sit inside
    VkPhysicalDeviceFeatures features{};
    // Each of the following is read only where the device's version or extensions offer it.
    std::optional<VkPhysicalDeviceDriverProperties> driver;
    std::optional<VkPhysicalDeviceIDProperties> ids;
    std::optional<VkPhysicalDevicePCIBusInfoPropertiesEXT> pciBus;
    std::optional<VkPhysicalDeviceVulkan11Features> features11;
    std::optional<VkPhysicalDeviceVulkan12Features> features12;
    std::optional<VkPhysicalDeviceVulkan13Features> features13;
    std::optional<VkPhysicalDeviceVulkan11Properties> properties11;
    std::optional<VkPhysicalDeviceVulkan12Properties> properties12;
    std::optional<VkPhysicalDeviceVulkan13Properties> properties13;
    std::vector<VulkanExtension> extensions;
    std::vector<VulkanMemoryHeap> memoryHeaps;
    std::vector<VulkanMemoryType> memoryTypes;
    bool hasMemoryBudget = false;
    std::vector<VulkanQueueFamily> queueFamilies;
    std::vector<VulkanFormatSupport> formats;  // the core formats with any feature, in VkFormat order
    // What could not be read, one short line each ("vkEnumerateDeviceExtensionProperties: VK_INCOMPLETE").
    std::vector<std::string> problems;
};

enum class VulkanStatus : uint8_t {
    Read,               // the instance was made; devices may still be none
    NoLoader,           // libvulkan.so.1 not found, or an entry point missing
    InstanceFailed,     // vkCreateInstance failed (no driver, or the driver refused)
    SkippedForSleepingGpu,  // a sleeping GPU could not be kept out of the enumeration
};

struct VulkanInfo {
    VulkanStatus status = VulkanStatus::NoLoader;
    std::string statusText;  // the one line the log and the Vulkan section show when status is not Read
    std::optional<uint32_t> instanceVersion;  // VK_MAKE_API_VERSION packed
    std::vector<VulkanExtension> instanceExtensions;
    std::vector<VulkanLayer> layers;
    std::vector<VulkanDeviceRecord> devices;
    std::vector<std::string> problems;  // instance-level reads that failed
};

}  // namespace vulkan
