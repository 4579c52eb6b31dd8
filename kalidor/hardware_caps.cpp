#include "kalidor/hardware_caps.h"

#include <algorithm>

#include "kalidor/library_log.h"

namespace Kalidornm {

PrimaryVendorKind primaryVendorKindOf(int32_t pciVendorId) {
    switch (pciVendorId) {
        case -1: return kPrimaryVendorNone;
        case 0x10DE: return kPrimaryVendorNvidia;
        case 0x1002: return kPrimaryVendorAmd;
        case 0x5333: return kPrimaryVendorS3;
        case 0x8086: return kPrimaryVendorIntel;
        default: return kPrimaryVendorOther;
    }
}

void HardwareCaps::init(GpuList& gpus) {
    LibraryLog& trace = generalTrace();
    trace.write("HardwareCaps::init() - START");
    pci = PciBus::scan(sources.rootDir);
    _readDisplayDeviceData();

    primaryVendorKind = primaryVendorKindOf(display.primary.vendorId);
    gl = OpenGlState{};

    trace.write("HardwareCaps::init() - _queryCPUInfo()");
    _queryCPUInfo();
    trace.write("HardwareCaps::init() - _queryCPUInfo() OK.");

    _createGpuRecords(gpus);
    trace.write("HardwareCaps::init() - END OK.");
}

void HardwareCaps::_createGpuRecords(GpuList& gpus) {
    LibraryLog& trace = generalTrace();
    backends.clear();
    VendorBlocks blocks{nvidia, amd};
    const BackendServices services{sources, pci, display};
    std::vector<PciAddress> claimed;
    for (const VendorBackendRow& row : kVendorBackendRows) {
        std::unique_ptr<VendorBackend> backend = row.make(blocks);
        if (!backend) continue;
        std::vector<const PciDevice*> devices = backend->detect(pci);
        std::erase_if(devices, [&](const PciDevice* d) {
            return std::find(claimed.begin(), claimed.end(), d->address) != claimed.end();
        });
        for (const PciDevice* device : devices) claimed.push_back(device->address);
        if (row.startName) trace.write("HardwareCaps::init() - %s()", row.startName);
        backend->createRecords(devices, services, gpus);
        if (row.startName) trace.write("HardwareCaps::init() - %s() OK.", row.startName);
        backends.push_back({row.vendorClass, std::move(backend)});
    }
}

GpuLiveReader* HardwareCaps::readerFor(GpuVendorClass vendorClass) const {
    for (const Backend& entry : backends)
        if (entry.vendorClass == vendorClass) return entry.backend->liveReader();
    return nullptr;
}

void HardwareCaps::cleanup() { backends.clear(); }

}  // namespace Kalidornm
