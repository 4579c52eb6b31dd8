#include "vulkan/vulkan_loader.h"

namespace vulkan {
namespace {

template <typename Fn>
void lookUp(PFN_vkGetInstanceProcAddr getProcAddr, VkInstance instance, const char* name, Fn& slot,
            std::vector<std::string>& missing) {
    slot = reinterpret_cast<Fn>(getProcAddr(instance, name));
    if (!slot) missing.emplace_back(name);
}

}  // namespace

VulkanLoader::VulkanLoader(const char* name) : m_library(name) {
    m_getProcAddr = m_library.function<std::remove_pointer_t<PFN_vkGetInstanceProcAddr>>("vkGetInstanceProcAddr");
    if (!m_getProcAddr) return;
    std::vector<std::string> optional;  // a 1.0 loader has no version call; that is its version
    lookUp(m_getProcAddr, VK_NULL_HANDLE, "vkEnumerateInstanceVersion", m_global.enumerateInstanceVersion, optional);
    lookUp(m_getProcAddr, VK_NULL_HANDLE, "vkEnumerateInstanceExtensionProperties",
           m_global.enumerateInstanceExtensionProperties, m_missingGlobals);
    lookUp(m_getProcAddr, VK_NULL_HANDLE, "vkEnumerateInstanceLayerProperties",
           m_global.enumerateInstanceLayerProperties, m_missingGlobals);
    lookUp(m_getProcAddr, VK_NULL_HANDLE, "vkCreateInstance", m_global.createInstance, m_missingGlobals);
}

VulkanInstanceCalls VulkanLoader::instanceCalls(VkInstance instance, std::vector<std::string>& missing) const {
    VulkanInstanceCalls c;
    if (!m_getProcAddr) return c;
    lookUp(m_getProcAddr, instance, "vkDestroyInstance", c.destroyInstance, missing);
    lookUp(m_getProcAddr, instance, "vkEnumeratePhysicalDevices", c.enumeratePhysicalDevices, missing);
    lookUp(m_getProcAddr, instance, "vkGetPhysicalDeviceProperties", c.getProperties, missing);
    lookUp(m_getProcAddr, instance, "vkGetPhysicalDeviceProperties2", c.getProperties2, missing);
    lookUp(m_getProcAddr, instance, "vkGetPhysicalDeviceFeatures", c.getFeatures, missing);
    lookUp(m_getProcAddr, instance, "vkGetPhysicalDeviceFeatures2", c.getFeatures2, missing);
    lookUp(m_getProcAddr, instance, "vkEnumerateDeviceExtensionProperties", c.enumerateDeviceExtensionProperties,
           missing);
    lookUp(m_getProcAddr, instance, "vkGetPhysicalDeviceMemoryProperties", c.getMemoryProperties, missing);
    lookUp(m_getProcAddr, instance, "vkGetPhysicalDeviceMemoryProperties2", c.getMemoryProperties2, missing);
    lookUp(m_getProcAddr, instance, "vkGetPhysicalDeviceQueueFamilyProperties", c.getQueueFamilyProperties,
           missing);
    lookUp(m_getProcAddr, instance, "vkGetPhysicalDeviceFormatProperties", c.getFormatProperties, missing);
    return c;
}

void VulkanInstance::reset() {
    if (m_handle && m_destroy) m_destroy(m_handle, nullptr);
    m_handle = VK_NULL_HANDLE;
}

}  // namespace vulkan
