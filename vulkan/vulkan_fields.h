#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "vulkan/vulkan_records.h"

// One row per Vulkan field: where the record keeps it and how it is printed and named. Discovery fills the
// driver's structures whole; the window's tree, the text and XML sections and report.json walk these rows, so
// a field is added in one place. Names are the members' own names in the Vulkan headers.
namespace vulkan {

enum class VkFieldType : uint8_t {
    Bool32,         // VkBool32: "true" / "false"
    Uint32,
    Int32,
    Uint64,         // VkDeviceSize and other 64-bit counts
    Size,           // size_t
    Float,
    Uint32Array,    // count members of uint32_t
    FloatArray,     // count members of float
    SampleCounts,   // VkSampleCountFlags
    ShaderStages,   // VkShaderStageFlags
    SubgroupOps,    // VkSubgroupFeatureFlags
    ResolveModes,   // VkResolveModeFlags
    Uuid,           // uint8_t[VK_UUID_SIZE]
    Luid,           // uint8_t[VK_LUID_SIZE]
    Text,           // char[count]
    PointClipping,  // VkPointClippingBehavior
    FloatControls,  // VkShaderFloatControlsIndependence
    DriverId,       // VkDriverId
    Conformance,    // VkConformanceVersion
    DeviceType,     // VkPhysicalDeviceType
    ApiVersion,     // a packed version: "1.3.239"
};

struct VkFieldRow {
    const char* name;  // the member's name: "maxImageDimension1D"
    size_t offset;     // offsetof in the group's structure
    VkFieldType type;
    uint16_t count = 1;  // array members and texts (names hold 256 characters)
};

// A structure of the record and its rows: "VkPhysicalDeviceLimits", "VkPhysicalDeviceVulkan12Features".
struct VkFieldGroup {
    const char* name;
    std::span<const VkFieldRow> rows;
    // The structure inside the record, or null where the device did not give it.
    const void* (*locate)(const VulkanDeviceRecord& device);
};

// Every group in the order the outputs show them: properties, limits, sparse properties, driver and ID
// properties, PCI bus information, the features of 1.0, 1.1, 1.2 and 1.3, the properties of 1.1, 1.2 and 1.3.
std::span<const VkFieldGroup> vkFieldGroups();

// The value as the text and XML reports and the window show it.
std::string vkFieldText(const VkFieldRow& row, const void* structure);
// The value as a JSON value (number, true/false, quoted text or array), ready to be written.
std::string vkFieldJson(const VkFieldRow& row, const void* structure);

// The driver version in the form its driver packs it: NVIDIA's 10.8.8.6 bits, Intel's own Windows driver 18.14,
// Mesa and everyone else VK_API_VERSION's 7.10.12 bits. Decided by the driver id where the device gives one,
// by the vendor id otherwise (NVIDIA only: Intel packs its own way only in its Windows driver).
std::string vkDriverVersionText(const VulkanDeviceRecord& device);

}  // namespace vulkan
