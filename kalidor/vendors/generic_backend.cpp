#include <cstring>

#include "kalidor/platform/pci_names.h"
#include "kalidor/vendors/vendor_backend.h"

namespace Kalidornm {

namespace {

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
        for (const PciDevice* device : devices)
            appendPciDeviceRecord(*device, services, idsList, last, gpus);
        // A machine without a PCI display device may have a software rasterizer in slot 0.
        const DisplaySlot& first = services.display.slots[0];
        if (services.pci.displayDevices().empty() && std::strcmp(first.deviceId, kSoftwareRasterizerId) == 0) {
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
