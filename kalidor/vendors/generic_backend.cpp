#include <cstring>

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

// Every display adapter that no vendor backend claimed (another vendor's, or NVIDIA's and AMD's on another
// kernel driver than the one their backend reads, or on none): a record from the PCI layer, the display
// slot and the GPU database, with the kernel driver's values and no live reading.
class GenericBackend final : public VendorBackend {
public:
    std::vector<const PciDevice*> detect(const PciBus& pci) const override { return pci.displayDevices(); }

    void createRecords(const std::vector<const PciDevice*>& devices, const BackendServices& services,
                       GpuList& gpus) override {
        const std::string idsList = pciIdsListFor(services.sources);
        uint32_t last = kNoDisplaySlot;
        for (const PciDevice* device : devices) {
            GpuRecord& record = gpus.append(std::make_unique<GpuRecord>());
            record.vendorClass = kVendorClassNone;
            record.pciAddress = device->address;
            record.busId = int32_t(device->address.bus);
            record.vendorId = device->ids.vendor;
            record.deviceId = device->ids.device;
            record.subvendorId = device->ids.subvendor;
            record.subdeviceId = device->ids.subdevice;
            takeDisplaySlot(record, services.display, last);
            // The second of two identical cards shares the first one's slot and has no display string.
            copyText(record.name, record.displayDeviceString[0]
                                      ? record.displayDeviceString
                                      : pciDeviceName(idsList, device->ids.vendor, device->ids.device).c_str());
            takeDatabaseFigures(record);
            readGpuDriverValues(record, services);
        }
        // A machine without a PCI display device may have a software rasterizer in slot 0.
        const DisplaySlot& first = services.display.slots[0];
        if (devices.empty() && std::strcmp(first.deviceId, kSoftwareRasterizerId) == 0) {
            GpuRecord& record = gpus.append(std::make_unique<GpuRecord>());
            copyText(record.name, first.deviceString);
            record.displaySlot = 0;
            copyText(record.displayDeviceId, first.deviceId);
            copyText(record.displayDeviceName, first.deviceName);
            copyText(record.displayDeviceString, first.deviceString);
            copyText(record.displayDeviceKey, first.deviceKey);
        }
    }

    GpuLiveReader* liveReader() override { return nullptr; }
};

}  // namespace

std::unique_ptr<VendorBackend> makeGenericBackend(VendorBlocks&) { return std::make_unique<GenericBackend>(); }

}  // namespace Kalidornm
