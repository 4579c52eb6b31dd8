// How the OpenCL demos size their kernels' ranges and choose their platform and device.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "demos/harness/demo_settings.h"
#include "demos/opencl/cl_device_choice.h"
#include "demos/opencl/cl_work_sizes.h"
#include "demos/opencl/julia_cl.h"

namespace {

using compute::ClDeviceRecord;
using compute::ClPlatformRecord;

TEST(ClWorkSizes, ExplicitGroupsCoverTheProblemInWholeGroupsForAnyDriverAnswer) {
    for (size_t answer : {0, 1, 2, 16, 31, 32, 100, 256, 1000, 1024, 4096}) {
        for (size_t width : {1, 17, 600, 1000}) {
            for (size_t height : {1, 29, 512}) {
                SCOPED_TRACE(::testing::Message() << "answer " << answer << ", " << width << "x" << height);
                const ClRange range = demoRange2d(width, height, true, answer);
                ASSERT_NE(range.localSizes(), nullptr);
                ASSERT_GE(range.local[0], 1u);
                ASSERT_GE(range.local[1], 1u);
                EXPECT_LE(range.local[0] * range.local[1], std::max<size_t>(answer, 1));
                for (int d = 0; d < 2; ++d) {
                    const size_t size = d == 0 ? width : height;
                    EXPECT_EQ(range.global[d] % range.local[d], 0u);
                    EXPECT_GE(range.global[d], size);
                    EXPECT_LT(range.global[d] - size, range.local[d]);
                }
            }
        }
    }
}

TEST(ClWorkSizes, AnAnswerBelowThirtyTwoStillGivesAWholeGroup) {
    // A 32nd of such an answer is no work item at all along X.
    size_t x = 0, y = 0;
    splitWorkGroup(16, &x, &y);
    EXPECT_EQ(x, 1u);
    EXPECT_EQ(y, 16u);
    splitWorkGroup(1, &x, &y);
    EXPECT_EQ(x, 1u);
    EXPECT_EQ(y, 1u);
}

TEST(ClWorkSizes, AThousandParticlesOnGroupsOf256RunWithoutPadding) {
    const ClRange range = demoRange1d(1000, true, 256);
    EXPECT_EQ(range.dimensions, 1u);
    EXPECT_EQ(range.local[0], 8u);
    EXPECT_EQ(range.global[0], 1000u);
    // A million on a device answering 4096 is padded to the next group of 128.
    EXPECT_EQ(demoRange1d(1000000, true, 4096).global[0], 1000064u);
}

TEST(ClWorkSizes, WithoutExplicitGroupsTheDriverChoosesAndNothingIsPadded) {
    const ClRange range2d = demoRange2d(600, 37, false, 4096);
    EXPECT_EQ(range2d.localSizes(), nullptr);
    EXPECT_EQ(range2d.global[0], 600u);
    EXPECT_EQ(range2d.global[1], 37u);
    const ClRange range1d = demoRange1d(999, false, 256);
    EXPECT_EQ(range1d.localSizes(), nullptr);
    EXPECT_EQ(range1d.global[0], 999u);
}

ClPlatformRecord platformWith(std::initializer_list<uint64_t> types, const char* version = "OpenCL 3.0") {
    ClPlatformRecord platform;
    platform.version = version;
    for (uint64_t type : types) {
        ClDeviceRecord device;
        device.type = type;
        platform.devices.push_back(device);
    }
    platform.deviceCount = uint32_t(platform.devices.size());
    return platform;
}

TEST(ClDeviceChoice, DemosTakeTheFirstPlatformWithTheTypeAndJuliaOnlyTheChosenOne) {
    // A device reporting CPU and GPU at once counts as neither.
    const std::vector<ClPlatformRecord> platforms = {platformWith({6}), platformWith({4, 8}), platformWith({2})};
    EXPECT_EQ(firstPlatformWithDeviceType(platforms, kClDeviceTypeGpu), 1);
    EXPECT_EQ(firstPlatformWithDeviceType(platforms, kClDeviceTypeCpu), 2);
    EXPECT_EQ(firstPlatformWithDeviceType({platformWith({6})}, kClDeviceTypeCpu), -1);
    EXPECT_EQ(chosenPlatformWithDeviceType(platforms, 2, kClDeviceTypeCpu), 2);
    EXPECT_EQ(chosenPlatformWithDeviceType(platforms, 0, kClDeviceTypeCpu), -1);
    EXPECT_EQ(chosenPlatformWithDeviceType(platforms, 3, kClDeviceTypeCpu), -1);
    EXPECT_EQ(chosenPlatformWithDeviceType({}, 0, kClDeviceTypeGpu), -1);
}

TEST(ClDeviceChoice, TheCommandLinesIndexWinsAndAnIndexOutsideTheListMeansTheFirst) {
    DemoSettings settings;
    settings.clDeviceType = kClDeviceTypeGpu;
    settings.clGpuDeviceIndex = 2;
    settings.clCpuDeviceIndex = 1;
    EXPECT_EQ(demoDeviceIndex(settings, 3), 2u);
    settings.clDeviceType = kClDeviceTypeCpu;
    EXPECT_EQ(demoDeviceIndex(settings, 3), 1u);
    settings.clDeviceIndexForced = true;
    settings.clDeviceIndex = 0;
    EXPECT_EQ(demoDeviceIndex(settings, 3), 0u);
    for (int32_t outside : {3, 50, -1}) {
        settings.clDeviceIndex = outside;
        EXPECT_EQ(demoDeviceIndex(settings, 3), 0u) << outside;
    }
}

TEST(ClDeviceChoice, OnlyNvidiasCompilerGetsRelaxedMaths) {
    EXPECT_STREQ(demoBuildOptions("OpenCL 3.0 CUDA 12.2.148"), "-cl-fast-relaxed-math");
    EXPECT_STREQ(demoBuildOptions("OpenCL 1.0 NVIDIA"), "-cl-fast-relaxed-math");
    EXPECT_EQ(demoBuildOptions("OpenCL 3.0 PoCL 3.1+debian  Linux"), nullptr);
    EXPECT_EQ(demoBuildOptions(""), nullptr);
}

TEST(JuliaMotion, MuGlidesOntoItsTargetAndThenHeadsForANewRandomOne) {
    std::srand(3);
    JuliaAnimation animation;
    const float target[4] = {animation.muTo[0], animation.muTo[1], animation.muTo[2], animation.muTo[3]};
    float before[4] = {};
    int frames = 0;
    while (animation.muFrom[1] != target[1] && frames < 110) {
        std::copy(animation.mu, animation.mu + 4, before);
        animation.advance();
        ++frames;
    }
    EXPECT_GE(frames, 100);  // about a hundred frames from one target to the next
    EXPECT_LE(frames, 101);
    for (int i = 0; i < 4; ++i) {
        EXPECT_NEAR(before[i], target[i], 0.02f) << i;
        EXPECT_EQ(animation.mu[i], target[i]) << i;  // no jump when the target changes
        EXPECT_TRUE(animation.muTo[i] >= 0.0f && animation.muTo[i] < 1.0f) << animation.muTo[i];
    }
    EXPECT_EQ(animation.colorTo[3], 1.0f);
}

}  // namespace
