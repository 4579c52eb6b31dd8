#include <cctype>
#include <cstdio>
#include <cstring>

#include "gpu_database/gpu_database.h"
#include "hardware_caps.h"
#include "library_log.h"
#include "platform/display_device_source.h"

namespace Kalidornm {

namespace {

struct IdFieldPlace {
    size_t position;
    size_t length;
};

constexpr IdFieldPlace placeOf(IdField field) {
    switch (field) {
        case IdField::Vendor: return {8, 4};
        case IdField::Device: return {17, 4};
        case IdField::Subdevice: return {29, 4};
        case IdField::Subvendor: return {33, 4};
        case IdField::Revision: return {42, 2};
    }
    return {0, 0};
}

uint32_t hexDigit(char c) {
    const int upper = std::toupper(static_cast<unsigned char>(c));
    return upper >= '0' && upper <= '9' ? uint32_t(upper - '0') : uint32_t(upper - 55);
}

}  // namespace

uint32_t hexQuad(char c0, char c1, char c2, char c3) {
    return (hexDigit(c0) << 12) + (hexDigit(c1) << 8) + (hexDigit(c2) << 4) + hexDigit(c3);
}

std::string idFieldText(const char* idString, IdField field) {
    const IdFieldPlace place = placeOf(field);
    if (!idString || std::strlen(idString) < place.position + place.length) return {};
    return std::string(idString + place.position, place.length);
}

int32_t idFieldValue(const char* idString, IdField field) {
    if (field == IdField::Revision) return -1;
    const std::string text = idFieldText(idString, field);
    if (text.empty()) return -1;
    return int32_t(hexQuad(text[0], text[1], text[2], text[3]));
}

std::string pciDeviceIdString(uint32_t vendor, uint32_t device, uint32_t subvendor, uint32_t subdevice,
                              uint32_t revision) {
    char text[64];
    std::snprintf(text, sizeof text, "PCI\\VEN_%04X&DEV_%04X&SUBSYS_%04X%04X&REV_%02X", vendor & 0xFFFF,
                  device & 0xFFFF, subdevice & 0xFFFF, subvendor & 0xFFFF, revision & 0xFF);
    return text;
}

void HardwareCaps::_readDisplayDeviceData() {
    PrimaryDisplay& primary = display.primary;
    if (primary.m_has_display_device) return;
    primary = PrimaryDisplay{};

    // Identical neighbours make one slot: on other systems each output of a card is listed with the same id,
    // and two identical cards side by side collapse the same way.
    const std::vector<DisplaySlot> devices = listDisplayDevices(sources);
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

    const char* id = primary.m_display_device_id_string;
    copyText(primary.vendorText, idFieldText(id, IdField::Vendor).c_str());
    copyText(primary.deviceText, idFieldText(id, IdField::Device).c_str());
    copyText(primary.subvendorText, idFieldText(id, IdField::Subvendor).c_str());
    copyText(primary.subdeviceText, idFieldText(id, IdField::Subdevice).c_str());
    copyText(primary.revisionText, idFieldText(id, IdField::Revision).c_str());
    primary.vendorId = idFieldValue(id, IdField::Vendor);
    primary.deviceId = idFieldValue(id, IdField::Device);
    primary.subvendorId = idFieldValue(id, IdField::Subvendor);
    primary.subdeviceId = idFieldValue(id, IdField::Subdevice);
}

uint32_t HardwareCaps::findDisplaySlot(uint32_t vendor, uint32_t device, uint32_t subvendor, uint32_t subdevice,
                                       uint32_t skip) const {
    for (uint32_t i = 0; i < uint32_t(kDisplaySlotCount); ++i) {
        if (i == skip) continue;
        const char* id = display.slots[i].deviceId;
        if (!id[0]) continue;
        if (idFieldValue(id, IdField::Vendor) != int32_t(vendor) ||
            idFieldValue(id, IdField::Device) != int32_t(device))
            continue;
        const int32_t slotSubvendor = idFieldValue(id, IdField::Subvendor);
        const int32_t slotSubdevice = idFieldValue(id, IdField::Subdevice);
        if (subvendor != 0 && slotSubvendor != 0 && slotSubvendor != int32_t(subvendor)) continue;
        if (subdevice != 0 && slotSubdevice != 0 && slotSubdevice != int32_t(subdevice)) continue;
        return i;
    }
    return kNoDisplaySlot;
}

void HardwareCaps::_createOtherAdapterRecords(GpuList& gpus) {
    for (uint32_t i = 0; i < uint32_t(kDisplaySlotCount) && display.slots[i].deviceId[0]; ++i) {
        const DisplaySlot& slot = display.slots[i];
        const int32_t vendor = idFieldValue(slot.deviceId, IdField::Vendor);
        // NVIDIA and AMD adapters belong to their vendor readers, which ran before.
        if (vendor == int32_t(PciVendorNvidia) || vendor == int32_t(PciVendorAmd)) continue;

        auto created = std::make_unique<GpuRecord>();
        GpuRecord& record = gpus.append(std::move(created));
        record.vendorClass = kVendorClassNone;
        copyText(record.name, slot.deviceString);
        record.vendorId = uint32_t(vendor);
        record.deviceId = uint32_t(idFieldValue(slot.deviceId, IdField::Device));
        record.subvendorId = uint32_t(idFieldValue(slot.deviceId, IdField::Subvendor));
        record.subdeviceId = uint32_t(idFieldValue(slot.deviceId, IdField::Subdevice));
        record.displaySlot = i;
        copyText(record.displayDeviceId, slot.deviceId);
        copyText(record.displayDeviceName, slot.deviceName);
        copyText(record.displayDeviceString, slot.deviceString);
        copyText(record.displayDeviceKey, slot.deviceKey);

        const int32_t row = findGpuRow(record.vendorId, record.deviceId);
        if (row >= 0) {
            copyText(record.codename, gpuDbCodename(record.vendorId, row));
            record.tmus = gpuDbClampedFigure(record.vendorId, row, GpuDbFigure::Tmus);
            record.rops = gpuDbClampedFigure(record.vendorId, row, GpuDbFigure::Rops);
            record.tdpWatts = gpuDbClampedFigure(record.vendorId, row, GpuDbFigure::TdpWatts);
        }
        readGpuDriverRegistry(record);
    }
}

}  // namespace Kalidornm
