#include "vulkan/vulkan_fields.h"

#include <charconv>
#include <cmath>
#include <cstring>

#include "base/text_format.h"
#include "vulkan/vulkan_names.h"
#include "vulkan/vulkan_texts.h"

namespace vulkan {
namespace {

template <typename T>
T memberAt(const void* structure, size_t offset, size_t index = 0) {
    T value;
    std::memcpy(&value, static_cast<const unsigned char*>(structure) + offset + index * sizeof(T), sizeof(T));
    return value;
}

// The shortest decimal that reads back to the same float: 0.125, 16, -32768.
std::string floatText(float value) {
    char text[32];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value);
    return error == std::errc() ? std::string(text, end) : std::string("?");
}

std::string floatJson(float value) { return std::isfinite(value) ? floatText(value) : std::string("null"); }

// A driver's text ends at its first NUL or at the end of its array, whichever comes first.
std::string_view textAt(const void* structure, const VkFieldRow& row) {
    const char* begin = static_cast<const char*>(structure) + row.offset;
    return std::string_view(begin, strnlen(begin, row.count));
}

std::string jsonQuoted(std::string_view text) {
    std::string out = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (byte < 0x20) {
            out += base::formatText("\\u%04x", byte);
        } else {
            out += c;
        }
    }
    return out + "\"";
}

std::optional<VkNameTable> nameTableOf(VkFieldType type) {
    switch (type) {
    case VkFieldType::SampleCounts: return VkNameTable::SampleCount;
    case VkFieldType::ShaderStages: return VkNameTable::ShaderStage;
    case VkFieldType::SubgroupOps: return VkNameTable::SubgroupFeature;
    case VkFieldType::ResolveModes: return VkNameTable::ResolveMode;
    case VkFieldType::PointClipping: return VkNameTable::PointClipping;
    case VkFieldType::FloatControls: return VkNameTable::FloatControls;
    case VkFieldType::DriverId: return VkNameTable::DriverId;
    case VkFieldType::DeviceType: return VkNameTable::DeviceType;
    default: return std::nullopt;
    }
}

bool isFlags(VkFieldType type) {
    return type == VkFieldType::SampleCounts || type == VkFieldType::ShaderStages ||
           type == VkFieldType::SubgroupOps || type == VkFieldType::ResolveModes;
}

// The name of an enumeration value; a value newer than our tables stays a number.
std::string enumText(VkNameTable table, uint32_t value) {
    const char* name = vkValueName(table, value);
    return name ? std::string(name) : std::to_string(int32_t(value));
}

std::string flagsJson(VkNameTable table, uint32_t flags) {
    std::string out = "[";
    vkForEachFlag(table, flags, [&](const char* name, uint32_t bits) {
        if (out.size() > 1) out += ", ";
        out += name ? jsonQuoted(name) : std::to_string(bits);
    });
    return out + "]";
}

std::string uuidText(const void* structure, const VkFieldRow& row) {
    std::string out;
    for (uint16_t i = 0; i < row.count; ++i) {
        if (row.count == VK_UUID_SIZE && (i == 4 || i == 6 || i == 8 || i == 10)) out += '-';
        out += base::formatText("%02x", memberAt<uint8_t>(structure, row.offset, i));
    }
    return out;
}

template <typename T, typename Format>
std::string listOf(const void* structure, const VkFieldRow& row, const char* separator, Format format) {
    std::string out;
    for (uint16_t i = 0; i < row.count; ++i) {
        if (i) out += separator;
        out += format(memberAt<T>(structure, row.offset, i));
    }
    return out;
}

}  // namespace

