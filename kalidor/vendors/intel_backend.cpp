#include <memory>

#include "kalidor/platform/pci_names.h"
#include "kalidor/vendors/intel_live_reader.h"
#include "kalidor/vendors/vendor_backend.h"

namespace Kalidornm {

namespace {

bool isIntelKernelDriver(const std::string& driver) { return driver == "i915" || driver == "xe"; }

// Intel GPUs on the i915 and xe kernel drivers: the same record every other display adapter gets, plus the
// live reads the drivers' sysfs files give. Their files are first looked at when a read finds the GPU awake.
class IntelBackend final : public VendorBackend {
public:
    // In the order of the display devices, as the records of every other adapter.
    std::vector<const PciDevice*> detect(const PciBus& pci) const override {
        std::vector<const PciDevice*> devices;
        for (const PciDevice* device : pci.displayDevices())
            if (device->ids.vendor == 0x8086 && isIntelKernelDriver(device->driver)) devices.push_back(device);
        return devices;
    }

    void createRecords(const std::vector<const PciDevice*>& devices, const BackendServices& services,
                       GpuList& gpus) override {
        m_reader = std::make_unique<IntelLiveReader>(services.pci, services.sources.monotonicMicroseconds);
        if (devices.empty()) return;
        const std::string idsList = pciIdsListFor(services.sources);
        uint32_t last = kNoDisplaySlot;
        for (const PciDevice* device : devices) {
            GpuRecord& record = appendPciDeviceRecord(*device, services, idsList, last, gpus);
            record.vendorClass = kVendorClassIntel;
            m_reader->addCard(*device);
        }
    }

    GpuLiveReader* liveReader() override { return m_reader.get(); }

private:
    std::unique_ptr<IntelLiveReader> m_reader;
};

}  // namespace

std::unique_ptr<VendorBackend> makeIntelBackend(VendorBlocks&) { return std::make_unique<IntelBackend>(); }

}  // namespace Kalidornm
