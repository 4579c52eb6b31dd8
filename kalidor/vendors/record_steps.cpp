#include "kalidor/driver_values.h"
#include "kalidor/gpu_database/gpu_database.h"
#include "kalidor/platform/pci_names.h"
#include "kalidor/vendors/vendor_backend.h"

namespace Kalidornm {

namespace {

void takeDatabaseFigures(GpuRecord& record) {
    const int32_t row = findGpuRow(record.vendorId, record.deviceId);
    if (row < 0) return;
    copyText(record.codename, gpuDbCodename(record.vendorId, row));
    record.tmus = gpuDbClampedFigure(record.vendorId, row, GpuDbFigure::Tmus);
    record.rops = gpuDbClampedFigure(record.vendorId, row, GpuDbFigure::Rops);
    record.tdpWatts = gpuDbClampedFigure(record.vendorId, row, GpuDbFigure::TdpWatts);
}

}  // namespace

GpuRecord& appendPciDeviceRecord(const PciDevice& device, const BackendServices& services, const std::string& idsList,
                                 uint32_t& lastSlot, GpuList& gpus) {
    GpuRecord& record = gpus.append(std::make_unique<GpuRecord>());
    record.vendorClass = kVendorClassNone;
    record.pciAddress = device.address;
    record.busId = int32_t(device.address.bus);
    record.vendorId = device.ids.vendor;
    record.deviceId = device.ids.device;
    record.subvendorId = device.ids.subvendor;
    record.subdeviceId = device.ids.subdevice;
    takeDisplaySlot(record, services.display, lastSlot);
    // The second of two identical cards shares the first one's slot and has no display string.
    copyText(record.name, record.displayDeviceString[0]
                              ? record.displayDeviceString
                              : pciDeviceName(idsList, device.ids.vendor, device.ids.device).c_str());
    takeDatabaseFigures(record);
    readGpuDriverValues(record, services);
    return record;
}

uint32_t findDisplaySlot(const DisplayDeviceData& display, const PciIds& ids, uint32_t skip) {
    for (uint32_t i = 0; i < uint32_t(kDisplaySlotCount); ++i) {
        if (i == skip) continue;
        const DisplaySlot& slot = display.slots[i];
        if (!slot.deviceId[0] || slot.ids.vendor != ids.vendor || slot.ids.device != ids.device) continue;
        if (ids.subvendor != 0 && slot.ids.subvendor != 0 && slot.ids.subvendor != ids.subvendor) continue;
        if (ids.subdevice != 0 && slot.ids.subdevice != 0 && slot.ids.subdevice != ids.subdevice) continue;
        return i;
    }
    return kNoDisplaySlot;
}

void takeDisplaySlot(GpuRecord& record, const DisplayDeviceData& display, uint32_t& last) {
    const PciIds ids{record.vendorId, record.deviceId, record.subvendorId, record.subdeviceId, 0};
    const uint32_t slot = findDisplaySlot(display, ids, last);
    if (slot == kNoDisplaySlot) return;
    const DisplaySlot& found = display.slots[slot];
    last = slot;
    record.displaySlot = slot;
    copyText(record.displayDeviceId, found.deviceId);
    copyText(record.displayDeviceName, found.deviceName);
    copyText(record.displayDeviceString, found.deviceString);
    copyText(record.displayDeviceKey, found.deviceKey);
}

// Catalyst and Crimson versions have no source in the kernel's drivers and stay empty.
// Regression: a device with no driver bound got the software rasterizer's driver line ("<kernel> llvmpipe").
bool readGpuDriverValues(GpuRecord& record, const BackendServices& services) {
    const PciDevice* device = record.pciAddress ? services.pci.find(*record.pciAddress) : nullptr;
    if (!device || device->driver.empty()) return false;
    const SysfsDriverFacts facts = readDriverFacts(services.sources.rootDir, *device);

    if (!facts.vbiosVersion.empty()) copyText(record.biosVersion, facts.vbiosVersion.c_str());
    if (facts.vramBytes) record.memorySizeMb = uint32_t(facts.vramBytes >> 20);
    record.isCrimson = 0;
    char version[128];
    copyText(version, driverVersionOf(facts).c_str());
    copyText(record.driverVersion, version);
    copyText(record.driverDate, driverDateOf(facts).c_str());

    const char* glDriver = openGlDriverForKernelDriver(facts.kernelDriver);
    if (*glDriver) {
        copyText(record.openGLDriverName, glDriver);
        const std::string withGl = std::string(record.driverVersion) + " " + glDriver;
        copyText(record.driverVersion, withGl.c_str());
    }
    return true;
}

}  // namespace Kalidornm
