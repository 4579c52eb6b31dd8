#include "kalidor/platform/display_device_source.h"

#include "kalidor/platform/egl_software_device.h"
#include "kalidor/gpu_record.h"
#include "kalidor/platform/pci_names.h"

namespace Kalidornm {

namespace {

// The device name keeps what the operating system's own field holds: 31 characters.
constexpr size_t kDeviceNameKept = 31;

DisplaySlot slotFor(const PciDevice& device, const std::string& idsList) {
    DisplaySlot slot;
    slot.ids = device.ids;
    slot.address = device.address;
    copyText(slot.deviceId, pciDeviceIdString(device.ids).c_str());
    copyText(slot.deviceString, pciDeviceName(idsList, device.ids.vendor, device.ids.device).c_str());
    const std::string name = device.drmCard.empty() ? device.address.text() : "/dev/dri/" + device.drmCard;
    copyText(slot.deviceName, name.substr(0, kDeviceNameKept).c_str());
    copyText(slot.deviceKey, device.sysfsPath.c_str());
    return slot;
}

}  // namespace

std::vector<DisplaySlot> listDisplayDevices(const PciBus& bus, const KalidorSources& sources) {
    const std::string idsList = pciIdsListFor(sources);
    std::vector<DisplaySlot> slots;
    for (const PciDevice* device : bus.displayDevices()) slots.push_back(slotFor(*device, idsList));
    if (slots.empty() && eglOffersSoftwareDevice(sources.eglLibrary)) {
        DisplaySlot software;
        copyText(software.deviceId, kSoftwareRasterizerId);
        copyText(software.deviceString, kSoftwareRasterizerName);
        slots.push_back(software);
    }
    return slots;
}

std::vector<DisplaySlot> listDisplayDevices(const KalidorSources& sources) {
    return listDisplayDevices(PciBus::scan(sources.rootDir), sources);
}

}  // namespace Kalidornm
