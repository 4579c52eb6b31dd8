#include "report/json_vulkan.h"

#include <cstring>
#include <string_view>
#include <unordered_set>

#include "base/text_format.h"
#include "vulkan/vulkan_fields.h"
#include "vulkan/vulkan_names.h"
#include "vulkan/vulkan_texts.h"

namespace report {
namespace {

using Json = nlohmann::ordered_json;
using vulkan::VkNameTable;

const char* statusName(vulkan::VulkanStatus status) {
    switch (status) {
        case vulkan::VulkanStatus::Read: return "read";
        case vulkan::VulkanStatus::NoLoader: return "no_loader";
        case vulkan::VulkanStatus::InstanceFailed: return "instance_failed";
        case vulkan::VulkanStatus::SkippedForSleepingGpu: return "skipped_for_sleeping_gpu";
    }
    return "unknown";
}

// Bit names as a list; bits the table cannot name stay as one number at the end.
Json flags(VkNameTable table, uint32_t bits) {
    Json list = Json::array();
    vulkan::vkForEachFlag(table, bits, [&](const char* name, uint32_t value) {
        if (name)
            list.push_back(name);
        else
            list.push_back(value);
    });
    return list;
}

// Name to revision, in the driver's order. Appended to the object's list directly: a key lookup per
// extension would make a broken driver's thousands of extensions quadratic; a name listed twice is kept once.
Json extensions(const std::vector<vulkan::VulkanExtension>& list) {
    Json object = Json::object();
    auto& members = object.get_ref<Json::object_t&>();
    std::unordered_set<std::string_view> seen;
    for (const vulkan::VulkanExtension& e : list)
        if (seen.insert(e.name).second) members.emplace_back(e.name, e.version);
    return object;
}

// A text row is written from its text so that bytes which are not UTF-8 are replaced by the document's
// writer; every other row from the JSON the field table writes.
Json fieldValue(const vulkan::VkFieldRow& row, const void* structure) {
    if (row.type == vulkan::VkFieldType::Text) return vulkan::vkFieldText(row, structure);
    Json value = Json::parse(vulkan::vkFieldJson(row, structure), nullptr, false);
    return value.is_discarded() ? Json(nullptr) : value;
}

Json groups(const vulkan::VulkanDeviceRecord& d) {
    Json object = Json::object();
    for (const vulkan::VkFieldGroup& group : vulkan::vkFieldGroups()) {
        const void* structure = group.locate(d);
        if (!structure) {
            object[group.name] = nullptr;
            continue;
        }
        Json fields = Json::object();
        for (const vulkan::VkFieldRow& row : group.rows) fields[row.name] = fieldValue(row, structure);
        object[group.name] = std::move(fields);
    }
    return object;
}

Json memory(const vulkan::VulkanDeviceRecord& d) {
    Json heaps = Json::array();
    for (const vulkan::VulkanMemoryHeap& h : d.memoryHeaps) {
        Json heap{{"size", h.size}, {"flags", flags(VkNameTable::MemoryHeap, h.flags)}};
        if (d.hasMemoryBudget) {
            heap["budget"] = h.budget ? Json(*h.budget) : Json(nullptr);
            heap["usage"] = h.usage ? Json(*h.usage) : Json(nullptr);
        }
        heaps.push_back(std::move(heap));
    }
    Json types = Json::array();
    for (const vulkan::VulkanMemoryType& t : d.memoryTypes)
        types.push_back(
            {{"propertyFlags", flags(VkNameTable::MemoryProperty, t.propertyFlags)}, {"heapIndex", t.heapIndex}});
    return Json{{"memoryHeaps", heaps}, {"memoryTypes", types}, {"has_budget", d.hasMemoryBudget}};
}

Json queueFamilies(const vulkan::VulkanDeviceRecord& d) {
    Json list = Json::array();
    for (const vulkan::VulkanQueueFamily& q : d.queueFamilies)
        list.push_back({{"queueFlags", flags(VkNameTable::Queue, q.flags)},
                        {"queueCount", q.count},
                        {"timestampValidBits", q.timestampValidBits},
                        {"minImageTransferGranularity",
                         {{"width", q.minImageTransferGranularity.width},
                          {"height", q.minImageTransferGranularity.height},
                          {"depth", q.minImageTransferGranularity.depth}}}});
    return list;
}

Json formats(const vulkan::VulkanDeviceRecord& d) {
    Json object = Json::object();
    for (const vulkan::VulkanFormatSupport& f : d.formats) {
        const char* name = vulkan::vkValueName(VkNameTable::Format, uint32_t(f.format));
        object[name ? std::string(name) : std::to_string(int(f.format))] = {
            {"linearTilingFeatures", flags(VkNameTable::FormatFeature, f.linearTilingFeatures)},
            {"optimalTilingFeatures", flags(VkNameTable::FormatFeature, f.optimalTilingFeatures)},
            {"bufferFeatures", flags(VkNameTable::FormatFeature, f.bufferFeatures)}};
    }
    return object;
}

// The device's PCI address in the form the GPU records use, so a Vulkan device is matched to its GPU.
Json pciAddress(const vulkan::VulkanDeviceRecord& d) {
    const std::optional<std::string> address = vulkan::vkPciAddressText(d);
    if (!address) return nullptr;
    return *address;
}

Json device(const vulkan::VulkanDeviceRecord& d) {
    const std::string name(d.properties.deviceName, strnlen(d.properties.deviceName, sizeof d.properties.deviceName));
    return Json{
        {"name", name},
        {"api_version", vulkan::vkVersionText(d.properties.apiVersion)},
        {"driver_version", vulkan::vkDriverVersionText(d)},
        {"pci_address", pciAddress(d)},
        {"structures", groups(d)},
        {"extensions", extensions(d.extensions)},
        {"memory", memory(d)},
        {"queue_families", queueFamilies(d)},
        {"formats", formats(d)},
        {"problems", d.problems},
    };
}

}  // namespace

Json vulkanJson(const vulkan::VulkanInfo& info) {
    Json layers = Json::array();
    for (const vulkan::VulkanLayer& l : info.layers)
        layers.push_back({{"name", l.name},
                          {"description", l.description},
                          {"api_version", vulkan::vkVersionText(l.apiVersion)},
                          {"implementation_version", l.implementationVersion}});
    Json devices = Json::array();
    for (const vulkan::VulkanDeviceRecord& d : info.devices) devices.push_back(device(d));
    return Json{
        {"status", statusName(info.status)},
        {"status_text", info.statusText.empty() ? Json(nullptr) : Json(info.statusText)},
        {"instance",
         {{"version", info.instanceVersion ? Json(vulkan::vkVersionText(*info.instanceVersion)) : Json(nullptr)},
          {"extensions", extensions(info.instanceExtensions)},
          {"layers", layers}}},
        {"devices", devices},
        {"problems", info.problems},
    };
}

}  // namespace report
