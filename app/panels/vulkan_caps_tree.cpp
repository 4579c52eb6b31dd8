#include "app/panels/vulkan_caps_tree.h"

#include <cstring>

#include "base/text_format.h"
#include "vulkan/vulkan_fields.h"
#include "vulkan/vulkan_names.h"
#include "vulkan/vulkan_texts.h"

namespace panels {

namespace {

using base::formatText;
using vulkan::VkNameTable;
using vulkan::vkFlagsText;

std::string fixedText(const char* text, size_t size) { return std::string(text, strnlen(text, size)); }

const char* deviceTypeText(VkPhysicalDeviceType type) {
    switch (type) {
        case VK_PHYSICAL_DEVICE_TYPE_INTEGRATED_GPU: return "integrated GPU";
        case VK_PHYSICAL_DEVICE_TYPE_DISCRETE_GPU: return "discrete GPU";
        case VK_PHYSICAL_DEVICE_TYPE_VIRTUAL_GPU: return "virtual GPU";
        case VK_PHYSICAL_DEVICE_TYPE_CPU: return "CPU";
        default: return "other";
    }
}

CapsTreeBranch memoryBranch(const vulkan::VulkanDeviceRecord& d) {
    CapsTreeBranch branch{formatText("Memory heaps and types (%d, %d)", int(d.memoryHeaps.size()),
                                     int(d.memoryTypes.size())),
                          {}};
    for (size_t i = 0; i < d.memoryHeaps.size(); ++i) {
        const vulkan::VulkanMemoryHeap& h = d.memoryHeaps[i];
        std::string leaf = formatText("heap %d: %llu MB, %s", int(i), static_cast<unsigned long long>(h.size >> 20),
                                      vkFlagsText(VkNameTable::MemoryHeap, h.flags).c_str());
        if (h.budget) leaf += formatText(", budget %llu MB", static_cast<unsigned long long>(*h.budget >> 20));
        branch.leaves.push_back(std::move(leaf));
    }
    for (size_t i = 0; i < d.memoryTypes.size(); ++i)
        branch.leaves.push_back(formatText("type %d: heap %u, %s", int(i), d.memoryTypes[i].heapIndex,
                                           vkFlagsText(VkNameTable::MemoryProperty, d.memoryTypes[i].propertyFlags).c_str()));
    return branch;
}

CapsTreeBranch queueBranch(const vulkan::VulkanDeviceRecord& d) {
    CapsTreeBranch branch{formatText("Queue families (%d)", int(d.queueFamilies.size())), {}};
    for (size_t i = 0; i < d.queueFamilies.size(); ++i) {
        const vulkan::VulkanQueueFamily& q = d.queueFamilies[i];
        const VkExtent3D& g = q.minImageTransferGranularity;
        branch.leaves.push_back(formatText("family %d: %s, %u queues, timestamp bits %u, granularity %ux%ux%u",
                                           int(i), vkFlagsText(VkNameTable::Queue, q.flags).c_str(), q.count,
                                           q.timestampValidBits, g.width, g.height, g.depth));
    }
    return branch;
}

CapsTreeBranch formatBranch(const vulkan::VulkanDeviceRecord& d) {
    CapsTreeBranch branch{formatText("Formats (%d)", int(d.formats.size())), {}};
    for (const vulkan::VulkanFormatSupport& f : d.formats)
        branch.leaves.push_back(formatText(
            "%s: linear %s; optimal %s; buffer %s", vulkan::vkFormatText(f.format).c_str(),
            vkFlagsText(VkNameTable::FormatFeature, f.linearTilingFeatures).c_str(),
            vkFlagsText(VkNameTable::FormatFeature, f.optimalTilingFeatures).c_str(),
            vkFlagsText(VkNameTable::FormatFeature, f.bufferFeatures).c_str()));
    return branch;
}

}  // namespace

std::vector<CapsTreeBranch> vulkanCapsBranches(const vulkan::VulkanDeviceRecord& device) {
    std::vector<CapsTreeBranch> branches;
    for (const vulkan::VkFieldGroup& group : vulkan::vkFieldGroups()) {
        const void* structure = group.locate(device);
        if (!structure) continue;
        CapsTreeBranch branch{group.name, {}};
        for (const vulkan::VkFieldRow& row : group.rows)
            branch.leaves.push_back(std::string(row.name) + ": " + vulkan::vkFieldText(row, structure));
        branches.push_back(std::move(branch));
    }
    for (CapsTreeBranch branch : {memoryBranch(device), queueBranch(device), formatBranch(device)})
        if (!branch.leaves.empty()) branches.push_back(std::move(branch));
    if (!device.problems.empty()) branches.push_back({"Not read", device.problems});
    return branches;
}

VulkanDeviceSummary vulkanDeviceSummary(const vulkan::VulkanDeviceRecord& device) {
    const VkPhysicalDeviceProperties& p = device.properties;
    VulkanDeviceSummary s;
    s.name = fixedText(p.deviceName, sizeof p.deviceName);
    s.type = deviceTypeText(p.deviceType);
    s.apiVersion = vulkan::vkVersionText(p.apiVersion);
    s.driverVersion = vulkan::vkDriverVersionText(device);
    s.ids = formatText("vendor 0x%04X, device 0x%04X", p.vendorID, p.deviceID);
    if (const std::optional<std::string> address = vulkan::vkPciAddressText(device)) s.ids += ", PCI " + *address;
    if (device.driver) {
        const VkPhysicalDeviceDriverProperties& d = *device.driver;
        const std::string info = fixedText(d.driverInfo, sizeof d.driverInfo);
        s.driver = fixedText(d.driverName, sizeof d.driverName);
        if (!info.empty()) s.driver += " (" + info + ")";
        const VkConformanceVersion& c = d.conformanceVersion;
        s.conformance = formatText("%u.%u.%u.%u", c.major, c.minor, c.subminor, c.patch);
    }
    return s;
}

}  // namespace panels
