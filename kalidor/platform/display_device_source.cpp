#include "display_device_source.h"

#include <algorithm>

#include "egl_software_device.h"
#include "gpu_record.h"
#include "sysfs_pci.h"

namespace Kalidornm {

namespace {

// The device name keeps what the operating system's own field holds: 31 characters.
constexpr size_t kDeviceNameKept = 31;

DisplaySlot slotFor(const PciDisplayDevice& device, const KalidorSources& sources) {
    DisplaySlot slot;
    copyText(slot.deviceId, pciDeviceIdString(device.vendor, device.device, device.subvendor, device.subdevice,
                                              device.revision)
                                .c_str());
    copyText(slot.deviceString, pciDeviceName(sources.pciIdsFile, device.vendor, device.device).c_str());
    const std::string name = device.drmCard.empty() ? device.address : "/dev/dri/" + device.drmCard;
    copyText(slot.deviceName, name.substr(0, kDeviceNameKept).c_str());
    copyText(slot.deviceKey, device.sysfsPath.c_str());
    return slot;
}

}  // namespace

std::vector<DisplaySlot> listDisplayDevices(const KalidorSources& sources) {
    std::vector<PciDisplayDevice> devices = listPciDisplayDevices(sources.rootDir);
    // The listing comes in bus order; the device the firmware booted on is the primary and goes first.
    std::stable_partition(devices.begin(), devices.end(), [](const PciDisplayDevice& d) { return d.bootVga; });

    std::vector<DisplaySlot> slots;
    for (const PciDisplayDevice& device : devices) slots.push_back(slotFor(device, sources));
    if (slots.empty() && eglOffersSoftwareDevice(sources.eglLibrary)) {
        DisplaySlot software;
        copyText(software.deviceId, kSoftwareRasterizerId);
        copyText(software.deviceString, kSoftwareRasterizerName);
        slots.push_back(software);
    }
    return slots;
}

bool enumDisplayDevice(int index, DisplaySlot* device) {
    if (index < 0 || !device) return false;
    const std::vector<DisplaySlot> slots = listDisplayDevices(KalidorSources{});
    if (size_t(index) >= slots.size()) return false;
    *device = slots[size_t(index)];
    return true;
}

}  // namespace Kalidornm
