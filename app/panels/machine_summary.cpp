#include "app/panels/machine_summary.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace panels {

namespace {

constexpr uint64_t kClTypeCpu = 2, kClTypeGpu = 4;
constexpr size_t kClVersionShown = 10;  // "OpenCL 3.0" and no more

// printf into a line of at most 511 characters; the attribute lets the compiler check every argument.
__attribute__((format(printf, 1, 2))) std::string format(const char* pattern, ...) {
    char text[512];
    va_list args;
    va_start(args, pattern);
    std::vsnprintf(text, sizeof text, pattern, args);
    va_end(args);
    return text;
}

const compute::ClDeviceRecord* firstDeviceOfType(const compute::ClPlatformRecord& platform, uint64_t type) {
    for (const compute::ClDeviceRecord& device : platform.devices)
        if (device.type == type) return &device;
    return nullptr;
}

bool platformOfVendor(const compute::ClPlatformRecord& platform, uint32_t vendor) {
    const std::string_view text = platform.vendor;
    switch (vendor) {
        case 0x10DE: return text.find("NVIDIA") != text.npos;
        case 0x1002: return text.find("Advanced Micro Devices") != text.npos || text.find("AMD") != text.npos;
        case 0x8086: return text.find("Intel") != text.npos;
        default: return false;
    }
}

std::string shortVersion(const compute::ClDeviceRecord& device) {
    return device.version.substr(0, kClVersionShown);
}

}  // namespace

SummaryLine physxLine(int32_t physxVersion, const char* physxGpuName) {
    const bool installed = physxVersion >= 1;
    if (physxGpuName) {
        if (installed)
            return {*physxGpuName ? format("PhysX %d, GPU PhysX (%s)", physxVersion, physxGpuName)
                                  : format("PhysX %d, GPU PhysX", physxVersion)};
        return {*physxGpuName ? format("GPU PhysX (%s)", physxGpuName) : std::string("GPU PhysX")};
    }
    if (installed) return {format("PhysX %d, CPU PhysX", physxVersion)};
    return {"PhysX not installed", false};
}

SummaryLine multiGpuLine(const MultiGpuFacts& f) {
    // Fewer logical GPUs than physical NVIDIA ones: the driver joined some of them.
    if (f.primaryVendorKind == 1 && f.nvidiaGpus > 1 && f.logicalGpuCount != f.nvidiaGpus) {
        if (f.nvidiaGpus == f.gpuCount) return {format("SLI enabled (%d physical GPUs)", int(f.nvidiaGpus))};
        return {format("SLI enabled (%d NV GPUs, %d total GPUs)", int(f.nvidiaGpus), int(f.gpuCount))};
    }
    if (f.primaryVendorKind == 2 && f.amdGpus >= 1 && f.amdGpuCount >= 2 && f.crossfireGpuCount >= 2)
        return {format("CrossFire ON (%d GPUs)", int(f.crossfireGpuCount))};
    return {format("no multi-GPU support (%d physical GPUs)", int(f.gpuCount)), false};
}

SummaryLine openClLine(const std::vector<compute::ClPlatformRecord>& platforms, uint32_t gpu0Vendor,
                       bool matchVendor) {
    const compute::ClDeviceRecord* gpu = nullptr;
    if (matchVendor)
        for (const compute::ClPlatformRecord& platform : platforms)
            if (platformOfVendor(platform, gpu0Vendor)) {
                gpu = firstDeviceOfType(platform, kClTypeGpu);
                break;
            }
    for (size_t i = 0; !gpu && i < platforms.size(); ++i) gpu = firstDeviceOfType(platforms[i], kClTypeGpu);
    if (gpu)
        return {format("%s, %s compute units:%d@%dMHz", shortVersion(*gpu).c_str(), gpu->name.c_str(),
                       int(gpu->maxComputeUnits), int(gpu->maxClockMhz))};
    for (const compute::ClPlatformRecord& platform : platforms)
        if (const compute::ClDeviceRecord* cpu = firstDeviceOfType(platform, kClTypeCpu))
            return {format("%s, CPU compute units:%d@%dMHz", shortVersion(*cpu).c_str(), int(cpu->maxComputeUnits),
                           int(cpu->maxClockMhz))};
    return {"No GPU support (see the OpenCL panel for more details)", false};
}

SummaryLine cudaLine(const std::vector<compute::CudaDeviceRecord>& devices) {
    if (devices.empty()) return {"No CUDA support", false};
    const compute::CudaDeviceRecord& d = devices.front();
    return {format("%s CC:%d.%d, multiprocessors:%d@%dMHz", d.name.c_str(), d.computeMajor, d.computeMinor,
                   d.multiprocessorCount, d.clockRate / 1000)};
}

}  // namespace panels
