#include <gtest/gtest.h>

#include "kalidor/vendors/amd_sysfs_values.h"

namespace {

using namespace Kalidornm;

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
