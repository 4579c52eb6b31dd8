#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kalidor/platform/pci_address.h"

namespace Kalidornm {

// A device's PCI identity; ids are 16 bits, the revision 8. Zero where the kernel did not say.
struct PciIds {
    uint32_t vendor = 0, device = 0, subvendor = 0, subdevice = 0, revision = 0;
};

// One PCI device as its sysfs directory describes it, read once per scan. Only files the kernel keeps for
// itself are read (ids, class, links, directory names), never the device's config space or its driver's
// attributes, so a scan wakes nothing.
struct PciDevice {
    PciAddress address;
    std::string sysfsPath;  // "/sys/bus/pci/devices/0000:01:00.0", without the root
    std::string directory;  // the same directory under the root, for reading
    PciIds ids;
    uint32_t pciClass = 0;  // 24 bits: class, subclass, programming interface
    bool bootVga = false;   // the device the firmware showed its screen on
    std::string driver;     // the bound kernel driver's name, "" when none is bound
    std::string runtimeStatus;  // power/runtime_status as read at the scan, "" without runtime power management
    std::string drmCard;        // "card0" when the driver made a DRM node, else ""
    std::string renderNode;     // "renderD128", else ""
    std::vector<std::string> connectors;  // "card0-DP-1", ..., sorted
    std::string hwmonDir;                 // the first hwmon directory under the root, "" without one

    bool isDisplay() const { return (pciClass >> 16) == 0x03; }
    // The sleep rule: a runtime-suspended device must not be asked anything that would wake it.
    bool asleep() const;
};

// Whether a power/runtime_status text means the device sleeps ("suspended", or on its way there).
bool runtimePowerAsleep(std::string_view runtimeStatus);

// One scan of <root>/sys/bus/pci/devices: every device, in address order.
class PciBus {
public:
    PciBus() = default;
    static PciBus scan(const std::string& rootDir);

    const std::string& rootDir() const { return m_rootDir; }
    const std::vector<PciDevice>& devices() const { return m_devices; }
    const PciDevice* find(const PciAddress& address) const;
    // Display-class devices: the boot device first, the others in address order.
    std::vector<const PciDevice*> displayDevices() const;

    // Whether the device may be asked now. Its runtime power state is read again, so a GPU that fell asleep
    // after the scan is left alone as well; a device the scan did not see, or one without runtime power
    // management, may.
    bool mayTouch(const PciAddress& address) const;

private:
    std::string m_rootDir = "/";
    std::vector<PciDevice> m_devices;
};

}  // namespace Kalidornm
