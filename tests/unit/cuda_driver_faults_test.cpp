#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/unit/compute_fake_fixtures.h"

// Discovery against a CUDA driver that fails, lies about its count or hands out odd names.
namespace {

using namespace compute;
using ::testing::ElementsAre;
using ::testing::Each;
using ::testing::IsEmpty;

TEST_F(CudaFakeDriver, AFailingOrNegativeCountListsNoDeviceWhateverItWrote) {
    // cuDeviceGetCount fails after writing 3; a negative count is no count either.
    for (const char* mode : {fake_cuda::mode::kErrors, fake_cuda::mode::kNegativeCount}) {
        SCOPED_TRACE(mode);
        EXPECT_TRUE(discover(mode));
        EXPECT_EQ(getCudaDeviceCount(), 0);
        EXPECT_THAT(cudaDevices(), IsEmpty());
    }
    EXPECT_THAT(log.messages(), IsEmpty());
}

TEST_F(CudaFakeDriver, HugeCountsAreCappedBeforeTheRecordsAreAllocated) {
    for (const char* mode : {fake_cuda::mode::kHugeCounts, fake_cuda::mode::kManyCounts}) {
        SCOPED_TRACE(mode);
        log.clear();
        EXPECT_TRUE(discover(mode));
        const std::string claimed = std::string(mode) == fake_cuda::mode::kHugeCounts ? "2147483647" : "100000000";
        EXPECT_THAT(log.messages(),
                    ElementsAre("Found 64 CUDA-capable devices.",
                                "The CUDA driver reported " + claimed + " devices; only the first 64 are read."));
        ASSERT_EQ(getCudaDeviceCount(), 64);
        ASSERT_EQ(cudaDevices().size(), 64u);
        EXPECT_EQ(cudaDevices()[63].name, "Fake CUDA Device 63");
        freeCudaDevices();
    }
}

TEST_F(CudaFakeDriver, QueriesThatFailLeaveTheRecordZeroWhateverTheyWrote) {
    EXPECT_TRUE(discover(fake_cuda::mode::kDeviceErrors));
    ASSERT_EQ(cudaDevices().size(), 2u);
    for (const CudaDeviceRecord& device : cudaDevices()) {
        EXPECT_TRUE(device.name.empty());
        EXPECT_EQ(device.totalMemory, 0u);
        EXPECT_EQ(device.maxThreadsPerBlock, 0);
        EXPECT_THAT(device.maxGridSize, Each(0));
        EXPECT_EQ(device.computeMajor, 0);
        EXPECT_EQ(device.computeMinor, 0);
        EXPECT_EQ(device.clockRate, 0);
        EXPECT_EQ(device.warpSize, 0);
    }
}

TEST_F(CudaFakeDriver, NamesEndInsideTheBufferTheDriverWasGivenAndKeepTheirBytes) {
    EXPECT_TRUE(discover(fake_cuda::mode::kUnterminated));
    ASSERT_EQ(cudaDevices().size(), 2u);
    EXPECT_EQ(cudaDevices()[0].name, std::string(kCudaNameSize - 1, 'U'));

    EXPECT_TRUE(discover(fake_cuda::mode::kSpecialChars));
    ASSERT_EQ(cudaDevices().size(), 2u);
    EXPECT_EQ(cudaDevices()[1].name, fake_cuda::kSpecialName);
}

}  // namespace
