#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kalidor/platform/pci_bus.h"

namespace Kalidornm {

inline constexpr int kDisplaySlotCount = 25;

// One display adapter as the operating system lists it. `deviceId` has the form
// "PCI\VEN_vvvv&DEV_dddd&SUBSYS_ssssvvvv&REV_rr"; an empty one ends the used part of the table. The same
// identity is kept as numbers, by which slots are matched; a slot off the PCI bus (the software rasterizer)
// has ids 0 and no address.
struct DisplaySlot {
    char deviceId[128] = {};
    char deviceString[128] = {};
    char deviceName[128] = {};
    char deviceKey[128] = {};
    PciIds ids;
    std::optional<PciAddress> address;
};

// The primary display device (slot 0) and its PCI ids.
struct PrimaryDisplay {
    bool m_has_display_device = false;
    char m_display_device_name[64] = {};
    char m_display_device_string[256] = {};
    char m_display_device_id_string[256] = {};
    char vendorText[5] = {};
    char deviceText[5] = {};
    char subvendorText[5] = {};
    char subdeviceText[5] = {};
    char revisionText[7] = {};
    int32_t vendorId = -1;
    int32_t deviceId = -1;
    int32_t subvendorId = -1;
    int32_t subdeviceId = -1;
};

// The driver's own values for the primary device.
struct PrimaryDriverValues {
    char driverVersion[256] = "Unknown version";
    char driverDescription[256] = {};
    char driverDate[256] = {};
    char deviceDescription[256] = {};
    char openGLDriverName[256] = {};
    char adapterString[256] = {};
    char biosString[256] = {};
    char catalystVersion[256] = {};
    char releaseVersion[256] = {};
    uint32_t memorySizeBytes = 0;
};

struct DisplayDeviceData {
    DisplaySlot slots[kDisplaySlotCount];
    PrimaryDisplay primary;
};

// "PCI\VEN_vvvv&DEV_dddd&SUBSYS_ssssvvvv&REV_rr" in upper-case hex, the subdevice before the subvendor.
std::string pciDeviceIdString(const PciIds& ids);

// The slot that stands for a software rasterizer when a machine has no PCI display device.
inline constexpr const char* kSoftwareRasterizerId = "SWR\\VEN_0000&DEV_0000&SUBSYS_00000000&REV_00";
inline constexpr const char* kSoftwareRasterizerName = "Mesa software rasterizer";

}  // namespace Kalidornm
