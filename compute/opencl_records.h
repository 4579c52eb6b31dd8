#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "compute/opencl_api.h"

// What discovery learned about one OpenCL platform and its devices; read-only once discovery is done. The
// reports take these records as they are, so a record filled by hand replays any machine.
namespace compute {

constexpr size_t kClTextSize = 128;  // 127 characters and the terminator
constexpr size_t kClMaxTextLength = kClTextSize - 1;

// Extension names in the driver's order.
using ClExtensionList = std::vector<std::string>;

// How each field is queried, printed and named in the reports is the row of the same member in
// opencl_device_fields.cpp. Texts hold at most 127 characters; every number is kept in 64 bits whatever
// width the driver answers in, so one row type reaches all of them.
struct ClDeviceRecord {
    cl_device_id deviceId = nullptr;
    std::string name, vendor, driverVersion, profile, version;
    uint64_t type = 0;  // bits: 1 default, 2 CPU, 4 GPU, 8 accelerator
    uint64_t vendorId = 0;
    uint64_t maxComputeUnits = 0;
    uint64_t maxClockMhz = 0;
    uint64_t maxWorkItemDimensions = 0;
    uint64_t maxWorkItemSizes[3] = {};  // the first three dimensions, whatever the device has
    uint64_t maxWorkGroupSize = 0;
    uint64_t addressBits = 0;
    uint64_t maxMemAllocSize = 0;         // bytes
    uint64_t globalMemSize = 0;           // bytes
    uint64_t maxParameterSize = 0;        // bytes
    uint64_t globalMemCachelineSize = 0;  // bytes
    uint64_t globalMemCacheSize = 0;      // bytes
    uint64_t errorCorrectionSupport = 0;
    std::string localMemType;             // "Local (scratchpad)" or "Global"
    uint64_t localMemSize = 0;            // bytes
    uint64_t maxConstantBufferSize = 0;   // bytes
    uint64_t nativeKernels = 0;           // 1 when the device runs native C functions
    uint64_t queueProperties = 0;         // bits: 1 out-of-order execution, 2 profiling
    uint64_t imageSupport = 0;
    uint64_t maxReadImageArgs = 0;
    uint64_t maxWriteImageArgs = 0;
    uint64_t image2dMaxWidth = 0;
    uint64_t image2dMaxHeight = 0;
    uint64_t image3dMaxWidth = 0;
    uint64_t image3dMaxHeight = 0;
    uint64_t image3dMaxDepth = 0;
    uint64_t maxSamplers = 0;
    // Names that end in a blank, of 3 characters or more, cut to 127: the list the panels, the text and XML
    // reports and the extension checks use.
    ClExtensionList extensions;
    // Every name the driver reports, the last one too: the JSON report's list.
    ClExtensionList reportedExtensions;
    // Only read when the device lists cl_nv_device_attribute_query.
    uint64_t nvComputeCapabilityMajor = 0;
    uint64_t nvComputeCapabilityMinor = 0;
    uint64_t nvRegistersPerBlock = 0;
    uint64_t nvWarpSize = 0;
    uint64_t nvGpuOverlap = 0;
    uint64_t nvKernelExecTimeout = 0;
    uint64_t nvIntegratedMemory = 0;
    uint64_t preferredVectorWidthChar = 0;
    uint64_t preferredVectorWidthShort = 0;
    uint64_t preferredVectorWidthInt = 0;
    uint64_t preferredVectorWidthLong = 0;
    uint64_t preferredVectorWidthFloat = 0;
    uint64_t preferredVectorWidthDouble = 0;
};

struct ClPlatformRecord {
    std::string name, version, profile, vendor;
    ClExtensionList extensions;          // as the device's list
    ClExtensionList reportedExtensions;  // every name, as the device's
    cl_platform_id platformId = nullptr;  // set only when the vendor query succeeded
    std::vector<ClDeviceRecord> devices;
    uint32_t deviceCount = 0;
};

// Splits an extension string at its blanks. Text behind the last blank is not a name, and a name of fewer
// than 3 characters (an empty one from a double blank included) is dropped; longer names are cut to 127.
ClExtensionList tokeniseClExtensions(const char* text);

// Every name of an extension string, whatever blanks or line ends stand between them, the last one included.
ClExtensionList splitClExtensions(const char* text);

}  // namespace compute
