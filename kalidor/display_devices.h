#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Kalidornm {

inline constexpr int kDisplaySlotCount = 25;

// One display adapter as the operating system lists it. `deviceId` has the form
// "PCI\VEN_vvvv&DEV_dddd&SUBSYS_ssssvvvv&REV_rr"; an empty one ends the used part of the table.
struct DisplaySlot {
    char deviceId[128] = {};
    char deviceString[128] = {};
    char deviceName[128] = {};
    char deviceKey[128] = {};
};

// The primary display device (slot 0) and its decoded PCI ids.
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

// The fixed fields of a device-id string "PCI\VEN_vvvv&DEV_dddd&SUBSYS_ssssvvvv&REV_rr".
enum class IdField { Vendor, Device, Subdevice, Subvendor, Revision };

// The raw characters of a field (four, two for the revision); "" when the string is too short for it.
std::string idFieldText(const char* idString, IdField field);

// A field decoded with hexQuad; -1 when the string is too short for it. The revision is not decoded.
int32_t idFieldValue(const char* idString, IdField field);

// "PCI\VEN_vvvv&DEV_dddd&SUBSYS_ssssvvvv&REV_rr" in upper-case hex, the subdevice before the subvendor.
std::string pciDeviceIdString(uint32_t vendor, uint32_t device, uint32_t subvendor, uint32_t subdevice,
                              uint32_t revision);

// The slot that stands for a software rasterizer when a machine has no PCI display device.
inline constexpr const char* kSoftwareRasterizerId = "SWR\\VEN_0000&DEV_0000&SUBSYS_00000000&REV_00";
inline constexpr const char* kSoftwareRasterizerName = "Mesa software rasterizer";

// Four hex digit characters to a number: each is upper-cased, '0'-'9' give 0-9, anything else its code
// minus 55 ('A'-'F' give 10-15). No validation.
uint32_t hexQuad(char c0, char c1, char c2, char c3);

}  // namespace Kalidornm
