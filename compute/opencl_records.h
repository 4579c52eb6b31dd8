#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "compute/opencl_api.h"

// What discovery learned about one OpenCL platform and its devices; read-only once discovery is done.
namespace compute {

constexpr size_t kClTextSize = 128;  // 127 characters and the terminator
constexpr size_t kClMaxTextLength = kClTextSize - 1;

// Extension names, each cut to 127 characters, in the driver's order.
using ClExtensionList = std::vector<std::string>;

// Fields in the order discovery queries them. Values the driver reports as size_t are kept in 64 bits.
struct ClDeviceRecord {
    cl_device_id deviceId = nullptr;
    char name[kClTextSize] = {};
    char vendor[kClTextSize] = {};
    char driverVersion[kClTextSize] = {};
    char profile[kClTextSize] = {};
    char version[kClTextSize] = {};
    uint64_t type = 0;  // bits: 1 default, 2 CPU, 4 GPU, 8 accelerator
    uint32_t vendorId = 0;
    uint32_t maxComputeUnits = 0;
    uint32_t maxClockMhz = 0;
    uint32_t maxWorkItemDimensions = 0;
    uint64_t maxWorkItemSizes[3] = {};  // the first three dimensions, whatever the device has
    uint64_t maxWorkGroupSize = 0;
    uint32_t addressBits = 0;
    uint64_t maxMemAllocSize = 0;  // bytes
    uint64_t globalMemSize = 0;    // bytes
    uint64_t maxParameterSize = 0;  // bytes
    uint32_t globalMemCachelineSize = 0;  // bytes
    uint64_t globalMemCacheSize = 0;      // bytes
    uint32_t errorCorrectionSupport = 0;
    char localMemType[kClTextSize] = {};  // "Local (scratchpad)" or "Global"
    uint64_t localMemSize = 0;            // bytes
    uint64_t maxConstantBufferSize = 0;   // bytes
    bool nativeKernels = false;
    uint64_t queueProperties = 0;  // bits: 1 out-of-order execution, 2 profiling
    uint32_t imageSupport = 0;
    uint32_t maxReadImageArgs = 0;
    uint32_t maxWriteImageArgs = 0;
    uint64_t image2dMaxWidth = 0;
    uint64_t image2dMaxHeight = 0;
    uint64_t image3dMaxWidth = 0;
    uint64_t image3dMaxHeight = 0;
    uint64_t image3dMaxDepth = 0;
    uint32_t maxSamplers = 0;
    ClExtensionList extensions;
    // Only read when the device lists cl_nv_device_attribute_query.
    uint32_t nvComputeCapabilityMajor = 0;
    uint32_t nvComputeCapabilityMinor = 0;
    uint32_t nvRegistersPerBlock = 0;
    uint32_t nvWarpSize = 0;
    uint32_t nvGpuOverlap = 0;
    uint32_t nvKernelExecTimeout = 0;
    uint32_t nvIntegratedMemory = 0;
    uint32_t preferredVectorWidthChar = 0;
    uint32_t preferredVectorWidthShort = 0;
    uint32_t preferredVectorWidthInt = 0;
    uint32_t preferredVectorWidthLong = 0;
    uint32_t preferredVectorWidthFloat = 0;
    uint32_t preferredVectorWidthDouble = 0;
};

struct ClPlatformRecord {
    char name[kClTextSize] = {};
    char version[kClTextSize] = {};
    char profile[kClTextSize] = {};
    char vendor[kClTextSize] = {};
    ClExtensionList extensions;
    cl_platform_id platformId = nullptr;  // set only when the vendor query succeeded
    std::vector<ClDeviceRecord> devices;
    uint32_t deviceCount = 0;
};

// Splits an extension string at its blanks. Text behind the last blank is not a name, and a name of fewer
// than 3 characters (an empty one from a double blank included) is dropped; longer names are cut to 127.
ClExtensionList tokeniseClExtensions(const char* text);

}  // namespace compute
