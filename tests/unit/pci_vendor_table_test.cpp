#include "gpu_database/pci_vendor_table.h"

#include <gtest/gtest.h>

namespace Kalidornm {
namespace {

TEST(PciVendorNames, FixedNamesWinOverThePublicListSpelling)
{
    struct Expected {
        uint16_t id;
        const char* shortName;
        const char* fullName;
    };
    const Expected fixed[] = {
        {0x0E11, "Compaq", "Compaq Computer Corp."},
        {0x1002, "ATI", "AMD/ATI"},
        {0x1025, "Acer", "Acer Incorporated"},
        {0x1028, "Dell", "Dell Computer Corporation"},
        {0x102B, "Matrox", "Matrox Electronic Systems Ltd."},
        {0x1039, "SiS", "Silicon Integrated Systems"},
        {0x103C, "HP", "Hewlett-Packard Company"},
        {0x1043, "Asustek", "Asustek Computer Inc."},
        {0x10DE, "NVIDIA", "NVIDIA"},
        {0x1106, "VIA", "VIA Technology"},
        {0x121A, "3dfx", "3dfx Interactive Inc"},
        {0x1458, "Giga-Byte", "Giga-Byte Technologies"},
        {0x1462, "MSI", "Micro-Star International Co Ltd"},
        {0x1569, "AleksSPb", "Palit Microsystems Inc"},
        {0x174B, "PC Partner (Sapphire)", "PC Partner Limited"},
        {0x5333, "S3 86c765", "S3 Graphics Co., Ltd"},
        {0x8086, "Intel", "Intel"},
    };
    const auto table = pciVendorTable();
    EXPECT_GE(table.size(), 1498u);
    for (const Expected& e : fixed) {
        SCOPED_TRACE(e.fullName);
        int matches = 0;
        for (const PciVendorRow& row : table) {
            if (row.vendorId != e.id) continue;
            ++matches;
            EXPECT_STREQ(row.shortName, e.shortName);
            EXPECT_STREQ(row.fullName, e.fullName);
        }
        EXPECT_EQ(matches, 1);
        EXPECT_STREQ(pciVendorName(e.id), e.fullName);
    }
}

// The primary vendor id is -1 without a display device; narrowing it to 16 bits would name
// the list's 0xFFFF entry instead of "Unknown".
TEST(PciVendorNames, WholeVendorValueIsCompared)
{
    EXPECT_STREQ(pciVendorName(-1), "Unknown");
    EXPECT_STREQ(pciVendorName(0x110DE), "Unknown");
    EXPECT_STREQ(pciVendorName(0xFFFF), "Illegal Vendor ID");
    EXPECT_STREQ(pciVendorName(0x0002), "Unknown");
    EXPECT_STREQ(pciVendorName(0x15CF), "Hilscher Gesellschaft f\u00fcr Systemautomation mbH");
}

}  // namespace
}  // namespace Kalidornm
