#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Kalidornm {

// One PCI display-class device (class 0x03xxxx) as its cached sysfs files describe it. Nothing here reads the
// device's config space, so a runtime-suspended device stays asleep.
struct PciDisplayDevice {
    std::string address;    // "0000:01:00.0"
    std::string sysfsPath;  // "/sys/bus/pci/devices/0000:01:00.0", without the root prefix
    uint32_t vendor = 0, device = 0, subvendor = 0, subdevice = 0, revision = 0;
    uint32_t pciClass = 0;
    bool bootVga = false;
    std::string drmCard;  // "card0" when the driver made a DRM node, else ""
};

// Display devices under rootDir's /sys/bus/pci/devices, in directory order (the caller orders them).
std::vector<PciDisplayDevice> listPciDisplayDevices(const std::string& rootDir);

// "Vendor Device" from the PCI id list ("NVIDIA Corporation GH100 [H100 SXM5 80GB]"); numbers stand in for
// what the list lacks. An empty idsFile uses libpci's default list.
std::string pciDeviceName(const std::string& idsFile, uint32_t vendor, uint32_t device);

// What sysfs and the module tree tell about the driver of one device.
struct SysfsDriverFacts {
    std::string kernelDriver;    // the `driver` link's name, "" when no driver is bound
    std::string moduleVersion;   // /sys/module/<driver>/version; out-of-tree modules have one
    std::string kernelRelease;   // /proc/sys/kernel/osrelease
    std::string kernelVersion;   // /proc/sys/kernel/version, which carries the build date
    std::string nvidiaVersionLine;  // first line of /proc/driver/nvidia/version
    std::string vbiosVersion;    // vbios_version, where the driver offers it
    uint64_t vramBytes = 0;      // mem_info_vram_total, where the driver offers it
    bool suspended = false;      // runtime power status "suspended"
};

// False when sysfsPath is not a device directory under rootDir. A suspended device's driver attributes are
// left unread: reading them would wake it.
bool readSysfsDriverFacts(const std::string& rootDir, const std::string& sysfsPath, SysfsDriverFacts* facts);

}  // namespace Kalidornm
