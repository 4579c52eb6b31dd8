// When an OpenCL Start warns that GL interop is off: which rows, which devices of platform 0, and the one
// platform that is taken on trust.
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "app/demo_launch.h"
#include "compute/opencl_records.h"

namespace {

using compute::ClDeviceRecord;
using compute::ClPlatformRecord;

int gLoads = 0;
bool sharingLoads() { return ++gLoads, true; }
bool sharingMissing() { return ++gLoads, false; }

ClPlatformRecord platform(const char* version, std::vector<std::pair<uint64_t, const char*>> devices) {
    ClPlatformRecord p;
    p.version = version;
    for (auto [type, extension] : devices) {
        ClDeviceRecord d;
        d.type = type;
        d.extensions = {extension};
        p.devices.push_back(d);
    }
    return p;
}

TEST(GlInteropWarning, OnlyJuliaAndParticlesWarnAndOnlyForADeviceOfPlatformZeroThatCannotShare) {
    DemoSettings asked;
    asked.clGlInterop = true;
    const std::vector<ClPlatformRecord> noSharing = {platform("OpenCL 3.0", {{4, "cl_khr_fp64"}, {2, "cl_khr_icd"}})};
    for (int row : {0, 1, 2, 3}) EXPECT_TRUE(glInteropWarningDue(row, asked, noSharing, sharingLoads)) << row;
    for (int row : {4, 5, 6, 7, -1, 8}) EXPECT_FALSE(glInteropWarningDue(row, asked, noSharing, sharingLoads)) << row;
    EXPECT_FALSE(glInteropWarningDue(0, DemoSettings{}, noSharing, sharingLoads));

    // A device that lists sharing warns only when the library lacks the sharing entry points.
    const std::vector<ClPlatformRecord> sharing = {
        platform("OpenCL 3.0", {{4, "cl_khr_gl_sharing"}, {2, "cl_khr_gl_sharing"}})};
    EXPECT_FALSE(glInteropWarningDue(0, asked, sharing, sharingLoads));
    EXPECT_TRUE(glInteropWarningDue(3, asked, sharing, sharingMissing));

    // A device reporting GPU and accelerator bits is no GPU, and the second platform is never looked at; without
    // a device of the row's type the library is not asked.
    const std::vector<ClPlatformRecord> noPlainGpu = {platform("OpenCL 3.0", {{4 | 8, ""}, {2, ""}}),
                                                      platform("OpenCL 3.0", {{4, ""}})};
    gLoads = 0;
    EXPECT_FALSE(glInteropWarningDue(0, asked, noPlainGpu, sharingMissing));
    EXPECT_FALSE(glInteropWarningDue(0, asked, {}, sharingMissing));
    EXPECT_EQ(gLoads, 0);
    EXPECT_TRUE(glInteropWarningDue(1, asked, noPlainGpu, sharingMissing));

    // The first ATI Stream platform is trusted for its GPUs, not its CPUs.
    const std::vector<ClPlatformRecord> stream = {platform("OpenCL 1.0 ATI-Stream-v2.0.0", {{4, ""}, {2, ""}})};
    EXPECT_FALSE(glInteropWarningDue(2, asked, stream, sharingMissing));
    EXPECT_TRUE(glInteropWarningDue(3, asked, stream, sharingMissing));
}

}  // namespace
