#include <gtest/gtest.h>

#include "compute/opencl_records.h"

namespace {

using compute::ClExtensionList;
using compute::splitClExtensions;
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

// pocl ends its device string with cl_khr_fp64 and its platform string with cl_pocl_content_size, no blank
// behind either: the JSON report's list must still hold them.
TEST(OpenClTokeniser, TheReportedListKeepsEveryNameTheDriverGives) {
    EXPECT_EQ(splitClExtensions("cl_khr_icd cl_pocl_content_size"),
              (ClExtensionList{"cl_khr_icd", "cl_pocl_content_size"}));
    EXPECT_EQ(splitClExtensions("  cl_a   ab\tcl_b\ncl_c "), (ClExtensionList{"cl_a", "ab", "cl_b", "cl_c"}));
    EXPECT_EQ(splitClExtensions((std::string(300, 'q') + " x").c_str()), (ClExtensionList{std::string(300, 'q'), "x"}));
    EXPECT_TRUE(splitClExtensions("   ").empty());
    EXPECT_TRUE(splitClExtensions(nullptr).empty());
}

}  // namespace
