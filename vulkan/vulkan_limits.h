#pragma once

#include <cstdint>

// Counts a Vulkan driver or loader reports are capped here before anything is allocated from them: a driver
// answering INT_MAX extensions is broken, and the run must survive it. Each cap stands far above any machine
// or driver seen so far.
namespace vulkan {

constexpr uint32_t kMaxVulkanDevices = 64;
constexpr uint32_t kMaxVulkanExtensions = 4096;
constexpr uint32_t kMaxVulkanLayers = 256;
constexpr uint32_t kMaxVulkanQueueFamilies = 256;
// Room for the first instance-level call: what a loader with every Mesa and vendor driver offers fits.
constexpr uint32_t kInstanceExtensionsFirstRoom = 64;
constexpr uint32_t kInstanceLayersFirstRoom = 32;
// An enumeration whose count keeps changing between the two calls is asked this often, then kept as it is.
constexpr int kVulkanEnumerationTries = 4;
// The loader version whose driver filter (VK_LOADER_DRIVERS_DISABLE) keeps a sleeping GPU's driver unloaded.
constexpr uint32_t kDriverFilterLoaderVersion = VK_MAKE_API_VERSION(0, 1, 3, 234);

}  // namespace vulkan
