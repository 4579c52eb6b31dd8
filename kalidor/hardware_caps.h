#pragma once

#include <cstdint>
#include <memory>

#include "kalidor/cpu_os_info.h"
#include "kalidor/display_devices.h"
#include "kalidor/gpu_live_reader.h"
#include "kalidor/gpu_record.h"
#include "kalidor/opengl/opengl_state.h"
#include "kalidor/platform/pci_bus.h"
#include "kalidor/platform/sources.h"
#include "kalidor/vendors/amd_reader.h"
#include "kalidor/vendors/nvidia_reader.h"
#include "kalidor/vendors/vendor_backend.h"

namespace Kalidornm {

inline constexpr int kCapabilityFlagCount = 50;

// Primary vendor as told by the first display device; kind 0 is refined later from the OpenGL vendor string.
enum PrimaryVendorKind : int32_t {
    kPrimaryVendorNone = 0,
    kPrimaryVendorNvidia = 1,
    kPrimaryVendorAmd = 2,
    kPrimaryVendorS3 = 3,
    kPrimaryVendorIntel = 4,
    kPrimaryVendorOther = 5,
};

PrimaryVendorKind primaryVendorKindOf(int32_t pciVendorId);

// Machine-level state of one render window: capability flags, primary device, driver values, CPU and OS,
// the vendor readers' blocks and what the OpenGL probe learnt.
struct HardwareCaps {
    bool capabilityFlags[kCapabilityFlagCount] = {};
    int32_t primaryVendorKind = kPrimaryVendorNone;
    OpenGlState gl;
    PrimaryDriverValues driver;
    CpuOsInfo cpuOs;
    DisplayDeviceData display;
    NvidiaState nvidia;
    AmdState amd;
    KalidorSources sources;
    PciBus pci;  // the scan that every reader of this machine works from
    // The backends of kVendorBackendRows, in row order, each with the class of the records it made.
    struct Backend {
        GpuVendorClass vendorClass;
        std::unique_ptr<VendorBackend> backend;
    };
    std::vector<Backend> backends;

    // Scans the PCI bus, then fills the display slots, the CPU block and the GPU list: each backend of the
    // table in turn claims its devices and makes their records, so the list holds NVIDIA records, AMD
    // records, then every other adapter.
    void init(GpuList& gpus);

    // The reader that serves records of this class, or null.
    GpuLiveReader* readerFor(GpuVendorClass vendorClass) const;

    // The first display slot (skipping `skip`) whose vendor and device match and whose subvendor and subdevice
    // match or are 0 on either side; kNoDisplaySlot when none fits.
    uint32_t findDisplaySlot(uint32_t vendor, uint32_t device, uint32_t subvendor, uint32_t subdevice,
                             uint32_t skip) const;

    // Reads the kernel driver's values for the record's device into the record.
    bool readGpuDriverRegistry(GpuRecord& record);

    // Reads the primary device's driver values into `driver`; run by the OpenGL probe once its context is up.
    bool initGraphicsControllerData();

    // Lets go of the backends and what they loaded.
    void cleanup();

    // Steps of init, each in the file of its component.
    void _readDisplayDeviceData();
    void _queryCPUInfo();
    void _createGpuRecords(GpuList& gpus);
    // The PCI device of a display slot; null for an empty slot or one off the bus.
    const PciDevice* _pciDeviceOfSlot(uint32_t slot) const;
};

}  // namespace Kalidornm
