#include <cstdarg>
#include <cstdio>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

#include "opencl_discovery.h"

namespace compute {
namespace {

constexpr char kRule[] = "--------------------------------------";

class LineList {
public:
    void add(const char* format, ...) __attribute__((format(printf, 2, 3))) {
        char line[512];
        va_list args;
        va_start(args, format);
        std::vsnprintf(line, sizeof line, format, args);
        va_end(args);
        m_lines.emplace_back(line);
    }
    std::vector<std::string> take() { return std::move(m_lines); }

private:
    std::vector<std::string> m_lines;
};

const char* yesNo(uint64_t value) { return value ? "YES" : "NO"; }

std::string typeWords(uint64_t type) {
    static constexpr struct {
        uint64_t bit;
        const char* word;
    } kWords[] = {{CL_DEVICE_TYPE_CPU, "CPU"},
                  {CL_DEVICE_TYPE_GPU, "GPU"},
                  {CL_DEVICE_TYPE_ACCELERATOR, "ACCELERATOR"},
                  {CL_DEVICE_TYPE_DEFAULT, "DEFAULT"}};
    static_assert(std::size(kWords) == 4);
    std::string words;
    for (const auto& entry : kWords) {
        if (!(type & entry.bit)) continue;
        if (!words.empty()) words += " / ";
        words += entry.word;
    }
    return words;
}

}  // namespace

std::vector<std::string> clDetailLines(uint32_t platformIndex, uint32_t deviceIndex) {
    const ClPlatformRecord* platform = clPlatform(platformIndex);
    if (!platform || deviceIndex >= platform->devices.size()) return {};
    return clDetailLines(*platform, platform->devices[deviceIndex]);
}

// Sizes are shown as %d of their KB or MB, as the list always showed them.
std::vector<std::string> clDetailLines(const ClPlatformRecord& platform, const ClDeviceRecord& device) {
    LineList out;
    out.add("%s", kRule);
    out.add("- CL_PLATFORM_NAME: %s", platform.name);
    out.add("- CL_PLATFORM_VENDOR: %s", platform.vendor);
    out.add("- CL_PLATFORM_VERSION: %s", platform.version);
    out.add("- CL_PLATFORM_PROFILE: %s", platform.profile);
    out.add("%s", kRule);
    out.add("- CL_DEVICE_NAME: %s", device.name);
    out.add("- CL_DEVICE_VENDOR: %s", device.vendor);
    out.add("- CL_DRIVER_VERSION: %s", device.driverVersion);
    out.add("- CL_DEVICE_PROFILE: %s", device.profile);
    out.add("- CL_DEVICE_VERSION: %s", device.version);
    out.add("- CL_DEVICE_TYPE: %s", typeWords(device.type).c_str());
    out.add("- CL_DEVICE_VENDOR_ID: 0x%.4X", device.vendorId);
    out.add("- CL_DEVICE_MAX_COMPUTE_UNITS: %d", int(device.maxComputeUnits));
    out.add("- CL_DEVICE_MAX_CLOCK_FREQUENCY: %dMHz", int(device.maxClockMhz));
    out.add("- CL_DEVICE_EXTENSIONS:");
    out.add("\t- Number: %d", int(device.extensions.size()));
    for (const std::string& extension : device.extensions) out.add("\t- %s", extension.c_str());
    if (deviceHasExtension(&device, "cl_nv_device_attribute_query")) {
        out.add("- CL_NV_DEVICE_COMPUTE_CAPABILITY_MAJOR: %d", int(device.nvComputeCapabilityMajor));
        out.add("- CL_NV_DEVICE_COMPUTE_CAPABILITY_MINOR: %d", int(device.nvComputeCapabilityMinor));
        out.add("- CL_NV_DEVICE_REGISTERS_PER_BLOCK: %d", int(device.nvRegistersPerBlock));
        out.add("- CL_NV_DEVICE_WARP_SIZE: %d", int(device.nvWarpSize));
        out.add("- CL_NV_DEVICE_GPU_OVERLAP: %d", int(device.nvGpuOverlap));
        out.add("- CL_NV_DEVICE_KERNEL_EXEC_TIMEOUT: %d", int(device.nvKernelExecTimeout));
        out.add("- CL_NV_DEVICE_INTEGRATED_MEMORY: %d", int(device.nvIntegratedMemory));
    }
    out.add("- CL_DEVICE_ADDRESS_BITS: %d", int(device.addressBits));
    out.add("- CL_DEVICE_MAX_MEM_ALLOC_SIZE: %dKB", int(device.maxMemAllocSize >> 10));
    out.add("- CL_DEVICE_GLOBAL_MEM_SIZE: %dMB", int(device.globalMemSize >> 20));
    out.add("- CL_DEVICE_MAX_PARAMETER_SIZE: %d", int(device.maxParameterSize));
    out.add("- CL_DEVICE_GLOBAL_MEM_CACHELINE_SIZE: %d Bytes", int(device.globalMemCachelineSize));
    out.add("- CL_DEVICE_GLOBAL_MEM_CACHE_SIZE: %d KB", int(device.globalMemCacheSize >> 10));
    out.add("- CL_DEVICE_ERROR_CORRECTION_SUPPORT: %s", yesNo(device.errorCorrectionSupport));
    out.add("- CL_DEVICE_LOCAL_MEM_TYPE: %s", device.localMemType);
    out.add("- CL_DEVICE_LOCAL_MEM_SIZE: %dKB", int(device.localMemSize >> 10));
    out.add("- CL_DEVICE_MAX_CONSTANT_BUFFER_SIZE: %dKB", int(device.maxConstantBufferSize >> 10));
    out.add("- CL_DEVICE_MAX_WORK_ITEM_DIMENSIONS: %d", int(device.maxWorkItemDimensions));
    out.add("- CL_DEVICE_MAX_WORK_ITEM_SIZES: [%d ; %d ; %d]", int(device.maxWorkItemSizes[0]),
            int(device.maxWorkItemSizes[1]), int(device.maxWorkItemSizes[2]));
    out.add("- CL_DEVICE_MAX_WORK_GROUP_SIZE: %d", int(device.maxWorkGroupSize));
    out.add("- Execute native functions: %s", yesNo(device.nativeKernels));
    out.add("- CL_DEVICE_QUEUE_PROPERTIES:");
    if (device.queueProperties & CL_QUEUE_OUT_OF_ORDER_EXEC_MODE_ENABLE)
        out.add("\t- CL_QUEUE_OUT_OF_ORDER_EXEC_MODE_ENABLE");
    if (device.queueProperties & CL_QUEUE_PROFILING_ENABLE) out.add("\t- CL_QUEUE_PROFILING_ENABLE");
    out.add("- CL_DEVICE_IMAGE_SUPPORT: %s", yesNo(device.imageSupport));
    out.add("- CL_DEVICE_MAX_READ_IMAGE_ARGS: %d", int(device.maxReadImageArgs));
    out.add("- CL_DEVICE_MAX_WRITE_IMAGE_ARGS: %d", int(device.maxWriteImageArgs));
    out.add("- CL_DEVICE_IMAGE2D_MAX_WIDTH: %d", int(device.image2dMaxWidth));
    out.add("- CL_DEVICE_IMAGE2D_MAX_HEIGHT: %d", int(device.image2dMaxHeight));
    out.add("- CL_DEVICE_IMAGE3D_MAX_WIDTH: %d", int(device.image3dMaxWidth));
    out.add("- CL_DEVICE_IMAGE3D_MAX_HEIGHT: %d", int(device.image3dMaxHeight));
    out.add("- CL_DEVICE_IMAGE3D_MAX_DEPTH: %d", int(device.image3dMaxDepth));
    out.add("- CL_DEVICE_MAX_SAMPLERS: %d", int(device.maxSamplers));
    out.add("- CL_DEVICE_PREFERRED_VECTOR_WIDTH_CHAR: %d", int(device.preferredVectorWidthChar));
    out.add("- CL_DEVICE_PREFERRED_VECTOR_WIDTH_SHORT: %d", int(device.preferredVectorWidthShort));
    out.add("- CL_DEVICE_PREFERRED_VECTOR_WIDTH_INT: %d", int(device.preferredVectorWidthInt));
    out.add("- CL_DEVICE_PREFERRED_VECTOR_WIDTH_LONG: %d", int(device.preferredVectorWidthLong));
    out.add("- CL_DEVICE_PREFERRED_VECTOR_WIDTH_FLOAT: %d", int(device.preferredVectorWidthFloat));
    out.add("- CL_DEVICE_PREFERRED_VECTOR_WIDTH_DOUBLE: %d", int(device.preferredVectorWidthDouble));
    return out.take();
}

}  // namespace compute
