#pragma once

#include <nlohmann/json.hpp>

#include "vulkan/vulkan_records.h"

namespace report {

// report.json's "vulkan" object: the status, the instance and every device with every row of the field
// table. Keys inside a Vulkan structure are the members' own names, as the Vulkan headers spell them.
nlohmann::ordered_json vulkanJson(const vulkan::VulkanInfo& info);

}  // namespace report
