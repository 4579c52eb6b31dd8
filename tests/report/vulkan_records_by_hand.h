#pragma once

#include <cstring>

#include "vulkan/vulkan_records.h"

// Vulkan records filled by hand, as discovery would fill them on a software rasterizer and on a driver that
// answers badly, for the outputs' tests.
namespace vulkan_by_hand {

inline constexpr VkDeviceSize kHeapBytes = VkDeviceSize(3) << 30;  // 3 GiB
inline constexpr VkDeviceSize kBudgetBytes = VkDeviceSize(1536) << 20;

inline vulkan::VulkanDeviceRecord softwareDevice() {
    vulkan::VulkanDeviceRecord d;
    VkPhysicalDeviceProperties& p = d.properties;
    p.apiVersion = VK_MAKE_API_VERSION(0, 1, 3, 230);
    p.driverVersion = VK_MAKE_API_VERSION(0, 0, 0, 1);
    p.vendorID = 0x10005;
    p.deviceID = 0;
    p.deviceType = VK_PHYSICAL_DEVICE_TYPE_CPU;
    std::strcpy(p.deviceName, "llvmpipe (LLVM 15.0.6, 256 bits)");
    p.limits.maxImageDimension2D = 16384;
    p.limits.maxViewports = 16;
    p.limits.maxComputeWorkGroupCount[0] = 65535;
    p.limits.maxComputeWorkGroupCount[1] = 65535;
    p.limits.maxComputeWorkGroupCount[2] = 65535;
    p.limits.timestampPeriod = 1.0f;
    d.features.geometryShader = VK_TRUE;
    VkPhysicalDeviceDriverProperties driver{};
    driver.driverID = VK_DRIVER_ID_MESA_LLVMPIPE;
    std::strcpy(driver.driverName, "llvmpipe");
    std::strcpy(driver.driverInfo, "Mesa 22.3.6 (LLVM 15.0.6)");
    driver.conformanceVersion = {1, 3, 1, 1};
    d.driver = driver;
    d.features12 = VkPhysicalDeviceVulkan12Features{};
    d.features12->timelineSemaphore = VK_TRUE;
    d.extensions = {{"VK_KHR_maintenance1", 2}, {"VK_EXT_memory_budget", 1}};
    d.memoryHeaps = {{kHeapBytes, VK_MEMORY_HEAP_DEVICE_LOCAL_BIT, kBudgetBytes, 0}};
    d.hasMemoryBudget = true;
    d.memoryTypes = {{VK_MEMORY_PROPERTY_DEVICE_LOCAL_BIT | VK_MEMORY_PROPERTY_HOST_VISIBLE_BIT, 0}};
    d.queueFamilies = {{VK_QUEUE_GRAPHICS_BIT | VK_QUEUE_COMPUTE_BIT | VK_QUEUE_TRANSFER_BIT, 1, 64, {1, 1, 1}}};
    d.formats = {{VK_FORMAT_R8G8B8A8_UNORM, VK_FORMAT_FEATURE_SAMPLED_IMAGE_BIT,
                  VK_FORMAT_FEATURE_SAMPLED_IMAGE_BIT | VK_FORMAT_FEATURE_COLOR_ATTACHMENT_BIT,
                  VK_FORMAT_FEATURE_VERTEX_BUFFER_BIT},
                 {VK_FORMAT_BC1_RGB_UNORM_BLOCK, 0, 0, 0}};
    return d;
}

// A driver that filled the name to the last byte, gave unknown flag bits and a format the tables do not know,
// and failed some reads.
inline vulkan::VulkanDeviceRecord badlyAnsweringDevice() {
    vulkan::VulkanDeviceRecord d;
    std::memset(d.properties.deviceName, 'N', sizeof d.properties.deviceName);
    d.properties.deviceName[0] = '<';
    d.properties.deviceName[1] = '&';
    d.memoryHeaps = {{4096, 0x80000000u | VK_MEMORY_HEAP_DEVICE_LOCAL_BIT, std::nullopt, std::nullopt}};
    d.queueFamilies = {{0, 0, 0, {}}};
    d.formats = {{VkFormat(1000999000), 0, 0, 0}};
    d.problems = {"vkEnumerateDeviceExtensionProperties: VK_INCOMPLETE", "vkGetPhysicalDeviceFeatures2: missing"};
    return d;
}

inline vulkan::VulkanInfo instanceWith(std::vector<vulkan::VulkanDeviceRecord> devices) {
    vulkan::VulkanInfo info;
    info.status = vulkan::VulkanStatus::Read;
    info.instanceVersion = VK_MAKE_API_VERSION(0, 1, 3, 239);
    info.instanceExtensions = {{"VK_KHR_surface", 25}, {"VK_EXT_debug_utils", 2}};
    info.layers = {{"VK_LAYER_MESA_device_select", "Linux device selection layer", VK_MAKE_API_VERSION(0, 1, 3, 211), 1}};
    info.devices = std::move(devices);
    return info;
}

}  // namespace vulkan_by_hand
