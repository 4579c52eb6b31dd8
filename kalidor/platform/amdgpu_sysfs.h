#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Kalidornm {

// One PCI device bound to the amdgpu kernel driver, as its sysfs directory tells it.
struct AmdgpuDevice {
    std::string pciAddress;  // "0000:03:00.0"
    std::string deviceDir;   // <root>/sys/bus/pci/devices/<address>
    uint32_t vendorId = 0, deviceId = 0, subvendorId = 0, subdeviceId = 0, revision = 0;
    int32_t busNumber = -1;
    bool hasCardNode = false;             // drm/cardN exists
    std::vector<std::string> connectors;  // "card0-DP-1", sorted
    std::string hwmonDir;                 // first hwmon directory, empty without one
    std::string runtimeStatus;            // power/runtime_status: "active", "suspended", ...
    std::string vramVendor;               // mem_info_vram_vendor, may be empty
    uint64_t vramTotalBytes = 0;          // mem_info_vram_total, 0 when unreadable
};

// Every PCI device under <rootDir>/sys/bus/pci/devices whose uevent names the amdgpu driver, sorted by
// PCI address. Unreadable parts of a device leave their fields at the defaults.
std::vector<AmdgpuDevice> listAmdgpuDevices(const std::string& rootDir);

// Reads a small sysfs attribute (at most 4 KB) into `text`; false if the file cannot be opened or read.
bool readSysfsFile(const std::string& path, std::string& text);

// Whether a path names an existing regular file or directory.
bool sysfsPathExists(const std::string& path);

}  // namespace Kalidornm
