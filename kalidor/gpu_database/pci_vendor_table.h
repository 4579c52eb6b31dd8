// PCI vendor names: the company behind a PCI vendor id, for the primary GPU's vendor.
#pragma once

#include <cstdint>
#include <span>

namespace Kalidornm {

struct PciVendorRow {
    uint16_t vendorId;
    const char* shortName;  // often empty; nothing looks it up
    const char* fullName;   // always there
};

// Every row, sorted by ascending vendor id, each id once.
std::span<const PciVendorRow> pciVendorTable();

// Full name of the first row whose id equals vendorId, or "Unknown". The whole value is
// compared, so the -1 that stands for "no display device" matches nothing, not 0xFFFF.
const char* pciVendorName(int32_t vendorId);

}  // namespace Kalidornm
