#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "compute/opencl_records.h"
#include "demos/harness/demo_settings.h"

// Which OpenCL platform and device an OpenCL demo runs on, decided from discovery's records.

// "GPU" for the GPU type, "CPU" for any other.
const char* clDeviceTypeName(uint32_t deviceType);

// A device whose type is exactly `deviceType`; one that reports another bit as well does not count.
bool platformHasDeviceOfType(const compute::ClPlatformRecord& platform, uint32_t deviceType);

// The first platform with such a device; -1 when none has one.
int firstPlatformWithDeviceType(const std::vector<compute::ClPlatformRecord>& platforms, uint32_t deviceType);

// `platformIndex` when that platform has such a device; -1 otherwise.
int chosenPlatformWithDeviceType(const std::vector<compute::ClPlatformRecord>& platforms, uint32_t platformIndex,
                                 uint32_t deviceType);

// The device among the `deviceCount` devices of the demo's type: the command line's index when it was
// given, else the one chosen on the OpenCL panel for that type; an index outside the list means the first.
uint32_t demoDeviceIndex(const DemoSettings& settings, uint32_t deviceCount);

// Relaxed maths for NVIDIA's compiler, whose platform names itself in its version text; none elsewhere.
const char* demoBuildOptions(const std::string& platformVersion);
