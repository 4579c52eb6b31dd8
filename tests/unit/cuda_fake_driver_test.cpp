#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/unit/compute_fake_fixtures.h"

namespace {

using namespace compute;
using ::testing::ElementsAre;

TEST_F(CudaFakeDriver, ADeviceWithoutPropertyBlockKeepsItsOtherFields) {
    EXPECT_TRUE(discover(nullptr));
    EXPECT_THAT(log.messages(), ElementsAre("Found 2 CUDA-capable devices."));
    ASSERT_EQ(getCudaDeviceCount(), 2);
    ASSERT_EQ(cudaDevices().size(), 2u);

    const CudaDeviceRecord& first = cudaDevices()[0];
    EXPECT_EQ(first.name, "Fake CUDA Device 0");
    EXPECT_EQ(first.totalMemory, fake_cuda::totalMemory(0));  // 6 GiB: needs the 64-bit call
    EXPECT_EQ(first.maxThreadsPerBlock, 1024);
    EXPECT_THAT(first.maxThreadsDim, ElementsAre(1, 2, 3));
    EXPECT_THAT(first.maxGridSize, ElementsAre(4, 5, 6));
    EXPECT_EQ(first.sharedMemPerBlock, 49152);
    EXPECT_EQ(first.totalConstantMemory, 65536);
    EXPECT_EQ(first.simdWidth, 32);
    EXPECT_EQ(first.memPitch, 2147483647);
    EXPECT_EQ(first.regsPerBlock, 65535);
    EXPECT_EQ(first.textureAlign, 512);
    // The clock attribute is read last and wins over the property block's 700000.
    EXPECT_EQ(first.clockRate, fake_cuda::kAttributeClockKhz);
    EXPECT_EQ(first.computeMajor, 8);
    EXPECT_EQ(first.computeMinor, 6);
    EXPECT_EQ(first.warpSize, 32);
    EXPECT_EQ(first.multiprocessorCount, fake_cuda::multiprocessors(0));

    const CudaDeviceRecord& second = cudaDevices()[1];
    EXPECT_EQ(second.name, "Fake CUDA Device 1");
    EXPECT_EQ(second.totalMemory, fake_cuda::totalMemory(1));
    EXPECT_EQ(second.maxThreadsPerBlock, 0);
    EXPECT_THAT(second.maxGridSize, ElementsAre(0, 0, 0));
    EXPECT_EQ(second.textureAlign, 0);
    EXPECT_EQ(second.clockRate, fake_cuda::kAttributeClockKhz);
    EXPECT_EQ(second.computeMajor, 8);
    EXPECT_EQ(second.computeMinor, 9);
    EXPECT_EQ(second.warpSize, 32);
    EXPECT_EQ(second.multiprocessorCount, fake_cuda::multiprocessors(1));

    freeCudaDevices();
    EXPECT_EQ(getCudaDeviceCount(), 0);
    EXPECT_TRUE(cudaDevices().empty());
}

TEST_F(CudaFakeDriver, AFailingInitAndTheToolkitStubListNothingAndLogNothing) {
    for (const char* scenario : {"init_fails", "stub"}) {
        EXPECT_FALSE(discover(scenario)) << scenario;
        EXPECT_EQ(getCudaDeviceCount(), 0) << scenario;
        EXPECT_TRUE(cudaDevices().empty()) << scenario;
    }
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(CudaFakeDriver, ALibraryWithoutDevicesLogsZeroAndHasNoArray) {
    EXPECT_TRUE(discover("no_device"));
    EXPECT_THAT(log.messages(), ElementsAre("Found 0 CUDA-capable devices."));
    EXPECT_EQ(getCudaDeviceCount(), 0);
    EXPECT_TRUE(cudaDevices().empty());
}

TEST_F(CudaFakeDriver, AMissingLibraryIsNamedInTheLog) {
    EXPECT_FALSE(discoverCuda(log.log(), "libcuda-absent.so.1"));
    EXPECT_THAT(log.messages(), ElementsAre("Could not find libcuda-absent.so.1."));
    EXPECT_EQ(getCudaDeviceCount(), 0);
}

}  // namespace
