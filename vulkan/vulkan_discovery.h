#pragma once

#include "base/log_sink.h"
#include "kalidor/machine_snapshot.h"
#include "vulkan/vulkan_loader.h"
#include "vulkan/vulkan_records.h"

// Vulkan discovery over the loader opened at run time: one log line per finding, in the start-up order after
// CUDA discovery. A machine without the loader, without a driver or with a GPU that must stay asleep gets an
// empty record whose status says why.
namespace vulkan {

// Reads the instance and every physical device. The machine snapshot says which GPUs sleep, so the drivers
// serving them are kept out of the enumeration (or discovery is skipped where that cannot be done).
void discoverVulkan(const Kalidornm::MachineSnapshot& machine, base::LogSink& log = base::programLog(),
                    const char* loaderName = kVulkanLoaderName);

// What the last discovery found; an empty record with status NoLoader before any.
const VulkanInfo& vulkanInfo();

void freeVulkanInfo();

}  // namespace vulkan
