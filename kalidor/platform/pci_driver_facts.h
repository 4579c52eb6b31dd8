#pragma once

#include <cstdint>
#include <string>

#include "kalidor/platform/pci_bus.h"

namespace Kalidornm {

// What sysfs and the module tree tell about the driver of one device.
struct SysfsDriverFacts {
    std::string kernelDriver;       // the bound driver's name, "" when no driver is bound
    std::string moduleVersion;      // /sys/module/<driver>/version; out-of-tree modules have one
    std::string kernelRelease;      // /proc/sys/kernel/osrelease
    std::string kernelVersion;      // /proc/sys/kernel/version, which carries the build date
    std::string nvidiaVersionLine;  // first line of /proc/driver/nvidia/version
    std::string vbiosVersion;       // vbios_version, where the driver offers it
    uint64_t vramBytes = 0;         // mem_info_vram_total, where the driver offers a sane one; else 0
    bool suspended = false;         // the device sleeps
};

// Largest video memory taken as a reading: 16 TiB. The driver writes 2^64 - 1 and other nonsense when it
// cannot tell.
inline constexpr uint64_t kMaxVramBytes = uint64_t(1) << 44;

// The facts of one device. A sleeping device's driver attributes are left unread: reading them would wake it.
SysfsDriverFacts readDriverFacts(const std::string& rootDir, const PciDevice& device);

// The version of a loaded kernel module (/sys/module/<name>/version); "" for in-tree modules and when absent.
std::string kernelModuleVersion(const std::string& rootDir, const std::string& module);

}  // namespace Kalidornm
