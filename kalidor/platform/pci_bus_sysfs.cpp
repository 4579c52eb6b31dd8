#include "kalidor/platform/pci_bus.h"

#include <algorithm>

#include "kalidor/platform/sources.h"
#include "kalidor/platform/sysfs_files.h"
#include "kalidor/platform/sysfs_values.h"

namespace Kalidornm {

namespace {

constexpr const char* kPciDevicesDir = "/sys/bus/pci/devices";

uint32_t hexAttribute(const std::string& directory, const char* name, uint32_t high) {
    return uint32_t(readHexNumber(directory + "/" + name, high).value_or(0));
}

// The DRM nodes the driver made: "cardN" (with its connectors "cardN-<type>-<n>") and "renderDN".
void readDrmNodes(PciDevice& device) {
    const std::string drm = device.directory + "/drm";
    for (const std::string& node : directoryEntries(drm)) {
        if (node.rfind("renderD", 0) == 0 && device.renderNode.empty()) device.renderNode = node;
        if (node.rfind("card", 0) != 0 || node.find('-') != std::string::npos || !device.drmCard.empty()) continue;
        device.drmCard = node;
        for (const std::string& entry : directoryEntries(drm + "/" + node))
            if (entry.rfind(node + "-", 0) == 0) device.connectors.push_back(entry);
    }
}

std::string firstHwmonDir(const std::string& directory) {
    for (const std::string& entry : directoryEntries(directory + "/hwmon"))
        if (entry.rfind("hwmon", 0) == 0) return directory + "/hwmon/" + entry;
    return {};
}

// The bound driver: the `driver` link names it; uevent's DRIVER line stands in where the link is missing.
std::string boundDriver(const std::string& directory) {
    std::string driver = linkTargetName(directory + "/driver");
    if (driver.empty())
        if (const auto uevent = readSmallFile(directory + "/uevent")) driver = ueventValue(*uevent, "DRIVER");
    return driver;
}

}  // namespace

bool runtimePowerAsleep(std::string_view runtimeStatus) {
    return runtimeStatus == "suspended" || runtimeStatus == "suspending";
}

bool PciDevice::asleep() const { return runtimePowerAsleep(runtimeStatus); }

PciBus PciBus::scan(const std::string& rootDir) {
    PciBus bus;
    bus.m_rootDir = rootDir.empty() ? "/" : rootDir;
    const std::string base = underRoot(bus.m_rootDir, kPciDevicesDir);
    for (const std::string& name : directoryEntries(base)) {
        const auto address = parsePciAddress(name);
        const std::string directory = base + "/" + name;
        if (!address || !isDirectory(directory)) continue;
        PciDevice device;
        device.address = *address;
        device.sysfsPath = std::string(kPciDevicesDir) + "/" + name;
        device.directory = directory;
        device.ids.vendor = hexAttribute(directory, "vendor", 0xFFFF);
        device.ids.device = hexAttribute(directory, "device", 0xFFFF);
        device.ids.subvendor = hexAttribute(directory, "subsystem_vendor", 0xFFFF);
        device.ids.subdevice = hexAttribute(directory, "subsystem_device", 0xFFFF);
        device.ids.revision = hexAttribute(directory, "revision", 0xFF);
        device.pciClass = hexAttribute(directory, "class", 0xFFFFFF);
        device.bootVga = readFirstLine(directory + "/boot_vga").value_or("0") == "1";
        device.driver = boundDriver(directory);
        device.runtimeStatus = readFirstLine(directory + "/power/runtime_status").value_or("");
        readDrmNodes(device);
        device.hwmonDir = firstHwmonDir(directory);
        bus.m_devices.push_back(std::move(device));
    }
    std::sort(bus.m_devices.begin(), bus.m_devices.end(),
              [](const PciDevice& a, const PciDevice& b) { return a.address < b.address; });
    return bus;
}

const PciDevice* PciBus::find(const PciAddress& address) const {
    for (const PciDevice& device : m_devices)
        if (device.address == address) return &device;
    return nullptr;
}

std::vector<const PciDevice*> PciBus::displayDevices() const {
    std::vector<const PciDevice*> list;
    for (const PciDevice& device : m_devices)
        if (device.isDisplay()) list.push_back(&device);
    std::stable_partition(list.begin(), list.end(), [](const PciDevice* d) { return d->bootVga; });
    return list;
}

bool PciBus::mayTouch(const PciAddress& address) const {
    const PciDevice* device = find(address);
    if (!device) return true;
    return !runtimePowerAsleep(readFirstLine(device->directory + "/power/runtime_status").value_or(""));
}

}  // namespace Kalidornm
