#include <gtest/gtest.h>

#include "kalidor/vendors/amd_sysfs_values.h"

namespace {

using namespace Kalidornm;

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

TEST(DpmTable, TheStarredLineIsTheCurrentLevel) {
    const auto table = parseDpmTable("0: 500Mhz \n1: 1815Mhz *\n2: 2475Mhz \n");
    ASSERT_TRUE(table);
    ASSERT_EQ(table->size(), 3u);
    EXPECT_FLOAT_EQ((*table)[2].mhz, 2475.0f);
    EXPECT_EQ(currentDpmLevel(*table), 1u);

    // The sleep line of some chips has no level number and is not a level.
    const auto withSleep = parseDpmTable("S: 19Mhz *\n0: 615Mhz\n1: 1200Mhz\n");
    ASSERT_TRUE(withSleep);
    EXPECT_EQ(withSleep->size(), 2u);
    EXPECT_FALSE(currentDpmLevel(*withSleep));

    const auto unmarked = parseDpmTable("0: 500Mhz\n1: 2475Mhz\n");
    ASSERT_TRUE(unmarked);
    EXPECT_FALSE(currentDpmLevel(*unmarked));
}

TEST(DpmTable, MalformedTablesAreRefused) {
    for (const char* bad : {"", "\n\n", "garbage\n", "0: Mhz *\n", "0: 500\n", "0: -500Mhz\n", "0: 500MHz\nxyz\n",
                            "0: 99999999999999999999Mhz *\n", "0: 500000Mhz\n"})
        EXPECT_FALSE(parseDpmTable(bad)) << '"' << bad << '"';
}

}  // namespace
