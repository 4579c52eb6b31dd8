// PCI addresses as sysfs and the drivers write them, and the database lookups a device's ids feed. The first
// part of the input is an address text ("0000:01:00.0" on a sane machine, anything at all otherwise), the
// second holds the ids as hex ("10de 2204 1458 403b"), the third the adapter name the AMD naming rules and the
// summary test for words.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fuzz/fuzz_input.h"
#include "kalidor/display_devices.h"
#include "kalidor/gpu_database/gpu_database.h"
#include "kalidor/gpu_database/gpu_naming.h"
#include "kalidor/gpu_database/pci_vendor_table.h"
#include "kalidor/platform/pci_address.h"

using namespace Kalidornm;

namespace {

void lookUp(uint32_t vendor, uint32_t device, uint32_t subdevice, const char* adapterName) {
    const int32_t row = findGpuRow(vendor, device);
    const GpuDbRow* found = gpuDbRow(vendor, row);
    if ((row >= 0) != (found != nullptr) || (found && found->deviceId != device)) std::abort();
    if (!gpuDbName(vendor, row) || !gpuDbCodename(vendor, row)) std::abort();
    for (GpuDbFigure figure : {GpuDbFigure::UnifiedShaders, GpuDbFigure::VertexPipes, GpuDbFigure::PixelPipes,
                               GpuDbFigure::Tmus, GpuDbFigure::Rops, GpuDbFigure::TdpWatts}) {
        if (gpuDbClampedFigure(vendor, row, figure) < 0) std::abort();
        int32_t field = 0;
        refillFromGpuDb(field, vendor, device, figure);
    }
    if (const auto facts = amdAdapterDbFacts(vendor, device, subdevice, adapterName))
        if (!facts->name || !facts->codename) std::abort();
    const PrimaryGpuDbFacts primary =
        primaryGpuDbFacts(int32_t(vendor), int32_t(device), int32_t(subdevice), adapterName);
    if (!primary.name || !primary.codename || !primaryGpuDbName(int32_t(vendor), int32_t(device), int32_t(subdevice)))
        std::abort();
    if (!pciVendorName(int32_t(vendor))) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::vector<std::string_view> parts = splitFuzzInput(data, size);
    const std::string address(parts.size() > 0 ? parts[0] : std::string_view());
    const std::string idsText(parts.size() > 1 ? parts[1] : std::string_view());
    const std::string adapterName(parts.size() > 2 ? parts[2] : std::string_view());

    // An address that parses is one the kernel could write: written back, it parses to itself.
    if (const auto parsed = parsePciAddress(address)) {
        if (parsed->bus > 0xFF || parsed->device > 0x1F || parsed->function > 7) std::abort();
        const auto again = parsePciAddress(parsed->text());
        if (!again || *again != *parsed) std::abort();
    }

    unsigned vendor = 0, device = 0, subvendor = 0, subdevice = 0;
    std::sscanf(idsText.c_str(), "%x %x %x %x", &vendor, &device, &subvendor, &subdevice);
    PciIds ids;
    ids.vendor = vendor & 0xFFFF, ids.device = device & 0xFFFF;
    ids.subvendor = subvendor & 0xFFFF, ids.subdevice = subdevice & 0xFFFF;
    if (pciDeviceIdString(ids).size() != std::string("PCI\\VEN_0000&DEV_0000&SUBSYS_00000000&REV_00").size())
        std::abort();
    lookUp(ids.vendor, ids.device, ids.subdevice, parts.size() > 2 ? adapterName.c_str() : nullptr);
    return 0;
}
