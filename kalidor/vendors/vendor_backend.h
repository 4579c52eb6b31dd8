#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kalidor/display_devices.h"
#include "kalidor/gpu_live_reader.h"
#include "kalidor/gpu_record.h"
#include "kalidor/platform/pci_bus.h"
#include "kalidor/platform/sources.h"

namespace Kalidornm {

struct NvidiaState;
struct AmdState;

// What start-up lends a backend while it makes its records: where the machine is read from, the PCI scan,
// and the display slots (read only).
struct BackendServices {
    const KalidorSources& sources;
    const PciBus& pci;
    const DisplayDeviceData& display;
};

// One vendor's way of finding and reading GPUs. The library runs the backends of kVendorBackendRows in
// order; each claims its devices, makes their records and answers the live reads of those records. A backend
// that finds nothing leaves no record.
class VendorBackend {
public:
    virtual ~VendorBackend() = default;
    // The devices of the scan this backend serves, in the order their records take.
    virtual std::vector<const PciDevice*> detect(const PciBus& pci) const = 0;
    // Appends the records of `devices`: those detect gave, less any an earlier backend claimed.
    virtual void createRecords(const std::vector<const PciDevice*>& devices, const BackendServices& services,
                               GpuList& gpus) = 0;
    // The live reads of its records; null when it has none to offer.
    virtual GpuLiveReader* liveReader() = 0;
};

// The vendor state blocks the facade shows, each lent to the backend that fills it.
struct VendorBlocks {
    NvidiaState& nvidia;
    AmdState& amd;
};

struct VendorBackendRow {
    GpuVendorClass vendorClass;  // of the records the backend makes
    const char* startName;       // its step in the start-up trace; null for none
    std::unique_ptr<VendorBackend> (*make)(VendorBlocks& blocks);
};

std::unique_ptr<VendorBackend> makeNvidiaBackend(VendorBlocks& blocks);
std::unique_ptr<VendorBackend> makeAmdBackend(VendorBlocks& blocks);
std::unique_ptr<VendorBackend> makeIntelBackend(VendorBlocks& blocks);
std::unique_ptr<VendorBackend> makeGenericBackend(VendorBlocks& blocks);

// NVIDIA first, then AMD, then Intel, then every other display adapter: the order of the GPU list. Intel's
// step writes nothing to the start-up trace, which predates it.
inline constexpr VendorBackendRow kVendorBackendRows[] = {
    {kVendorClassNvidia, "NVAPI_Init", &makeNvidiaBackend},
    {kVendorClassAmd, "ATI_Init", &makeAmdBackend},
    {kVendorClassIntel, nullptr, &makeIntelBackend},
    {kVendorClassNone, nullptr, &makeGenericBackend},
};
static_assert(std::size(kVendorBackendRows) == 4);

// Shared steps of record making.

// A record of what the PCI layer, the display slot, the GPU database and the kernel driver tell of a device,
// of vendor class none, appended to `gpus`. `lastSlot` is the display slot the previous record of the same
// backend took (kNoDisplaySlot for the first); `idsList` names the device where no slot does.
GpuRecord& appendPciDeviceRecord(const PciDevice& device, const BackendServices& services, const std::string& idsList,
                                 uint32_t& lastSlot, GpuList& gpus);

// The display slot that fits the record's ids, skipping `last`, whose strings the record takes; `last`
// becomes that slot. No fit leaves the record without display strings.
void takeDisplaySlot(GpuRecord& record, const DisplayDeviceData& display, uint32_t& last);

// The first display slot (skipping `skip`) whose vendor and device match and whose subvendor and subdevice
// match or are 0 on either side; kNoDisplaySlot when none fits.
uint32_t findDisplaySlot(const DisplayDeviceData& display, const PciIds& ids, uint32_t skip);

// The kernel driver's values for the record's device, found by its PCI address: version with the OpenGL
// driver, date, BIOS, video memory. False, the record untouched, when the scan has no such device or no driver
// is bound to it.
bool readGpuDriverValues(GpuRecord& record, const BackendServices& services);

}  // namespace Kalidornm
