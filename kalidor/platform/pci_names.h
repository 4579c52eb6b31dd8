#pragma once

#include <cstdint>
#include <string>

#include "kalidor/platform/sources.h"

namespace Kalidornm {

// The one source of device names: libpci, asked for names only (no access method, no config space), from
// one PCI id list.

// The list to name devices from: the configured one; on a replayed machine without one, the list inside its
// tree (usr/share/misc or usr/share/hwdata); else "" for libpci's own default.
std::string pciIdsListFor(const KalidorSources& sources);

// "Vendor Device" ("NVIDIA Corporation GH100 [H100 SXM5 80GB]"); numbers stand in for what the list lacks.
std::string pciDeviceName(const std::string& idsFile, uint32_t vendor, uint32_t device);

// The device's own name ("Navi 21 [Radeon RX 6800/6800 XT / 6900 XT]"); "" when the list lacks it.
std::string pciDeviceOnlyName(const std::string& idsFile, uint32_t vendor, uint32_t device);

}  // namespace Kalidornm
