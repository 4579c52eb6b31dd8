#pragma once

#include <vector>

#include "kalidor/display_devices.h"
#include "kalidor/platform/pci_bus.h"
#include "kalidor/platform/sources.h"

namespace Kalidornm {

// The machine's display adapters from one PCI scan: display-class devices, the boot device first and then
// bus order; without any, one software rasterizer slot if EGL offers such a device; else none.
std::vector<DisplaySlot> listDisplayDevices(const PciBus& bus, const KalidorSources& sources);

// The same from a scan of its own.
std::vector<DisplaySlot> listDisplayDevices(const KalidorSources& sources);

}  // namespace Kalidornm
