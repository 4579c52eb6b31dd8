#include "kalidor/gpu_database/pci_vendor_table.h"

#include <gtest/gtest.h>

#include <utility>

namespace Kalidornm {
namespace {

// The names users have always seen replace the public list's spelling ("NVIDIA Corporation", "Advanced Micro
// Devices, Inc. [AMD/ATI]", "Intel Corporation"), and each id still has one row.
TEST(PciVendorNames, FixedNamesWinOverThePublicListSpelling)
{
    const std::pair<uint16_t, const char*> fixed[] = {{0x10DE, "NVIDIA"}, {0x1002, "AMD/ATI"}, {0x8086, "Intel"}};
    for (const auto& [id, name] : fixed) {
        EXPECT_STREQ(pciVendorName(id), name);
        int rows = 0;
        for (const PciVendorRow& row : pciVendorTable()) rows += row.vendorId == id;
        EXPECT_EQ(rows, 1) << name;
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
