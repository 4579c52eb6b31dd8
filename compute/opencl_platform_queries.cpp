#include <cstring>

#include "compute/opencl_discovery.h"
#include "compute/opencl_state.h"

namespace compute {
namespace {

const ClDeviceRecord* firstOfType(uint32_t platformIndex, uint64_t type) {
    const ClPlatformRecord* platform = clPlatform(platformIndex);
    if (!platform) return nullptr;
    for (const ClDeviceRecord& device : platform->devices)
        if (device.type == type) return &device;
    return nullptr;
}

uint32_t countOfType(uint32_t platformIndex, uint64_t type) {
    const ClPlatformRecord* platform = clPlatform(platformIndex);
    if (!platform) return 0;
    uint32_t count = 0;
    for (const ClDeviceRecord& device : platform->devices)
        if (device.type == type) ++count;
    return count;
}

}  // namespace

OpenClState& openClState() {
    static OpenClState state;
    return state;
}

const std::vector<ClPlatformRecord>& clPlatforms() { return openClState().platforms; }

uint32_t getClPlatformCount() { return openClState().platformCount; }

const ClPlatformRecord* clPlatform(uint32_t platformIndex) {
    const OpenClState& state = openClState();
    if (platformIndex >= state.platformCount || platformIndex >= state.platforms.size()) return nullptr;
    return &state.platforms[platformIndex];
}

cl_platform_id getClPlatformId(uint32_t platformIndex) {
    const ClPlatformRecord* platform = clPlatform(platformIndex);
    return platform ? platform->platformId : nullptr;
}

uint32_t countCpuDevices(uint32_t platformIndex) { return countOfType(platformIndex, CL_DEVICE_TYPE_CPU); }
uint32_t countGpuDevices(uint32_t platformIndex) { return countOfType(platformIndex, CL_DEVICE_TYPE_GPU); }
bool platformHasCpuDevice(uint32_t platformIndex) { return firstOfType(platformIndex, CL_DEVICE_TYPE_CPU); }
bool platformHasGpuDevice(uint32_t platformIndex) { return firstOfType(platformIndex, CL_DEVICE_TYPE_GPU); }
const ClDeviceRecord* firstCpuDevice(uint32_t platformIndex) { return firstOfType(platformIndex, CL_DEVICE_TYPE_CPU); }
const ClDeviceRecord* firstGpuDevice(uint32_t platformIndex) { return firstOfType(platformIndex, CL_DEVICE_TYPE_GPU); }

bool hasAnyClDevice() {
    const ClPlatformRecord* platform = clPlatform(0);
    return platform && !platform->devices.empty();
}

bool deviceHasExtension(const ClDeviceRecord* device, const char* name) {
    if (!device || !name) return false;
    for (const std::string& extension : device->extensions)
        if (std::strncmp(extension.c_str(), name, kClMaxTextLength) == 0) return true;
    return false;
}

bool deviceHasExtensionAt(uint32_t platformIndex, uint32_t deviceIndex, const char* name) {
    const ClPlatformRecord* platform = clPlatform(platformIndex);
    if (!platform || deviceIndex >= platform->devices.size()) return false;
    return deviceHasExtension(&platform->devices[deviceIndex], name);
}

}  // namespace compute
