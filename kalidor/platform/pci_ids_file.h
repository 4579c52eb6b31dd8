#pragma once

#include <cstdint>
#include <string>

namespace Kalidornm {

// The device's name in the system's PCI id list (<rootDir>/usr/share/misc/pci.ids, else
// <rootDir>/usr/share/hwdata/pci.ids); empty when the list or the entry is missing.
std::string pciIdsDeviceName(const std::string& rootDir, uint32_t vendorId, uint32_t deviceId);

}  // namespace Kalidornm