std::string vkFieldText(const VkFieldRow& row, const void* s) {
    switch (row.type) {
    case VkFieldType::Bool32: return memberAt<VkBool32>(s, row.offset) ? "true" : "false";
    case VkFieldType::Uint32: return std::to_string(memberAt<uint32_t>(s, row.offset));
    case VkFieldType::Int32: return std::to_string(memberAt<int32_t>(s, row.offset));
    case VkFieldType::Uint64: return std::to_string(memberAt<uint64_t>(s, row.offset));
    case VkFieldType::Size: return std::to_string(memberAt<size_t>(s, row.offset));
    case VkFieldType::Float: return floatText(memberAt<float>(s, row.offset));
    case VkFieldType::Uint32Array:
        return listOf<uint32_t>(s, row, ", ", [](uint32_t v) { return std::to_string(v); });
    case VkFieldType::FloatArray: return listOf<float>(s, row, ", ", floatText);
    case VkFieldType::Uuid:
    case VkFieldType::Luid: return uuidText(s, row);
    case VkFieldType::Text: return std::string(textAt(s, row));
    case VkFieldType::Conformance: {
        const auto v = memberAt<VkConformanceVersion>(s, row.offset);
        return base::versionText(v.major, v.minor, v.subminor, v.patch);
    }
    case VkFieldType::ApiVersion: return vkVersionText(memberAt<uint32_t>(s, row.offset));
    case VkFieldType::SampleCounts:
    case VkFieldType::ShaderStages:
    case VkFieldType::SubgroupOps:
    case VkFieldType::ResolveModes: return vkFlagsText(*nameTableOf(row.type), memberAt<uint32_t>(s, row.offset));
    case VkFieldType::PointClipping:
    case VkFieldType::FloatControls:
    case VkFieldType::DriverId:
    case VkFieldType::DeviceType: return enumText(*nameTableOf(row.type), memberAt<uint32_t>(s, row.offset));
    }
    return "?";
}

std::string vkFieldJson(const VkFieldRow& row, const void* s) {
    if (isFlags(row.type)) return flagsJson(*nameTableOf(row.type), memberAt<uint32_t>(s, row.offset));
    switch (row.type) {
    case VkFieldType::Float: return floatJson(memberAt<float>(s, row.offset));
    case VkFieldType::Uint32Array:
        return "[" + listOf<uint32_t>(s, row, ", ", [](uint32_t v) { return std::to_string(v); }) + "]";
    case VkFieldType::FloatArray: return "[" + listOf<float>(s, row, ", ", floatJson) + "]";
    case VkFieldType::Uuid:
    case VkFieldType::Luid:
        return "[" + listOf<uint8_t>(s, row, ", ", [](uint8_t v) { return std::to_string(v); }) + "]";
    case VkFieldType::Text: return jsonQuoted(textAt(s, row));
    case VkFieldType::Conformance: {
        const auto v = memberAt<VkConformanceVersion>(s, row.offset);
        return base::formatText(R"({"major": %u, "minor": %u, "subminor": %u, "patch": %u})", v.major, v.minor,
                                v.subminor, v.patch);
    }
    case VkFieldType::ApiVersion: return std::to_string(memberAt<uint32_t>(s, row.offset));
    case VkFieldType::PointClipping:
    case VkFieldType::FloatControls:
    case VkFieldType::DriverId:
    case VkFieldType::DeviceType: {
        const uint32_t value = memberAt<uint32_t>(s, row.offset);
        const char* name = vkValueName(*nameTableOf(row.type), value);
        return name ? jsonQuoted(name) : std::to_string(int32_t(value));
    }
    default: return vkFieldText(row, s);  // numbers and booleans are written alike
    }
}

std::string vkDriverVersionText(const VulkanDeviceRecord& device) {
    const uint32_t v = device.properties.driverVersion;
    const std::optional<VkDriverId> id = device.driver ? std::optional(device.driver->driverID) : std::nullopt;
    constexpr uint32_t kNvidiaVendorId = 0x10DE;
    if (id ? *id == VK_DRIVER_ID_NVIDIA_PROPRIETARY : device.properties.vendorID == kNvidiaVendorId)
        return base::versionText(int(v >> 22), int((v >> 14) & 0xFF), int((v >> 6) & 0xFF), int(v & 0x3F));
    if (id && *id == VK_DRIVER_ID_INTEL_PROPRIETARY_WINDOWS)
        return base::formatText("%u.%u", v >> 14, v & 0x3FFF);
    return vkVersionText(v);
}

}  // namespace vulkan
