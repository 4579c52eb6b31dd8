#pragma once

#include <QPixmap>
#include <cstdint>

namespace panels {

// The logo of a GPU vendor by PCI vendor id, drawn for this program; vendors without one of their own share a
// plain chip.
QPixmap vendorLogo(uint32_t pciVendor);

// The program's icon.
QPixmap applicationIcon();

}  // namespace panels
