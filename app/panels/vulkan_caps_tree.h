#pragma once

#include <string>
#include <vector>

#include "app/panels/caps_tree.h"
#include "vulkan/vulkan_records.h"

// What the Vulkan caps dialog's tree shows for one device: a branch per group of field rows the device gave,
// then its memory heaps and types, queue families and formats, one leaf per row.
namespace panels {

std::vector<CapsTreeBranch> vulkanCapsBranches(const vulkan::VulkanDeviceRecord& device);

// The picker's line and the main fields of the Vulkan tab for one device.
struct VulkanDeviceSummary {
    std::string name;           // "llvmpipe (LLVM 15.0.6, 256 bits)"
    std::string type;           // "CPU", "discrete GPU"
    std::string apiVersion;     // "1.3.230"
    std::string driverVersion;  // decoded as its driver packs it
    std::string ids;            // "vendor 0x1002, device 0x73BF, PCI 0000:03:00.0"; the address where given
    std::string driver;         // the driver's name and info, "llvmpipe (Mesa 22.3.6 (LLVM 15.0.6))"
    std::string conformance;    // "1.3.1.1"; empty where the device gives no driver properties
};

VulkanDeviceSummary vulkanDeviceSummary(const vulkan::VulkanDeviceRecord& device);

}  // namespace panels
