#include "vulkan/vulkan_device_reader.h"

#include <algorithm>
#include <cstring>

#include "base/text_format.h"
#include "vulkan/vulkan_enumerate.h"

namespace vulkan {
namespace {

bool atLeast(uint32_t version, uint32_t major, uint32_t minor) {
    return version >= VK_MAKE_API_VERSION(0, major, minor, 0);
}

// A driver that fills a name to the last byte leaves it without a terminator: the last byte becomes one.
template <size_t N>
void terminate(char (&text)[N]) {
    text[N - 1] = '\0';
}

void missing(VulkanDeviceRecord& record, const char* call) {
    record.problems.push_back(std::string(call) + ": not offered by the loader");
}

bool hasExtension(const VulkanDeviceRecord& record, const char* name) {
    return std::any_of(record.extensions.begin(), record.extensions.end(),
                       [&](const VulkanExtension& e) { return e.name == name; });
}

// Links `next` in front of the chain that starts at `head->pNext`.
template <typename Head, typename Next>
void chain(Head& head, Next& next) {
    next.pNext = head.pNext;
    head.pNext = &next;
}

template <typename T>
std::optional<T> kept(bool asked, T value) {
    if (!asked) return std::nullopt;
    value.pNext = nullptr;
    return value;
}

void readExtensions(const VulkanInstanceCalls& c, VkPhysicalDevice device, VulkanDeviceRecord& record) {
    if (!c.enumerateDeviceExtensionProperties) return missing(record, "vkEnumerateDeviceExtensionProperties");
    const auto extensions = enumerateCapped<VkExtensionProperties>(
        [&](uint32_t* count, VkExtensionProperties* items) {
            return c.enumerateDeviceExtensionProperties(device, nullptr, count, items);
        },
        kMaxVulkanExtensions, "vkEnumerateDeviceExtensionProperties", record.problems);
    for (const VkExtensionProperties& extension : extensions) {
        const auto& [name, revision] = extension;
        record.extensions.push_back({std::string(name, strnlen(name, sizeof name)), revision});
    }
}

void readProperties2(const VulkanInstanceCalls& c, VkPhysicalDevice device, uint32_t version,
                     VulkanDeviceRecord& record) {
    if (!c.getProperties2) return missing(record, "vkGetPhysicalDeviceProperties2");
    const bool askIds = atLeast(version, 1, 1);
    const bool askDriver = atLeast(version, 1, 2) || hasExtension(record, VK_KHR_DRIVER_PROPERTIES_EXTENSION_NAME);
    const bool askPci = hasExtension(record, VK_EXT_PCI_BUS_INFO_EXTENSION_NAME);
    const bool ask12 = atLeast(version, 1, 2), ask13 = atLeast(version, 1, 3);

    auto properties = vkStructure<VkPhysicalDeviceProperties2>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_PROPERTIES_2);
    auto ids = vkStructure<VkPhysicalDeviceIDProperties>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_ID_PROPERTIES);
    auto driver = vkStructure<VkPhysicalDeviceDriverProperties>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_DRIVER_PROPERTIES);
    auto pci = vkStructure<VkPhysicalDevicePCIBusInfoPropertiesEXT>(
        VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_PCI_BUS_INFO_PROPERTIES_EXT);
    auto p11 = vkStructure<VkPhysicalDeviceVulkan11Properties>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_1_PROPERTIES);
    auto p12 = vkStructure<VkPhysicalDeviceVulkan12Properties>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_2_PROPERTIES);
    auto p13 = vkStructure<VkPhysicalDeviceVulkan13Properties>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_PROPERTIES);
    if (askIds) chain(properties, ids);
    if (askDriver) chain(properties, driver);
    if (askPci) chain(properties, pci);
    if (ask12) {
        chain(properties, p11);
        chain(properties, p12);
    }
    if (ask13) chain(properties, p13);
    c.getProperties2(device, &properties);
    terminate(driver.driverName);
    terminate(driver.driverInfo);
    terminate(p12.driverName);
    terminate(p12.driverInfo);
    record.ids = kept(askIds, ids);
    record.driver = kept(askDriver, driver);
    record.pciBus = kept(askPci, pci);
    record.properties11 = kept(ask12, p11);
    record.properties12 = kept(ask12, p12);
    record.properties13 = kept(ask13, p13);
}

void readFeatures(const VulkanInstanceCalls& c, VkPhysicalDevice device, uint32_t version,
                  VulkanDeviceRecord& record) {
    if (c.getFeatures)
        c.getFeatures(device, &record.features);
    else
        missing(record, "vkGetPhysicalDeviceFeatures");
    const bool ask12 = atLeast(version, 1, 2), ask13 = atLeast(version, 1, 3);
    if (!ask12) return;
    if (!c.getFeatures2) return missing(record, "vkGetPhysicalDeviceFeatures2");
    auto features = vkStructure<VkPhysicalDeviceFeatures2>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_FEATURES_2);
    auto f11 = vkStructure<VkPhysicalDeviceVulkan11Features>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_1_FEATURES);
    auto f12 = vkStructure<VkPhysicalDeviceVulkan12Features>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_2_FEATURES);
    auto f13 = vkStructure<VkPhysicalDeviceVulkan13Features>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_VULKAN_1_3_FEATURES);
    chain(features, f11);
    chain(features, f12);
    if (ask13) chain(features, f13);
    c.getFeatures2(device, &features);
    record.features11 = kept(true, f11);
    record.features12 = kept(true, f12);
    record.features13 = kept(ask13, f13);
}

