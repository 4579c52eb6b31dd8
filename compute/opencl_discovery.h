#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/log_sink.h"
#include "compute/opencl_records.h"

// OpenCL platforms and devices, found once at start-up, read-only afterwards. The OpenCL library stays
// loaded from discovery to releaseOpenCl, for the demos.
namespace compute {

inline constexpr const char* kOpenClLibraryName = "libOpenCL.so.1";

// Loads the OpenCL library by name and records every platform and device; logs what it found.
void discoverOpenCl(base::LogSink& log = base::programLog(), const char* libraryName = kOpenClLibraryName);

// Frees the records and the library when there are platforms, then empties the entry-point table.
void releaseOpenCl();

// Frees the platform array if it is still there.
void freeOpenClPlatforms();

// The records, in the driver's order; empty until discovery found a platform.
const std::vector<ClPlatformRecord>& clPlatforms();
uint32_t getClPlatformCount();
const ClPlatformRecord* clPlatform(uint32_t platformIndex);  // null out of range
cl_platform_id getClPlatformId(uint32_t platformIndex);     // null out of range

// Devices whose type is exactly CPU (2) or exactly GPU (4); a device reporting another bit as well counts
// for neither. 0, false or null when the platform index is out of range.
uint32_t countCpuDevices(uint32_t platformIndex);
uint32_t countGpuDevices(uint32_t platformIndex);
bool platformHasCpuDevice(uint32_t platformIndex);
bool platformHasGpuDevice(uint32_t platformIndex);
const ClDeviceRecord* firstCpuDevice(uint32_t platformIndex);
const ClDeviceRecord* firstGpuDevice(uint32_t platformIndex);

// True when there is a platform and platform 0 has a device.
bool hasAnyClDevice();

// Compares the first 127 characters of each name; false for a null device or name.
bool deviceHasExtension(const ClDeviceRecord* device, const char* name);
bool deviceHasExtensionAt(uint32_t platformIndex, uint32_t deviceIndex, const char* name);

// The lines of the "More OpenCL information..." list for one platform and device; empty out of range.
std::vector<std::string> clDetailLines(uint32_t platformIndex, uint32_t deviceIndex);
std::vector<std::string> clDetailLines(const ClPlatformRecord& platform, const ClDeviceRecord& device);

}  // namespace compute
