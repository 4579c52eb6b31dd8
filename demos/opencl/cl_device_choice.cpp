#include "demos/opencl/cl_device_choice.h"

#include "demos/harness/demo_settings.h"

const char* clDeviceTypeName(uint32_t deviceType) { return deviceType == kClDeviceTypeGpu ? "GPU" : "CPU"; }

bool platformHasDeviceOfType(const compute::ClPlatformRecord& platform, uint32_t deviceType) {
    for (const compute::ClDeviceRecord& device : platform.devices)
        if (device.type == deviceType) return true;
    return false;
}

int firstPlatformWithDeviceType(const std::vector<compute::ClPlatformRecord>& platforms, uint32_t deviceType) {
    for (size_t i = 0; i < platforms.size(); ++i)
        if (platformHasDeviceOfType(platforms[i], deviceType)) return int(i);
    return -1;
}

int chosenPlatformWithDeviceType(const std::vector<compute::ClPlatformRecord>& platforms, uint32_t platformIndex,
                                 uint32_t deviceType) {
    if (platformIndex >= platforms.size() || !platformHasDeviceOfType(platforms[platformIndex], deviceType)) return -1;
    return int(platformIndex);
}

uint32_t demoDeviceIndex(const DemoSettings& settings, uint32_t deviceCount) {
    const int32_t wanted = settings.clDeviceIndexForced                ? settings.clDeviceIndex
                           : settings.clDeviceType == kClDeviceTypeGpu ? settings.clGpuDeviceIndex
                                                                       : settings.clCpuDeviceIndex;
    return wanted >= 0 && uint32_t(wanted) < deviceCount ? uint32_t(wanted) : 0;
}

const char* demoBuildOptions(const std::string& platformVersion) {
    const bool nvidia =
        platformVersion.find("NVIDIA") != std::string::npos || platformVersion.find("CUDA") != std::string::npos;
    return nvidia ? "-cl-fast-relaxed-math" : nullptr;
}
