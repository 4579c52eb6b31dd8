#include "opencl_discovery.h"

#include <cstring>
#include <utility>
#include <vector>

#include "opencl_entry_points.h"
#include "opencl_state.h"

namespace compute {
namespace {

constexpr size_t kQueryBufferSize = 1024;
constexpr cl_device_type kAllDeviceTypes = 0xFFFFFFFF;
constexpr char kNvAttributeQuery[] = "cl_nv_device_attribute_query";

void copyClText(char (&field)[kClTextSize], const char* text) {
    const size_t length = strnlen(text, kClMaxTextLength);
    std::memcpy(field, text, length);
    field[length] = '\0';
}

void unloadModule() {
    clModule().close();
    clearClEntryPoints();
}

// Fetches a whole extension string (its size asked first) and splits it; nothing on failure.
template <typename Query>
ClExtensionList readExtensions(Query query) {
    size_t size = 0;
    query(0, nullptr, &size);
    if (size == 0) return {};
    std::vector<char> text(size + 1, '\0');
    if (query(size, text.data(), nullptr) != CL_SUCCESS) return {};
    return tokeniseClExtensions(text.data());
}

void readPlatform(ClPlatformRecord& platform, cl_platform_id id) {
    char buffer[kQueryBufferSize] = {};
    const auto readText = [&](cl_platform_info param, char (&field)[kClTextSize]) {
        const bool ok = compute::clGetPlatformInfo(id, param, kQueryBufferSize - 1, buffer, nullptr) == CL_SUCCESS;
        if (ok) copyClText(field, buffer);
        return ok;
    };
    if (readText(CL_PLATFORM_VENDOR, platform.vendor)) platform.platformId = id;
    readText(CL_PLATFORM_NAME, platform.name);
    readText(CL_PLATFORM_PROFILE, platform.profile);
    readText(CL_PLATFORM_VERSION, platform.version);
    platform.extensions = readExtensions([id](size_t size, void* value, size_t* sizeReturned) {
        return compute::clGetPlatformInfo(id, CL_PLATFORM_EXTENSIONS, size, value, sizeReturned);
    });
}

// A query that fails leaves its field at zero.
template <typename T>
void readValue(cl_device_id id, cl_device_info param, T& field) {
    T value{};
    if (compute::clGetDeviceInfo(id, param, sizeof value, &value, nullptr) == CL_SUCCESS) field = value;
}

void readSize(cl_device_id id, cl_device_info param, uint64_t& field) {
    size_t value = 0;
    if (compute::clGetDeviceInfo(id, param, sizeof value, &value, nullptr) == CL_SUCCESS) field = value;
}

// The first three dimensions; a device with more needs the whole array fetched, since a short buffer fails.
void readWorkItemSizes(cl_device_id id, uint64_t (&field)[3]) {
    size_t sizes[3] = {};
    if (compute::clGetDeviceInfo(id, CL_DEVICE_MAX_WORK_ITEM_SIZES, sizeof sizes, sizes, nullptr) != CL_SUCCESS) {
        size_t bytes = 0;
        if (compute::clGetDeviceInfo(id, CL_DEVICE_MAX_WORK_ITEM_SIZES, 0, nullptr, &bytes) != CL_SUCCESS) return;
        std::vector<size_t> all(bytes / sizeof(size_t) + 1, 0);
        if (compute::clGetDeviceInfo(id, CL_DEVICE_MAX_WORK_ITEM_SIZES, bytes, all.data(), nullptr) != CL_SUCCESS) return;
        for (size_t i = 0; i < 3 && i < all.size(); ++i) sizes[i] = all[i];
    }
    for (size_t i = 0; i < 3; ++i) field[i] = sizes[i];
}

void readDevice(ClDeviceRecord& device) {
    const cl_device_id id = device.deviceId;
    char buffer[kQueryBufferSize] = {};
    const auto readText = [&](cl_device_info param, char (&field)[kClTextSize]) {
        if (compute::clGetDeviceInfo(id, param, kQueryBufferSize - 1, buffer, nullptr) == CL_SUCCESS) copyClText(field, buffer);
    };
    readText(CL_DEVICE_NAME, device.name);
    readText(CL_DEVICE_VENDOR, device.vendor);
    readText(CL_DRIVER_VERSION, device.driverVersion);
    readText(CL_DEVICE_PROFILE, device.profile);
    readText(CL_DEVICE_VERSION, device.version);

    readValue(id, CL_DEVICE_TYPE, device.type);
    readValue(id, CL_DEVICE_VENDOR_ID, device.vendorId);
    readValue(id, CL_DEVICE_MAX_COMPUTE_UNITS, device.maxComputeUnits);
    readValue(id, CL_DEVICE_MAX_CLOCK_FREQUENCY, device.maxClockMhz);
    readValue(id, CL_DEVICE_MAX_WORK_ITEM_DIMENSIONS, device.maxWorkItemDimensions);
    readWorkItemSizes(id, device.maxWorkItemSizes);
    readSize(id, CL_DEVICE_MAX_WORK_GROUP_SIZE, device.maxWorkGroupSize);
    readValue(id, CL_DEVICE_ADDRESS_BITS, device.addressBits);
    readValue(id, CL_DEVICE_MAX_MEM_ALLOC_SIZE, device.maxMemAllocSize);
    readValue(id, CL_DEVICE_GLOBAL_MEM_SIZE, device.globalMemSize);
    readSize(id, CL_DEVICE_MAX_PARAMETER_SIZE, device.maxParameterSize);
    readValue(id, CL_DEVICE_GLOBAL_MEM_CACHELINE_SIZE, device.globalMemCachelineSize);
    readValue(id, CL_DEVICE_GLOBAL_MEM_CACHE_SIZE, device.globalMemCacheSize);
    readValue(id, CL_DEVICE_ERROR_CORRECTION_SUPPORT, device.errorCorrectionSupport);
    cl_device_local_mem_type localMemType = 0;
    readValue(id, CL_DEVICE_LOCAL_MEM_TYPE, localMemType);
    copyClText(device.localMemType, localMemType == CL_LOCAL ? "Local (scratchpad)" : "Global");
    readValue(id, CL_DEVICE_LOCAL_MEM_SIZE, device.localMemSize);
    readValue(id, CL_DEVICE_MAX_CONSTANT_BUFFER_SIZE, device.maxConstantBufferSize);
    cl_device_exec_capabilities execution = 0;
    readValue(id, CL_DEVICE_EXECUTION_CAPABILITIES, execution);
    device.nativeKernels = (execution & CL_EXEC_NATIVE_KERNEL) != 0;
    readValue(id, CL_DEVICE_QUEUE_PROPERTIES, device.queueProperties);
    readValue(id, CL_DEVICE_IMAGE_SUPPORT, device.imageSupport);
    readValue(id, CL_DEVICE_MAX_READ_IMAGE_ARGS, device.maxReadImageArgs);
    readValue(id, CL_DEVICE_MAX_WRITE_IMAGE_ARGS, device.maxWriteImageArgs);
    readSize(id, CL_DEVICE_IMAGE2D_MAX_WIDTH, device.image2dMaxWidth);
    readSize(id, CL_DEVICE_IMAGE2D_MAX_HEIGHT, device.image2dMaxHeight);
    readSize(id, CL_DEVICE_IMAGE3D_MAX_WIDTH, device.image3dMaxWidth);
    readSize(id, CL_DEVICE_IMAGE3D_MAX_HEIGHT, device.image3dMaxHeight);
    readSize(id, CL_DEVICE_IMAGE3D_MAX_DEPTH, device.image3dMaxDepth);
    readValue(id, CL_DEVICE_MAX_SAMPLERS, device.maxSamplers);
    device.extensions = readExtensions([id](size_t size, void* value, size_t* sizeReturned) {
        return compute::clGetDeviceInfo(id, CL_DEVICE_EXTENSIONS, size, value, sizeReturned);
    });

    if (deviceHasExtension(&device, kNvAttributeQuery)) {
        readValue(id, kClNvComputeCapabilityMajor, device.nvComputeCapabilityMajor);
        readValue(id, kClNvComputeCapabilityMinor, device.nvComputeCapabilityMinor);
        readValue(id, kClNvRegistersPerBlock, device.nvRegistersPerBlock);
        readValue(id, kClNvWarpSize, device.nvWarpSize);
        readValue(id, kClNvGpuOverlap, device.nvGpuOverlap);
        readValue(id, kClNvKernelExecTimeout, device.nvKernelExecTimeout);
        readValue(id, kClNvIntegratedMemory, device.nvIntegratedMemory);
    }

    readValue(id, CL_DEVICE_PREFERRED_VECTOR_WIDTH_CHAR, device.preferredVectorWidthChar);
    readValue(id, CL_DEVICE_PREFERRED_VECTOR_WIDTH_SHORT, device.preferredVectorWidthShort);
    readValue(id, CL_DEVICE_PREFERRED_VECTOR_WIDTH_INT, device.preferredVectorWidthInt);
    readValue(id, CL_DEVICE_PREFERRED_VECTOR_WIDTH_LONG, device.preferredVectorWidthLong);
    readValue(id, CL_DEVICE_PREFERRED_VECTOR_WIDTH_FLOAT, device.preferredVectorWidthFloat);
    readValue(id, CL_DEVICE_PREFERRED_VECTOR_WIDTH_DOUBLE, device.preferredVectorWidthDouble);
}

void readDevices(AppLog& log, ClPlatformRecord& platform, cl_platform_id id) {
    cl_uint count = 0;
    compute::clGetDeviceIDs(id, kAllDeviceTypes, 0, nullptr, &count);
    if (count == 0) return;

    log.write("Found %d OpenCL-capable devices for platform %s.", int(count), platform.name);
    platform.devices.assign(count, ClDeviceRecord{});
    platform.deviceCount = count;
    std::vector<cl_device_id> ids(count, nullptr);
    if (compute::clGetDeviceIDs(id, kAllDeviceTypes, count, ids.data(), nullptr) != CL_SUCCESS) return;
    if (!clEntryPoint(ClEntry::GetDeviceInfo)) return;
    for (cl_uint i = 0; i < count; ++i) {
        platform.devices[i].deviceId = ids[i];
        readDevice(platform.devices[i]);
    }
}

}  // namespace

void discoverOpenCl(AppLog& log, const char* libraryName) {
    // The first load only tells whether the library is there; the handle that stays comes from a second load.
    {
        DynamicLibrary probe(libraryName);
        if (!probe) {
            log.write("Could not find %s.", libraryName);
            return;
        }
    }
    DynamicLibrary module(libraryName);
    if (!module) {
        log.write("Could not find %s.", libraryName);
        return;
    }
    clearClEntryPoints();
    clModule() = std::move(module);
    if (!clEntryPoint(ClEntry::GetPlatformIDs)) {
        unloadModule();
        return;
    }

    cl_uint count = 0;
    if (compute::clGetPlatformIDs(0, nullptr, &count) != CL_SUCCESS) {
        unloadModule();
        return;
    }
    log.write("Found %d OpenCL-capable platform.", int(count));
    if (count == 0) {
        unloadModule();
        return;
    }

    auto& platforms = openClState().platforms;
    platforms.assign(count, ClPlatformRecord{});
    openClState().platformCount = count;
    std::vector<cl_platform_id> ids(count, nullptr);
    compute::clGetPlatformIDs(count, ids.data(), nullptr);

    if (!clEntryPoint(ClEntry::GetPlatformInfo)) return;
    const bool canListDevices = clEntryPoint(ClEntry::GetDeviceIDs) != nullptr;
    for (cl_uint i = 0; i < count; ++i) {
        readPlatform(platforms[i], ids[i]);
        if (canListDevices) readDevices(log, platforms[i], ids[i]);
    }
}

void releaseOpenCl() {
    if (openClState().platformCount > 0) {
        freeOpenClPlatforms();
        clModule().close();
    }
    clearClEntryPoints();
}

void freeOpenClPlatforms() {
    openClState().platforms = {};
    openClState().platformCount = 0;
}

}  // namespace compute
