// Whatever bytes a Vulkan driver writes into its property, limit and feature structures, and whatever counts
// and flags it gives for memory, queues and formats: every row prints, every row's JSON value parses, and
// report.json's vulkan object is written whole.
#include <cstdlib>
#include <cstring>
#include <nlohmann/json.hpp>

#include "report/json_vulkan.h"
#include "vulkan/vulkan_fields.h"

namespace {

// Reads the input front to back; past its end every byte reads 0.
class Bytes {
public:
    Bytes(const uint8_t* data, size_t size) : m_data(data), m_size(size) {}
    void fill(void* out, size_t size) {
        auto* bytes = static_cast<uint8_t*>(out);
        for (size_t i = 0; i < size; ++i) bytes[i] = m_at < m_size ? m_data[m_at++] : 0;
    }
    template <typename T>
    T next() {
        T value;
        fill(&value, sizeof value);
        return value;
    }

private:
    const uint8_t* m_data;
    size_t m_size;
    size_t m_at = 0;
};

// A driver structure of arbitrary bytes, kept as discovery keeps it: pNext cleared.
template <typename T>
std::optional<T> structure(Bytes& in) {
    if (!(in.next<uint8_t>() & 1)) return std::nullopt;
    T value;
    in.fill(&value, sizeof value);
    value.pNext = nullptr;
    return value;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Bytes in(data, size);
    vulkan::VulkanDeviceRecord d;
    in.fill(&d.properties, sizeof d.properties);
    d.properties.deviceName[VK_MAX_PHYSICAL_DEVICE_NAME_SIZE - 1] = '\0';  // as discovery terminates it
    in.fill(&d.features, sizeof d.features);
    d.driver = structure<VkPhysicalDeviceDriverProperties>(in);
    d.ids = structure<VkPhysicalDeviceIDProperties>(in);
    d.pciBus = structure<VkPhysicalDevicePCIBusInfoPropertiesEXT>(in);
    d.features11 = structure<VkPhysicalDeviceVulkan11Features>(in);
    d.features12 = structure<VkPhysicalDeviceVulkan12Features>(in);
    d.features13 = structure<VkPhysicalDeviceVulkan13Features>(in);
    d.properties11 = structure<VkPhysicalDeviceVulkan11Properties>(in);
    d.properties12 = structure<VkPhysicalDeviceVulkan12Properties>(in);
    d.properties13 = structure<VkPhysicalDeviceVulkan13Properties>(in);
    d.hasMemoryBudget = in.next<uint8_t>() & 1;
    for (uint8_t i = 0, n = in.next<uint8_t>() % 17; i < n; ++i)
        d.memoryHeaps.push_back({in.next<VkDeviceSize>(), in.next<VkMemoryHeapFlags>(), in.next<VkDeviceSize>(),
                                 std::nullopt});
    for (uint8_t i = 0, n = in.next<uint8_t>() % 33; i < n; ++i)
        d.memoryTypes.push_back({in.next<VkMemoryPropertyFlags>(), in.next<uint32_t>()});
    for (uint8_t i = 0, n = in.next<uint8_t>() % 8; i < n; ++i)
        d.queueFamilies.push_back({in.next<VkQueueFlags>(), in.next<uint32_t>(), in.next<uint32_t>(),
                                   in.next<VkExtent3D>()});
    for (uint8_t i = 0, n = in.next<uint8_t>() % 8; i < n; ++i)
        d.formats.push_back({in.next<VkFormat>(), in.next<VkFormatFeatureFlags>(), in.next<VkFormatFeatureFlags>(),
                             in.next<VkFormatFeatureFlags>()});

    for (const vulkan::VkFieldGroup& group : vulkan::vkFieldGroups()) {
        const void* s = group.locate(d);
        if (!s) continue;
        for (const vulkan::VkFieldRow& row : group.rows) {
            vulkan::vkFieldText(row, s);
            // Texts may hold bytes that are not UTF-8, which the report's writer replaces; the rest must parse.
            if (row.type == vulkan::VkFieldType::Text) continue;
            if (nlohmann::json::parse(vulkan::vkFieldJson(row, s), nullptr, false).is_discarded()) std::abort();
        }
    }
    vulkan::vkDriverVersionText(d);

    vulkan::VulkanInfo info;
    info.status = vulkan::VulkanStatus::Read;
    info.devices.push_back(std::move(d));
    const std::string text =
        report::vulkanJson(info).dump(2, ' ', false, nlohmann::json::error_handler_t::replace);
    if (nlohmann::json::parse(text, nullptr, false).is_discarded()) std::abort();
    return 0;
}
