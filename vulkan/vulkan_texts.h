#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <vulkan/vulkan_core.h>

#include "vulkan/vulkan_records.h"

// Short texts the Vulkan outputs share beside the field rows: versions, formats and the instance's status.
namespace vulkan {

// A packed version as "1.3.239", the variant left out.
std::string vkVersionText(uint32_t version);

// "VK_FORMAT_R8G8B8A8_UNORM"; a value the names table does not know is "VkFormat 1000999000".
std::string vkFormatText(VkFormat format);

// The device's PCI address in the form the GPU records use ("0000:03:00.0"), where the device gave one.
std::optional<std::string> vkPciAddressText(const VulkanDeviceRecord& device);

// The one line the outputs show for the instance: the status text discovery wrote, or a line of its own for a
// record discovery never filled.
std::string vkStatusLine(const VulkanInfo& info);

}  // namespace vulkan
