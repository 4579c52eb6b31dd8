#pragma once

#include <cstdint>
#include <string>
#include <vector>

// A machine's sysfs tree written at test time in the kernel's own layout: each device directory under
// /sys/devices/pci<domain>:00/, its entry in /sys/bus/pci/devices a link to it, its driver link pointing
// into /sys/bus/pci/drivers. The tree lives in a folder of its own and goes with the object.
class SysfsTree {
public:
    struct Device {
        std::string address;  // "0000:01:00.0"
        uint32_t vendor = 0, device = 0, subvendor = 0, subdevice = 0, revision = 0;
        uint32_t pciClass = 0x030000;
        std::string driver;                 // "" for none
        std::string runtimeStatus = "active";
        bool bootVga = false;
        std::string drmCard;                // "card0", "" for none
        std::string renderNode;             // "renderD128", "" for none
        std::vector<std::string> connectors;  // "card0-DP-1"
    };

    // A display controller with the given ids and driver; the other fields as above, for the caller to change.
    static Device gpu(const std::string& address, uint32_t vendor, uint32_t device, const std::string& driver,
                      const std::string& runtimeStatus = "active");

    SysfsTree();
    ~SysfsTree();
    SysfsTree(const SysfsTree&) = delete;
    SysfsTree& operator=(const SysfsTree&) = delete;

    const std::string& root() const { return m_root; }

    // Writes the device and returns its directory's path below the root ("/sys/devices/pci0000:00/...").
    std::string addDevice(const Device& device);
    // A file below the root with its folders; the text as given.
    void write(const std::string& path, const std::string& text) const;
    // A FIFO below the root in place of whatever was there: nobody ever writes to it.
    void makeFifo(const std::string& path) const;

private:
    std::string m_root;
};
