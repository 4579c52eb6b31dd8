#include "gpu_database/gpu_database.h"
#include "vendors/vendor_backend.h"

namespace Kalidornm {

namespace {

// Every display adapter that no vendor backend reads: a record from its display slot, the PCI ids and the
// GPU database, with the kernel driver's values and no live reading.
class GenericBackend final : public VendorBackend {
public:
    std::vector<const PciDevice*> detect(const PciBus& pci) const override { return pci.displayDevices(); }

    void createRecords(const std::vector<const PciDevice*>&, const BackendServices& services,
                       GpuList& gpus) override {
        const DisplayDeviceData& display = services.display;
        for (uint32_t i = 0; i < uint32_t(kDisplaySlotCount) && display.slots[i].deviceId[0]; ++i) {
            const DisplaySlot& slot = display.slots[i];
            // NVIDIA and AMD adapters belong to their vendor backends, which ran before.
            if (slot.ids.vendor == PciVendorNvidia || slot.ids.vendor == PciVendorAmd) continue;

            GpuRecord& record = gpus.append(std::make_unique<GpuRecord>());
            record.vendorClass = kVendorClassNone;
            record.pciAddress = slot.address;
            if (slot.address) record.busId = int32_t(slot.address->bus);
            copyText(record.name, slot.deviceString);
            record.vendorId = slot.ids.vendor;
            record.deviceId = slot.ids.device;
            record.subvendorId = slot.ids.subvendor;
            record.subdeviceId = slot.ids.subdevice;
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
            readGpuDriverValues(record, services);
        }
    }

    GpuLiveReader* liveReader() override { return nullptr; }
};

}  // namespace

std::unique_ptr<VendorBackend> makeGenericBackend(VendorBlocks&) { return std::make_unique<GenericBackend>(); }

}  // namespace Kalidornm
