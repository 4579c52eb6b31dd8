// Device-id strings of display adapters and the database lookups their ids feed. The string is
// "PCI\VEN_vvvv&DEV_dddd&SUBSYS_ssssvvvv&REV_rr" on a sane machine and anything at all otherwise; the second
// part of the input is the adapter name the AMD naming rules and the summary test for words.
#include <cstdlib>
#include <cstring>
#include <string>

#include "fuzz/fuzz_input.h"
#include "kalidor/display_devices.h"
#include "kalidor/gpu_database/gpu_database.h"
#include "kalidor/gpu_database/gpu_naming.h"
#include "kalidor/gpu_database/pci_vendor_table.h"

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
    const std::string id(parts.size() > 0 ? parts[0] : std::string_view());
    const std::string adapterName(parts.size() > 1 ? parts[1] : std::string_view());

    for (IdField field : {IdField::Vendor, IdField::Device, IdField::Subdevice, IdField::Subvendor}) {
        const std::string text = idFieldText(id.c_str(), field);
        const int32_t value = idFieldValue(id.c_str(), field);
        if (text.empty() ? value != -1 : text.size() != 4) std::abort();
    }
    if (idFieldValue(id.c_str(), IdField::Revision) != -1) std::abort();

    const uint32_t vendor = uint32_t(idFieldValue(id.c_str(), IdField::Vendor));
    const uint32_t device = uint32_t(idFieldValue(id.c_str(), IdField::Device));
    const uint32_t subvendor = uint32_t(idFieldValue(id.c_str(), IdField::Subvendor));
    const uint32_t subdevice = uint32_t(idFieldValue(id.c_str(), IdField::Subdevice));
    lookUp(vendor, device, subdevice, parts.size() > 1 ? adapterName.c_str() : nullptr);

    // What we write ourselves for a PCI device must decode to the same ids.
    const std::string written = pciDeviceIdString(vendor, device, subvendor, subdevice, 0);
    if (idFieldValue(written.c_str(), IdField::Vendor) != int32_t(vendor & 0xFFFF) ||
        idFieldValue(written.c_str(), IdField::Device) != int32_t(device & 0xFFFF) ||
        idFieldValue(written.c_str(), IdField::Subvendor) != int32_t(subvendor & 0xFFFF) ||
        idFieldValue(written.c_str(), IdField::Subdevice) != int32_t(subdevice & 0xFFFF))
        std::abort();
    return 0;
}
