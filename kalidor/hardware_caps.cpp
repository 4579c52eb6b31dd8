#include "hardware_caps.h"

#include "library_log.h"

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

    trace.write("HardwareCaps::init() - NVAPI_Init()");
    NVAPI_Init(gpus);
    trace.write("HardwareCaps::init() - NVAPI_Init() OK.");

    trace.write("HardwareCaps::init() - ATI_Init()");
    ATI_Init(gpus);
    trace.write("HardwareCaps::init() - ATI_Init() OK.");

    _createOtherAdapterRecords(gpus);
    trace.write("HardwareCaps::init() - END OK.");
}

GpuLiveReader* HardwareCaps::readerFor(GpuVendorClass vendorClass) const {
    switch (vendorClass) {
        case kVendorClassNvidia: return nvidiaReader.get();
        case kVendorClassAmd: return amdReader.get();
        case kVendorClassNone: break;
    }
    return nullptr;
}

void HardwareCaps::cleanup() {
    nvidiaReader.reset();
    amdReader.reset();
}

}  // namespace Kalidornm
