#pragma once

#include <optional>
#include <string>
#include <vector>

#include <vulkan/vulkan_core.h>

#include "base/dynamic_library.h"

// The Vulkan loader opened at run time and the entry points discovery uses, each looked up through
// vkGetInstanceProcAddr as the loader asks. A missing entry point is null and named in `missing`; the caller
// decides what it can still read.
namespace vulkan {

inline constexpr const char* kVulkanLoaderName = "libvulkan.so.1";

// A driver structure zeroed and typed, ready to be chained or filled.
template <typename T>
T vkStructure(VkStructureType type) {
    T value{};
    value.sType = type;
    return value;
}

struct VulkanGlobalCalls {
    PFN_vkEnumerateInstanceVersion enumerateInstanceVersion = nullptr;  // absent from 1.0 loaders
    PFN_vkEnumerateInstanceExtensionProperties enumerateInstanceExtensionProperties = nullptr;
    PFN_vkEnumerateInstanceLayerProperties enumerateInstanceLayerProperties = nullptr;
    PFN_vkCreateInstance createInstance = nullptr;
};

struct VulkanInstanceCalls {
    PFN_vkDestroyInstance destroyInstance = nullptr;
    PFN_vkEnumeratePhysicalDevices enumeratePhysicalDevices = nullptr;
    PFN_vkGetPhysicalDeviceProperties getProperties = nullptr;
    PFN_vkGetPhysicalDeviceProperties2 getProperties2 = nullptr;  // instances of 1.1 and later
    PFN_vkGetPhysicalDeviceFeatures getFeatures = nullptr;
    PFN_vkGetPhysicalDeviceFeatures2 getFeatures2 = nullptr;
    PFN_vkEnumerateDeviceExtensionProperties enumerateDeviceExtensionProperties = nullptr;
    PFN_vkGetPhysicalDeviceMemoryProperties getMemoryProperties = nullptr;
    PFN_vkGetPhysicalDeviceMemoryProperties2 getMemoryProperties2 = nullptr;
    PFN_vkGetPhysicalDeviceQueueFamilyProperties getQueueFamilyProperties = nullptr;
    PFN_vkGetPhysicalDeviceFormatProperties getFormatProperties = nullptr;
};

class VulkanLoader {
public:
    explicit VulkanLoader(const char* name);
    bool hasLibrary() const { return m_library.isLoaded(); }
    bool isLoaded() const { return m_getProcAddr != nullptr; }
    const VulkanGlobalCalls& global() const { return m_global; }
    // The instance-level entry points of `instance`; the names of those missing go to `missing`.
    VulkanInstanceCalls instanceCalls(VkInstance instance, std::vector<std::string>& missing) const;
    // The names of the global entry points the loader lacks.
    const std::vector<std::string>& missingGlobals() const { return m_missingGlobals; }

private:
    base::DynamicLibrary m_library;
    PFN_vkGetInstanceProcAddr m_getProcAddr = nullptr;
    VulkanGlobalCalls m_global;
    std::vector<std::string> m_missingGlobals;
};

// One instance, destroyed with the object.
class VulkanInstance {
public:
    VulkanInstance() = default;
    VulkanInstance(VkInstance handle, PFN_vkDestroyInstance destroy) : m_handle(handle), m_destroy(destroy) {}
    ~VulkanInstance() { reset(); }
    VulkanInstance(const VulkanInstance&) = delete;
    VulkanInstance& operator=(const VulkanInstance&) = delete;
    VkInstance handle() const { return m_handle; }
    void reset();

private:
    VkInstance m_handle = VK_NULL_HANDLE;
    PFN_vkDestroyInstance m_destroy = nullptr;
};

}  // namespace vulkan
