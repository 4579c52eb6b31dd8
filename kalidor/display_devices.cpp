#include <cstdio>
#include <cstring>

#include "kalidor/hardware_caps.h"
#include "kalidor/library_log.h"
#include "kalidor/platform/display_device_source.h"
#include "kalidor/vendors/vendor_backend.h"

namespace Kalidornm {

namespace {

// Four upper-case hex digits ("10DE"), or two for the revision: the display block's texts.
template <size_t N>
void hexText(char (&text)[N], uint32_t value, int digits) {
    std::snprintf(text, N, "%0*X", digits, value);
}

}  // namespace

std::string pciDeviceIdString(const PciIds& ids) {
    char text[64];
    std::snprintf(text, sizeof text, "PCI\\VEN_%04X&DEV_%04X&SUBSYS_%04X%04X&REV_%02X", ids.vendor & 0xFFFF,
                  ids.device & 0xFFFF, ids.subdevice & 0xFFFF, ids.subvendor & 0xFFFF, ids.revision & 0xFF);
    return text;
}

void HardwareCaps::_readDisplayDeviceData() {
    PrimaryDisplay& primary = display.primary;
    if (primary.m_has_display_device) return;
    primary = PrimaryDisplay{};

    // Identical neighbours make one slot: on other systems each output of a card is listed with the same id,
    // and two identical cards side by side collapse the same way.
    const std::vector<DisplaySlot> devices = listDisplayDevices(pci, sources);
    int filled = 0;
    const char* lastStored = nullptr;
    for (size_t i = 0; i < devices.size() && i < size_t(kDisplaySlotCount); ++i) {
        if (lastStored && std::strncmp(lastStored, devices[i].deviceId, 127) == 0) continue;
        display.slots[filled] = devices[i];
        lastStored = display.slots[filled].deviceId;
        ++filled;
    }

    const DisplaySlot& first = display.slots[0];
    copyText(primary.m_display_device_id_string, first.deviceId);
    copyText(primary.m_display_device_name, first.deviceName);
    copyText(primary.m_display_device_string, first.deviceString);
    LibraryLog& trace = generalTrace();
    trace.write("HardwareCaps::_readDisplayDeviceData - m_display_device_id_string: %s",
                primary.m_display_device_id_string);
    trace.write("HardwareCaps::_readDisplayDeviceData - m_display_device_name: %s", primary.m_display_device_name);
    trace.write("HardwareCaps::_readDisplayDeviceData - m_display_device_string: %s",
                primary.m_display_device_string);

    primary.m_has_display_device = primary.m_display_device_string[0] != '\0';
    if (!primary.m_has_display_device) return;

    const PciIds& ids = first.ids;
    hexText(primary.vendorText, ids.vendor, 4);
    hexText(primary.deviceText, ids.device, 4);
    hexText(primary.subvendorText, ids.subvendor, 4);
    hexText(primary.subdeviceText, ids.subdevice, 4);
    hexText(primary.revisionText, ids.revision, 2);
    primary.vendorId = int32_t(ids.vendor);
    primary.deviceId = int32_t(ids.device);
    primary.subvendorId = int32_t(ids.subvendor);
    primary.subdeviceId = int32_t(ids.subdevice);
}

uint32_t HardwareCaps::findDisplaySlot(uint32_t vendor, uint32_t device, uint32_t subvendor, uint32_t subdevice,
                                       uint32_t skip) const {
    return Kalidornm::findDisplaySlot(display, PciIds{vendor, device, subvendor, subdevice, 0}, skip);
}

}  // namespace Kalidornm
