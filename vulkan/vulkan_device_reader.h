#pragma once

#include <cstdint>

#include "vulkan/vulkan_loader.h"
#include "vulkan/vulkan_records.h"

namespace vulkan {

// Everything one physical device tells, read through `calls`. `apiVersion` is the version the instance was
// made for: a structure newer than it or than the device is not asked for. A call that is missing or fails
// leaves its part empty and adds a line to the record's problems.
VulkanDeviceRecord readVulkanDevice(const VulkanInstanceCalls& calls, VkPhysicalDevice device, uint32_t apiVersion);

// The last core format; later values belong to extensions.
inline constexpr VkFormat kLastCoreFormat = VK_FORMAT_ASTC_12x12_SRGB_BLOCK;

}  // namespace vulkan
