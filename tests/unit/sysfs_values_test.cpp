#include <gtest/gtest.h>

#include <cstdint>

#include "kalidor/platform/pci_address.h"
#include "kalidor/platform/sysfs_values.h"

namespace {

using namespace Kalidornm;

TEST(PciAddressText, ParsesTheKernelsSpellingAndRefusesTheRest) {
    const auto address = parsePciAddress("0000:0a:1f.7");
    ASSERT_TRUE(address);
    EXPECT_EQ(address->bus, 0x0Au);
    EXPECT_EQ(address->device, 0x1Fu);
    EXPECT_EQ(address->function, 7u);
    EXPECT_EQ(address->text(), "0000:0a:1f.7");
    // Domains behind some bridges have five digits; the text keeps them.
    EXPECT_EQ(parsePciAddress("10000:e1:00.0")->text(), "10000:e1:00.0");
    EXPECT_NE(*parsePciAddress("0000:03:00.0"), *parsePciAddress("0001:03:00.0"));
    EXPECT_LT(*parsePciAddress("0000:03:00.0"), *parsePciAddress("0000:0a:00.0"));
    for (const char* bad : {"", "0000:03:00", "0000:03:20.0", "0000:03:00.8", "000:03:00.0", "0000:3:00.0",
                            "0000:03:00.0 ", "pci0000:00", "0000:0g:00.0", "123456789:00:00.0"})
        EXPECT_FALSE(parsePciAddress(bad)) << '"' << bad << '"';
}

TEST(SysfsHex, AcceptsThePciAttributesAndNothingOutOfRange) {
    EXPECT_EQ(parseSysfsHex("0x10de\n", 0xFFFF), 0x10DEu);
    EXPECT_EQ(parseSysfsHex("0x030000", 0xFFFFFF), 0x030000u);
    EXPECT_EQ(parseSysfsHex("8000000", 0xFFFFFFFF), 0x8000000u);  // memory block size, written without 0x
    for (const char* bad : {"", "0x", "10de0", "0x1 0", "-0x10", "vendor", "0x123456789"})
        EXPECT_FALSE(parseSysfsHex(bad, 0xFFFF)) << '"' << bad << '"';
}

TEST(SysfsInteger, AcceptsWhatTheDriverWritesAndNothingElse) {
    EXPECT_EQ(parseSysfsInteger("45000\n"), 45000);
    EXPECT_EQ(parseSysfsInteger(" -5 \n"), -5);
    EXPECT_EQ(parseSysfsInteger("9223372036854775807"), INT64_MAX);
    for (const char* bad : {"", "\n", "-", "abc", "12abc", "1 2", "4.5", "0x10", "99999999999999999999999",
                            "9223372036854775808"})
        EXPECT_FALSE(parseSysfsInteger(bad)) << '"' << bad << '"';
    EXPECT_EQ(parseSysfsInteger("255", 0, 255), 255);
    EXPECT_FALSE(parseSysfsInteger("256", 0, 255));
    EXPECT_FALSE(parseSysfsInteger("-1", 0, 255));
}

// The driver writes -1 and 2^64 - 1 into mem_info_vram_total when it cannot tell; neither is a size.
TEST(SysfsUnsigned, NegativeAndAllOnesSizesAreNoReading) {
    constexpr uint64_t kLimit = uint64_t(1) << 44;
    EXPECT_EQ(parseSysfsUnsigned("17163091968\n", kLimit), 17163091968u);
    EXPECT_FALSE(parseSysfsUnsigned("-1", kLimit));
    EXPECT_FALSE(parseSysfsUnsigned("18446744073709551615", kLimit));
    EXPECT_FALSE(parseSysfsUnsigned("18446744073709551616", UINT64_MAX));
    EXPECT_FALSE(parseSysfsUnsigned("+5", kLimit));
}

TEST(Uevent, TheValueOfAKeyIsTheRestOfItsLine) {
    const char* uevent = "DRIVER=amdgpu\nPCI_CLASS=30000\nPCI_ID=1002:73BF\n";
    EXPECT_EQ(ueventValue(uevent, "DRIVER"), "amdgpu");
    EXPECT_EQ(ueventValue(uevent, "PCI_ID"), "1002:73BF");
    EXPECT_EQ(ueventValue(uevent, "PCI"), "");
    EXPECT_EQ(ueventValue("XDRIVER=x\n", "DRIVER"), "");
    EXPECT_EQ(ueventValue("", "DRIVER"), "");
}

}  // namespace
