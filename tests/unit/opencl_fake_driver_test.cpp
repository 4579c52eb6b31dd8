#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "compute/opencl_entry_points.h"
#include "tests/unit/compute_fake_fixtures.h"

namespace {

using namespace compute;
using ::testing::ElementsAre;
using fake_cl::numericValue;

long indexOf(const std::vector<std::string>& lines, const std::string& line) {
    const auto at = std::find(lines.begin(), lines.end(), line);
    return at == lines.end() ? -1 : long(at - lines.begin());
}

TEST_F(OpenClFakeDriver, PlatformsStandInDriverOrderAndAPlatformWithoutDevicesIsKept) {
    discover();
    EXPECT_THAT(log.messages(), ElementsAre("Found 2 OpenCL-capable platform.",
                                            "Found 2 OpenCL-capable devices for platform Fake Platform A."));
    ASSERT_EQ(getClPlatformCount(), 2u);
    const ClPlatformRecord& first = clPlatforms()[0];
    EXPECT_EQ(first.name, "Fake Platform A");
    EXPECT_EQ(first.vendor, "Fake Vendor");
    EXPECT_EQ(first.profile, "FULL_PROFILE");
    EXPECT_EQ(first.version, "OpenCL 1.2 Fake");
    // "ab", the empty name of the double blank and the unterminated last name are all dropped.
    EXPECT_THAT(first.extensions, ElementsAre("cl_khr_icd", "cl_khr_fp64"));
    EXPECT_EQ(first.deviceCount, 2u);
    EXPECT_NE(getClPlatformId(0), nullptr);
    EXPECT_NE(getClPlatformId(1), getClPlatformId(0));
    EXPECT_EQ(getClPlatformId(2), nullptr);

    const ClPlatformRecord& second = clPlatforms()[1];
    EXPECT_EQ(second.name, "Fake Platform B");
    EXPECT_EQ(second.deviceCount, 0u);
    EXPECT_TRUE(second.devices.empty());
    EXPECT_TRUE(hasAnyClDevice());
}

TEST_F(OpenClFakeDriver, EachDeviceFieldComesFromItsOwnQueryAtItsOwnWidth) {
    discover();
    const ClDeviceRecord& odd = clPlatforms()[0].devices[0];
    EXPECT_NE(odd.deviceId, nullptr);
    EXPECT_EQ(std::string(odd.name), std::string(127, 'N'));  // a 200-character name keeps 127
    EXPECT_EQ(odd.vendor, "Fake Device Vendor");
    EXPECT_EQ(odd.driverVersion, "9.9");
    EXPECT_EQ(odd.profile, "EMBEDDED_PROFILE");
    EXPECT_EQ(odd.version, "OpenCL 1.1 Fake");
    EXPECT_EQ(odd.type, fake_cl::kDevice0Type);
    EXPECT_EQ(odd.vendorId, numericValue(0, CL_DEVICE_VENDOR_ID));
    EXPECT_EQ(odd.maxComputeUnits, numericValue(0, CL_DEVICE_MAX_COMPUTE_UNITS));
    EXPECT_EQ(odd.maxClockMhz, numericValue(0, CL_DEVICE_MAX_CLOCK_FREQUENCY));
    EXPECT_EQ(odd.maxWorkItemDimensions, 4u);
    // Four dimensions do not fit the three-slot buffer; the first three are still kept.
    EXPECT_THAT(odd.maxWorkItemSizes, ElementsAre(11u, 22u, 33u));
    EXPECT_EQ(odd.maxWorkGroupSize, numericValue(0, CL_DEVICE_MAX_WORK_GROUP_SIZE));
    EXPECT_EQ(odd.addressBits, numericValue(0, CL_DEVICE_ADDRESS_BITS));
    EXPECT_EQ(odd.maxMemAllocSize, numericValue(0, CL_DEVICE_MAX_MEM_ALLOC_SIZE));
    EXPECT_EQ(odd.globalMemSize, numericValue(0, CL_DEVICE_GLOBAL_MEM_SIZE));
    EXPECT_EQ(odd.maxParameterSize, numericValue(0, CL_DEVICE_MAX_PARAMETER_SIZE));
    EXPECT_EQ(odd.globalMemCachelineSize, numericValue(0, CL_DEVICE_GLOBAL_MEM_CACHELINE_SIZE));
    EXPECT_EQ(odd.globalMemCacheSize, numericValue(0, CL_DEVICE_GLOBAL_MEM_CACHE_SIZE));
    EXPECT_EQ(odd.errorCorrectionSupport, numericValue(0, CL_DEVICE_ERROR_CORRECTION_SUPPORT));
    EXPECT_EQ(odd.localMemType, "Global");
    EXPECT_EQ(odd.localMemSize, numericValue(0, CL_DEVICE_LOCAL_MEM_SIZE));
    EXPECT_EQ(odd.maxConstantBufferSize, numericValue(0, CL_DEVICE_MAX_CONSTANT_BUFFER_SIZE));
    EXPECT_TRUE(odd.nativeKernels);
    EXPECT_EQ(odd.queueProperties, uint64_t(CL_QUEUE_PROFILING_ENABLE));
    EXPECT_EQ(odd.imageSupport, numericValue(0, CL_DEVICE_IMAGE_SUPPORT));
    EXPECT_EQ(odd.maxReadImageArgs, numericValue(0, CL_DEVICE_MAX_READ_IMAGE_ARGS));
    EXPECT_EQ(odd.maxWriteImageArgs, numericValue(0, CL_DEVICE_MAX_WRITE_IMAGE_ARGS));
    EXPECT_EQ(odd.image2dMaxWidth, numericValue(0, CL_DEVICE_IMAGE2D_MAX_WIDTH));
    EXPECT_EQ(odd.image2dMaxHeight, numericValue(0, CL_DEVICE_IMAGE2D_MAX_HEIGHT));
    EXPECT_EQ(odd.image3dMaxWidth, numericValue(0, CL_DEVICE_IMAGE3D_MAX_WIDTH));
    EXPECT_EQ(odd.image3dMaxHeight, numericValue(0, CL_DEVICE_IMAGE3D_MAX_HEIGHT));
    EXPECT_EQ(odd.image3dMaxDepth, numericValue(0, CL_DEVICE_IMAGE3D_MAX_DEPTH));
    EXPECT_EQ(odd.maxSamplers, numericValue(0, CL_DEVICE_MAX_SAMPLERS));
    // The device's last name has no blank behind it; the long one is cut to 127.
    EXPECT_THAT(odd.extensions,
                ElementsAre("cl_khr_gl_sharing", "cl_nv_device_attribute_query", std::string(127, 'x')));
    EXPECT_EQ(odd.nvComputeCapabilityMajor, fake_cl::kNvValueBase + 0);
    EXPECT_EQ(odd.nvComputeCapabilityMinor, fake_cl::kNvValueBase + 1);
    EXPECT_EQ(odd.nvRegistersPerBlock, fake_cl::kNvValueBase + 2);
    EXPECT_EQ(odd.nvWarpSize, fake_cl::kNvValueBase + 3);
    EXPECT_EQ(odd.nvGpuOverlap, fake_cl::kNvValueBase + 4);
    EXPECT_EQ(odd.nvKernelExecTimeout, fake_cl::kNvValueBase + 5);
    EXPECT_EQ(odd.nvIntegratedMemory, fake_cl::kNvValueBase + 6);
    EXPECT_EQ(odd.preferredVectorWidthChar, numericValue(0, CL_DEVICE_PREFERRED_VECTOR_WIDTH_CHAR));
    EXPECT_EQ(odd.preferredVectorWidthShort, numericValue(0, CL_DEVICE_PREFERRED_VECTOR_WIDTH_SHORT));
    EXPECT_EQ(odd.preferredVectorWidthInt, numericValue(0, CL_DEVICE_PREFERRED_VECTOR_WIDTH_INT));
    EXPECT_EQ(odd.preferredVectorWidthLong, numericValue(0, CL_DEVICE_PREFERRED_VECTOR_WIDTH_LONG));
    EXPECT_EQ(odd.preferredVectorWidthFloat, numericValue(0, CL_DEVICE_PREFERRED_VECTOR_WIDTH_FLOAT));
    EXPECT_EQ(odd.preferredVectorWidthDouble, numericValue(0, CL_DEVICE_PREFERRED_VECTOR_WIDTH_DOUBLE));

    const ClDeviceRecord& cpu = clPlatforms()[0].devices[1];
    EXPECT_EQ(cpu.name, fake_cl::kDevice1Name);
    EXPECT_EQ(cpu.vendor, "");  // its vendor query fails; the name does not leak into it
    EXPECT_EQ(cpu.driverVersion, "9.9");
    EXPECT_EQ(cpu.localMemType, "Local (scratchpad)");
    EXPECT_FALSE(cpu.nativeKernels);
    EXPECT_THAT(cpu.maxWorkItemSizes, ElementsAre(1024u, 512u, 256u));
    EXPECT_EQ(cpu.maxClockMhz, numericValue(1, CL_DEVICE_MAX_CLOCK_FREQUENCY));
    EXPECT_EQ(cpu.nvWarpSize, 0u);  // no attribute query without the extension
}

TEST_F(OpenClFakeDriver, ADeviceOfTypeCpuAndGpuCountsForNeither) {
    discover();
    const ClDeviceRecord* cpu = &clPlatforms()[0].devices[1];
    EXPECT_EQ(countCpuDevices(0), 1u);
    EXPECT_EQ(countGpuDevices(0), 0u);
    EXPECT_TRUE(platformHasCpuDevice(0));
    EXPECT_FALSE(platformHasGpuDevice(0));
    EXPECT_EQ(firstCpuDevice(0), cpu);
    EXPECT_EQ(firstGpuDevice(0), nullptr);
    for (uint32_t index : {1u, 2u}) {
        EXPECT_EQ(countCpuDevices(index), 0u);
        EXPECT_FALSE(platformHasCpuDevice(index));
        EXPECT_EQ(firstCpuDevice(index), nullptr);
    }
}

TEST_F(OpenClFakeDriver, ExtensionLookupsCompareThe127CharactersKept) {
    discover();
    const ClDeviceRecord* odd = &clPlatforms()[0].devices[0];
    EXPECT_TRUE(deviceHasExtension(odd, "cl_khr_gl_sharing"));
    EXPECT_FALSE(deviceHasExtension(odd, "cl_device_tail"));
    EXPECT_FALSE(deviceHasExtension(odd, "cl_khr_gl"));
    EXPECT_TRUE(deviceHasExtension(odd, std::string(130, 'x').c_str()));
    EXPECT_FALSE(deviceHasExtension(nullptr, "cl_khr_gl_sharing"));
    EXPECT_FALSE(deviceHasExtension(odd, nullptr));
    EXPECT_TRUE(deviceHasExtensionAt(0, 0, "cl_nv_device_attribute_query"));
    EXPECT_FALSE(deviceHasExtensionAt(0, 1, "cl_nv_device_attribute_query"));
    EXPECT_FALSE(deviceHasExtensionAt(0, 2, "cl_khr_fp64"));
    EXPECT_FALSE(deviceHasExtensionAt(1, 0, "cl_khr_fp64"));
}

TEST_F(OpenClFakeDriver, DetailLinesFollowTheDeviceTheyDescribe) {
    discover();
    const std::vector<std::string> odd = clDetailLines(0, 0);
    ASSERT_GE(odd.size(), 12u);
    EXPECT_EQ(odd[0], "--------------------------------------");
    EXPECT_EQ(odd[1], "- CL_PLATFORM_NAME: Fake Platform A");
    EXPECT_EQ(odd[4], "- CL_PLATFORM_PROFILE: FULL_PROFILE");
    EXPECT_EQ(odd[5], "--------------------------------------");
    EXPECT_EQ(odd[11], "- CL_DEVICE_TYPE: CPU / GPU");
    EXPECT_GE(indexOf(odd, "- CL_DEVICE_VENDOR_ID: 0x11001"), 0);
    const long extensions = indexOf(odd, "- CL_DEVICE_EXTENSIONS:");
    ASSERT_GE(extensions, 0);
    EXPECT_EQ(odd[extensions + 1], "\t- Number: 3");
    EXPECT_EQ(odd[extensions + 2], "\t- cl_khr_gl_sharing");
    EXPECT_EQ(odd[extensions + 5], "- CL_NV_DEVICE_COMPUTE_CAPABILITY_MAJOR: 1280");
    EXPECT_EQ(odd[extensions + 11], "- CL_NV_DEVICE_INTEGRATED_MEMORY: 1286");
    EXPECT_EQ(odd[extensions + 12], "- CL_DEVICE_ADDRESS_BITS: " + std::to_string(numericValue(0, 0x100D)));
    EXPECT_GE(indexOf(odd, "- CL_DEVICE_MAX_WORK_ITEM_SIZES: [11 ; 22 ; 33]"), 0);
    EXPECT_GE(indexOf(odd, "- Execute native functions: YES"), 0);
    EXPECT_GE(indexOf(odd, "- CL_DEVICE_ERROR_CORRECTION_SUPPORT: YES"), 0);
    const long queue = indexOf(odd, "- CL_DEVICE_QUEUE_PROPERTIES:");
    ASSERT_GE(queue, 0);
    EXPECT_EQ(odd[queue + 1], "\t- CL_QUEUE_PROFILING_ENABLE");
    EXPECT_EQ(odd.back(), "- CL_DEVICE_PREFERRED_VECTOR_WIDTH_DOUBLE: " + std::to_string(numericValue(0, 0x100B)));

    const std::vector<std::string> cpu = clDetailLines(0, 1);
    EXPECT_EQ(cpu[11], "- CL_DEVICE_TYPE: CPU");
    EXPECT_EQ(indexOf(cpu, "- CL_NV_DEVICE_WARP_SIZE: 0"), -1);
    const long cpuQueue = indexOf(cpu, "- CL_DEVICE_QUEUE_PROPERTIES:");
    ASSERT_GE(cpuQueue, 0);
    EXPECT_EQ(cpu[cpuQueue + 1], "\t- CL_QUEUE_OUT_OF_ORDER_EXEC_MODE_ENABLE");
    EXPECT_EQ(cpu[cpuQueue + 2], "\t- CL_QUEUE_PROFILING_ENABLE");
    EXPECT_GE(indexOf(cpu, "- Execute native functions: NO"), 0);
    // The memory sizes are shown in KB and MB.
    EXPECT_GE(indexOf(cpu, "- CL_DEVICE_MAX_MEM_ALLOC_SIZE: " +
                               std::to_string(numericValue(1, CL_DEVICE_MAX_MEM_ALLOC_SIZE) >> 10) + "KB"),
              0);

    EXPECT_TRUE(clDetailLines(0, 2).empty());
    EXPECT_TRUE(clDetailLines(1, 0).empty());
    EXPECT_TRUE(clDetailLines(2, 0).empty());
}

TEST_F(OpenClFakeDriver, ReleaseFreesRecordsAndEmptiesTheEntryPointTable) {
    discover();
    EXPECT_TRUE(clModule().isLoaded());
    EXPECT_TRUE(loadClGlEntryPoints());
    cl_uint count = 0;
    EXPECT_EQ(compute::clGetPlatformIDs(0, nullptr, &count), CL_SUCCESS);
    EXPECT_EQ(count, 2u);

    releaseOpenCl();
    EXPECT_EQ(getClPlatformCount(), 0u);
    EXPECT_TRUE(clPlatforms().empty());
    EXPECT_FALSE(clModule().isLoaded());
    EXPECT_FALSE(hasAnyClDevice());
    EXPECT_EQ(compute::clGetPlatformIDs(0, nullptr, &count), -1);
    cl_int error = 0;
    EXPECT_EQ(compute::clCreateKernel(nullptr, "main", &error), nullptr);
    EXPECT_FALSE(loadClGlEntryPoints());
}

TEST_F(OpenClFakeDriver, NoPlatformOrAFailedCountFreesTheLibrary) {
    discover("no_platforms");
    EXPECT_THAT(log.messages(), ElementsAre("Found 0 OpenCL-capable platform."));
    EXPECT_EQ(getClPlatformCount(), 0u);
    EXPECT_FALSE(clModule().isLoaded());
    EXPECT_FALSE(hasAnyClDevice());

    discover("platform_ids_fail");
    EXPECT_THAT(log.messages(), ElementsAre("Found 0 OpenCL-capable platform."));  // nothing more logged
    EXPECT_EQ(getClPlatformCount(), 0u);
    EXPECT_FALSE(clModule().isLoaded());
}

TEST_F(OpenClFakeDriver, AMissingLibraryIsNamedInTheLog) {
    discoverOpenCl(log.log(), "libOpenCL-absent.so.1");
    EXPECT_THAT(log.messages(), ElementsAre("Could not find libOpenCL-absent.so.1."));
    EXPECT_EQ(getClPlatformCount(), 0u);
    EXPECT_EQ(getClPlatformId(0), nullptr);
}

}  // namespace
