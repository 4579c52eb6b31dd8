#pragma once

#include <cstdint>
#include <span>
#include <string>

#include <vulkan/vulkan_core.h>

// The names of the Vulkan flag bits and enumeration values the outputs print, as the Vulkan headers spell
// them ("VK_SAMPLE_COUNT_4_BIT", "VK_DRIVER_ID_MESA_LLVMPIPE"). The tables are written from the headers by
// tools/gen_vulkan_tables.py.
namespace vulkan {

struct VkNamedValue {
    uint32_t value;
    const char* name;
};

enum class VkNameTable : uint8_t {
    SampleCount,
    ShaderStage,
    SubgroupFeature,
    ResolveMode,
    PointClipping,
    FloatControls,
    DriverId,
    DeviceType,
    FormatFeature,
    MemoryProperty,
    MemoryHeap,
    Queue,
    Format,  // the core formats only
    Result,  // VkResult, negative codes as their 32-bit patterns
};

std::span<const VkNamedValue> vkNames(VkNameTable table);

// The value's name, or null where the table does not know it.
const char* vkValueName(VkNameTable table, uint32_t value);

// Calls visit(name) for every set bit in table order, then visit(nullptr, bits) once for the bits the table
// does not name, if any.
template <typename Visit>
void vkForEachFlag(VkNameTable table, uint32_t flags, Visit&& visit) {
    uint32_t named = 0;
    for (const VkNamedValue& bit : vkNames(table)) {
        if (flags & bit.value) {
            visit(bit.name, bit.value);
            named |= bit.value;
        }
    }
    if (flags & ~named)
        visit(nullptr, flags & ~named);
}

// "VK_ERROR_INITIALIZATION_FAILED"; "VkResult -13" for a code the table does not know.
std::string vkResultText(VkResult result);

// "VK_SAMPLE_COUNT_1_BIT | VK_SAMPLE_COUNT_4_BIT"; "0" for no bit; bits without a name as one hex number.
std::string vkFlagsText(VkNameTable table, uint32_t flags);

}  // namespace vulkan
