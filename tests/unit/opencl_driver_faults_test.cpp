#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "compute/driver_limits.h"
#include "compute/opencl_entry_points.h"
#include "tests/unit/compute_fake_fixtures.h"

// Discovery against an OpenCL driver that fails, lies about counts and sizes, or hands out odd texts. Each
// mode is one the batch run goes through as well (fake_driver_batch_test.cpp); here the records are checked.
namespace {

using namespace compute;
using ::testing::ElementsAre;
using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

const ClPlatformRecord& platform(size_t index) { return clPlatforms().at(index); }

TEST_F(OpenClFakeDriver, AFailingCountOrHandleFetchListsNothingOfWhatItWrote) {
    // Every call but the platform list fails after writing 3 into its count and junk into its buffers.
    discover(fake_cl::mode::kErrors);
    EXPECT_THAT(log.messages(), ElementsAre("Found 2 OpenCL-capable platform."));
    ASSERT_EQ(getClPlatformCount(), 2u);
    for (const ClPlatformRecord& p : clPlatforms()) {
        EXPECT_TRUE(p.name.empty() && p.vendor.empty() && p.version.empty() && p.profile.empty());
        EXPECT_EQ(p.platformId, nullptr);
        EXPECT_THAT(p.reportedExtensions, IsEmpty());
        EXPECT_EQ(p.deviceCount, 0u);
        EXPECT_THAT(p.devices, IsEmpty());
    }

    // The counts answer but handing out the handles fails; the junk handles are never passed back.
    releaseOpenCl();
    log.clear();
    discover(fake_cl::mode::kIdFetchFails);
    EXPECT_THAT(log.messages(), ElementsAre("Found 0 OpenCL-capable platform."));
    EXPECT_EQ(getClPlatformCount(), 0u);
    EXPECT_FALSE(clModule().isLoaded());
}

TEST_F(OpenClFakeDriver, HugeCountsAndSizesAreCappedBeforeAnythingIsAllocated) {
    for (const char* mode : {fake_cl::mode::kHugeCounts, fake_cl::mode::kManyCounts}) {
        SCOPED_TRACE(mode);
        log.clear();
        discover(mode);
        const std::string claimed = std::string(mode) == fake_cl::mode::kHugeCounts ? "4294967295" : "100000000";
        EXPECT_THAT(log.messages(),
                    ElementsAre("Found 2 OpenCL-capable platform.",
                                "The OpenCL driver reported " + claimed + " platforms; only the first 64 are read.",
                                "Found 2 OpenCL-capable devices for platform Fake Platform A.",
                                "The OpenCL driver reported " + claimed +
                                    " devices for platform Fake Platform A; only the first 256 are read."));
        // Only the handles the driver filled in make records.
        ASSERT_EQ(getClPlatformCount(), 2u);
        ASSERT_THAT(platform(0).devices, SizeIs(2));
        EXPECT_EQ(platform(0).name, "Fake Platform A");
        EXPECT_THAT(platform(0).extensions, IsEmpty());  // an extension string of 2^40 bytes is not fetched
        const ClDeviceRecord& device = platform(0).devices[0];
        EXPECT_EQ(device.type, fake_cl::kDevice0Type);
        EXPECT_THAT(device.reportedExtensions, IsEmpty());
        EXPECT_THAT(device.maxWorkItemSizes, Each(0u));  // nor are 0xFFFFFFFF work-item dimensions
        EXPECT_FALSE(deviceHasExtension(&device, "cl_nv_device_attribute_query"));
        releaseOpenCl();
    }
}

TEST_F(OpenClFakeDriver, DeviceQueriesThatFailKeepTheDeviceWithEmptyFields) {
    discover(fake_cl::mode::kDeviceErrors);
    ASSERT_THAT(platform(0).devices, SizeIs(2));
    for (const ClDeviceRecord& device : platform(0).devices) {
        EXPECT_NE(device.deviceId, nullptr);
        EXPECT_TRUE(device.name.empty() && device.vendor.empty() && device.version.empty());
        EXPECT_EQ(device.type, 0u);
        EXPECT_EQ(device.globalMemSize, 0u);
        EXPECT_THAT(device.maxWorkItemSizes, Each(0u));
        EXPECT_EQ(device.localMemType, "Global");
        EXPECT_THAT(device.extensions, IsEmpty());
        EXPECT_THAT(clDetailLines(platform(0), device), Not(IsEmpty()));
    }
}

TEST_F(OpenClFakeDriver, NoDevicesAndEmptyExtensionStringsAreListedAsSuch) {
    discover(fake_cl::mode::kZeroCounts);
    EXPECT_THAT(log.messages(), ElementsAre("Found 2 OpenCL-capable platform."));
    ASSERT_EQ(getClPlatformCount(), 2u);
    EXPECT_EQ(platform(0).name, "Fake Platform A");
    EXPECT_THAT(platform(0).reportedExtensions, IsEmpty());
    EXPECT_THAT(platform(0).devices, IsEmpty());
    EXPECT_FALSE(hasAnyClDevice());
}

TEST_F(OpenClFakeDriver, UnterminatedTextsEndInsideTheBufferTheDriverWasGiven) {
    discover(fake_cl::mode::kUnterminated);
    // The driver repeats its text over all 1,023 bytes it is given; the record keeps the first 127.
    std::string repeated;
    while (repeated.size() < kClMaxTextLength) repeated += "Fake Platform A";
    EXPECT_EQ(platform(0).name, repeated.substr(0, kClMaxTextLength));
    // The extension string arrives without its terminator: its last name has no blank behind it.
    EXPECT_THAT(platform(0).extensions, ElementsAre("cl_khr_icd", "cl_khr_fp64"));
    EXPECT_THAT(platform(0).reportedExtensions, ElementsAre("cl_khr_icd", "ab", "cl_khr_fp64", "cl_platform_tail"));
    ASSERT_THAT(platform(0).devices, SizeIs(2));
    EXPECT_EQ(platform(0).devices[1].name.size(), kClMaxTextLength);
}

TEST_F(OpenClFakeDriver, TextsLongerThanTheQueryBufferLeaveTheFieldEmptyAndTheDeviceListed) {
    discover(fake_cl::mode::kLongStrings);
    EXPECT_THAT(log.messages(), ElementsAre("Found 2 OpenCL-capable platform.",
                                            "Found 2 OpenCL-capable devices for platform ."));
    EXPECT_TRUE(platform(0).name.empty());
    EXPECT_EQ(platform(0).vendor, "Fake Vendor");
    ASSERT_THAT(platform(0).devices, SizeIs(2));
    const ClDeviceRecord& device = platform(0).devices[0];
    EXPECT_TRUE(device.name.empty());
    // The 200,000-byte extension string is read whole: the listed names are cut to 127, the reported kept.
    ASSERT_THAT(device.extensions, SizeIs(fake_cl::kLongExtensionCount));
    EXPECT_EQ(device.extensions[0].size(), kClMaxTextLength);
    ASSERT_THAT(device.reportedExtensions, SizeIs(fake_cl::kLongExtensionCount));
    EXPECT_EQ(device.reportedExtensions[0].size(), fake_cl::kLongExtensionLength);
}

TEST_F(OpenClFakeDriver, SpecialCharactersAndBytesThatAreNotUtf8AreKeptAsGiven) {
    discover(fake_cl::mode::kSpecialChars);
    EXPECT_EQ(platform(0).name, fake_cl::kSpecialName);
    ASSERT_THAT(platform(0).devices, SizeIs(2));
    EXPECT_EQ(platform(0).devices[0].name, fake_cl::kSpecialName);
    EXPECT_THAT(platform(0).devices[0].extensions, ElementsAre("cl_khr_<&\">", "cl_\xff\xfe_vendor", "cl_plain"));
    const std::vector<std::string> lines = clDetailLines(0, 0);
    ASSERT_GE(lines.size(), 2u);
    EXPECT_EQ(lines[1], std::string("- CL_PLATFORM_NAME: ") + fake_cl::kSpecialName);
}

}  // namespace