void readMemory(const VulkanInstanceCalls& c, VkPhysicalDevice device, uint32_t version, VulkanDeviceRecord& record) {
    auto memory = vkStructure<VkPhysicalDeviceMemoryProperties2>(VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_MEMORY_PROPERTIES_2);
    auto budget = vkStructure<VkPhysicalDeviceMemoryBudgetPropertiesEXT>(
        VK_STRUCTURE_TYPE_PHYSICAL_DEVICE_MEMORY_BUDGET_PROPERTIES_EXT);
    record.hasMemoryBudget = atLeast(version, 1, 1) && c.getMemoryProperties2 &&
                             hasExtension(record, VK_EXT_MEMORY_BUDGET_EXTENSION_NAME);
    if (record.hasMemoryBudget) {
        chain(memory, budget);
        c.getMemoryProperties2(device, &memory);
    } else if (c.getMemoryProperties) {
        c.getMemoryProperties(device, &memory.memoryProperties);
    } else {
        return missing(record, "vkGetPhysicalDeviceMemoryProperties");
    }
    const VkPhysicalDeviceMemoryProperties& m = memory.memoryProperties;
    const uint32_t heaps = std::min<uint32_t>(m.memoryHeapCount, VK_MAX_MEMORY_HEAPS);
    const uint32_t types = std::min<uint32_t>(m.memoryTypeCount, VK_MAX_MEMORY_TYPES);
    if (heaps < m.memoryHeapCount || types < m.memoryTypeCount)
        record.problems.push_back(base::formatText("vkGetPhysicalDeviceMemoryProperties: %u heaps and %u types "
                                                   "reported, the first %u and %u read",
                                                   m.memoryHeapCount, m.memoryTypeCount, heaps, types));
    for (uint32_t i = 0; i < heaps; ++i) {
        VulkanMemoryHeap heap;
        heap.size = m.memoryHeaps[i].size;
        heap.flags = m.memoryHeaps[i].flags;
        if (record.hasMemoryBudget) {
            heap.budget = budget.heapBudget[i];
            heap.usage = budget.heapUsage[i];
        }
        record.memoryHeaps.push_back(heap);
    }
    for (uint32_t i = 0; i < types; ++i)
        record.memoryTypes.push_back({m.memoryTypes[i].propertyFlags, m.memoryTypes[i].heapIndex});
}

void readQueueFamilies(const VulkanInstanceCalls& c, VkPhysicalDevice device, VulkanDeviceRecord& record) {
    if (!c.getQueueFamilyProperties) return missing(record, "vkGetPhysicalDeviceQueueFamilyProperties");
    const auto families = enumerateCapped<VkQueueFamilyProperties>(
        [&](uint32_t* count, VkQueueFamilyProperties* items) {
            c.getQueueFamilyProperties(device, count, items);
            return VK_SUCCESS;
        },
        kMaxVulkanQueueFamilies, "vkGetPhysicalDeviceQueueFamilyProperties", record.problems);
    for (const VkQueueFamilyProperties& f : families)
        record.queueFamilies.push_back({f.queueFlags, f.queueCount, f.timestampValidBits,
                                        f.minImageTransferGranularity});
}

void readFormats(const VulkanInstanceCalls& c, VkPhysicalDevice device, VulkanDeviceRecord& record) {
    if (!c.getFormatProperties) return missing(record, "vkGetPhysicalDeviceFormatProperties");
    for (int f = VK_FORMAT_UNDEFINED + 1; f <= kLastCoreFormat; ++f) {
        VkFormatProperties p{};
        c.getFormatProperties(device, VkFormat(f), &p);
        if (p.linearTilingFeatures || p.optimalTilingFeatures || p.bufferFeatures)
            record.formats.push_back({VkFormat(f), p.linearTilingFeatures, p.optimalTilingFeatures, p.bufferFeatures});
    }
}

}  // namespace

VulkanDeviceRecord readVulkanDevice(const VulkanInstanceCalls& c, VkPhysicalDevice device, uint32_t apiVersion) {
    VulkanDeviceRecord record;
    if (!c.getProperties) {
        missing(record, "vkGetPhysicalDeviceProperties");
        return record;
    }
    c.getProperties(device, &record.properties);
    terminate(record.properties.deviceName);
    // Structures newer than both the instance and the device are not the device's to fill.
    const uint32_t version = std::min(apiVersion, record.properties.apiVersion);
    readExtensions(c, device, record);
    if (atLeast(apiVersion, 1, 1)) readProperties2(c, device, version, record);
    readFeatures(c, device, version, record);
    readMemory(c, device, version, record);
    readQueueFamilies(c, device, record);
    readFormats(c, device, record);
    return record;
}

}  // namespace vulkan
