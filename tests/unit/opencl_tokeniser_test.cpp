#include <gtest/gtest.h>

#include "compute/opencl_records.h"

namespace {

using compute::ClExtensionList;
using compute::tokeniseClExtensions;

TEST(OpenClTokeniser, KeepsOnlyBlankEndedNamesOfThreeCharactersOrMore) {
    EXPECT_EQ(tokeniseClExtensions("cl_a cl_b "), (ClExtensionList{"cl_a", "cl_b"}));
    // The last name has no blank behind it and is lost.
    EXPECT_EQ(tokeniseClExtensions("cl_a cl_b"), (ClExtensionList{"cl_a"}));
    // Two letters, and the empty name of a double blank, do not enter the list; three letters do.
    EXPECT_EQ(tokeniseClExtensions("ab  abc x "), (ClExtensionList{"abc"}));
    EXPECT_TRUE(tokeniseClExtensions("").empty());
    EXPECT_TRUE(tokeniseClExtensions(nullptr).empty());
    EXPECT_TRUE(tokeniseClExtensions("no_blank_at_all").empty());
}

TEST(OpenClTokeniser, CutsLongNamesTo127Characters) {
    const std::string longName(300, 'q');
    const ClExtensionList names = tokeniseClExtensions((longName + " cl_next ").c_str());
    ASSERT_EQ(names.size(), 2u);
    EXPECT_EQ(names[0], std::string(127, 'q'));
    EXPECT_EQ(names[1], "cl_next");
}

}  // namespace
