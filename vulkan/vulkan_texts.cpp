#include "vulkan/vulkan_texts.h"

#include "base/text_format.h"
#include "vulkan/vulkan_names.h"

namespace vulkan {

std::string vkVersionText(uint32_t version) {
    return base::formatText("%u.%u.%u", VK_API_VERSION_MAJOR(version), VK_API_VERSION_MINOR(version),
                            VK_API_VERSION_PATCH(version));
}

std::string vkFormatText(VkFormat format) {
    if (const char* name = vkValueName(VkNameTable::Format, uint32_t(format))) return name;
    return base::formatText("VkFormat %d", int(format));
}

std::optional<std::string> vkPciAddressText(const VulkanDeviceRecord& device) {
    if (!device.pciBus) return std::nullopt;
    const VkPhysicalDevicePCIBusInfoPropertiesEXT& bus = *device.pciBus;
    return base::formatText("%04x:%02x:%02x.%x", bus.pciDomain, bus.pciBus, bus.pciDevice, bus.pciFunction);
}

std::string vkStatusLine(const VulkanInfo& info) {
    if (!info.statusText.empty()) return info.statusText;
    switch (info.status) {
        case VulkanStatus::Read: return "read";
        case VulkanStatus::NoLoader: return "not read: no Vulkan loader";
        case VulkanStatus::InstanceFailed: return "not read: no Vulkan instance";
        case VulkanStatus::SkippedForSleepingGpu: return "not read: a sleeping GPU would wake";
    }
    return "not read";
}

}  // namespace vulkan
