#include "compute/cuda_discovery.h"

#include <algorithm>
#include <cstring>

#include "compute/cuda_device_fields.h"
#include "compute/cuda_driver_api.h"
#include "compute/driver_limits.h"
#include "base/dynamic_library.h"

namespace compute {
namespace {

struct CudaState {
    std::vector<CudaDeviceRecord> devices;
    int32_t deviceCount = 0;
};

CudaState& cudaState() {
    static CudaState state;
    return state;
}

void copyProperties(const CUdevprop& prop, CudaDeviceRecord& record) {
    record.maxThreadsPerBlock = prop.maxThreadsPerBlock;
    std::memcpy(record.maxThreadsDim, prop.maxThreadsDim, sizeof record.maxThreadsDim);
    std::memcpy(record.maxGridSize, prop.maxGridSize, sizeof record.maxGridSize);
    record.sharedMemPerBlock = prop.sharedMemPerBlock;
    record.totalConstantMemory = prop.totalConstantMemory;
    record.simdWidth = prop.SIMDWidth;
    record.memPitch = prop.memPitch;
    record.regsPerBlock = prop.regsPerBlock;
    record.clockRate = prop.clockRate;
    record.textureAlign = prop.textureAlign;
}

// The name, bounded by the 127 bytes the driver is given, whether or not it wrote a terminator.
void readName(CuDeviceGetNameFn* getName, CUdevice device, std::string& name) {
    char buffer[kCudaNameSize] = {};
    if (getName(buffer, int(kCudaNameSize - 1), device) != kCudaSuccess) return;
    name.assign(buffer, strnlen(buffer, kCudaNameSize - 1));
}

// Every call is optional and answers only on success: a call the library lacks or that fails leaves its
// fields at zero, whatever it wrote. The attribute rows come last, so where the driver answers them they
// replace the property block's words (the clock among them).
void readDevice(const base::DynamicLibrary& library, CUdevice device, CudaDeviceRecord& record) {
    if (auto getName = library.function<CuDeviceGetNameFn>("cuDeviceGetName")) readName(getName, device, record.name);
    // The 64-bit form first: the original call writes 32 bits and cannot hold 4 GB.
    if (auto totalMem64 = library.function<CuDeviceTotalMemV2Fn>("cuDeviceTotalMem_v2")) {
        size_t bytes = 0;
        if (totalMem64(&bytes, device) == kCudaSuccess) record.totalMemory = bytes;
    } else if (auto totalMem32 = library.function<CuDeviceTotalMemFn>("cuDeviceTotalMem")) {
        unsigned int bytes = 0;
        if (totalMem32(&bytes, device) == kCudaSuccess) record.totalMemory = bytes;
    }
    if (auto getProperties = library.function<CuDeviceGetPropertiesFn>("cuDeviceGetProperties")) {
        CUdevprop prop{};
        if (getProperties(&prop, device) == kCudaSuccess) copyProperties(prop, record);
    }
    if (auto computeCapability = library.function<CuDeviceComputeCapabilityFn>("cuDeviceComputeCapability")) {
        int major = 0, minor = 0;
        if (computeCapability(&major, &minor, device) == kCudaSuccess) {
            record.computeMajor = major;
            record.computeMinor = minor;
        }
    }
    if (auto getAttribute = library.function<CuDeviceGetAttributeFn>("cuDeviceGetAttribute")) {
        for (const CudaDeviceField& field : cudaDeviceFields()) {
            if (field.source != CudaSource::Attribute) continue;
            int value = 0;
            if (getAttribute(&value, field.attribute, device) == kCudaSuccess) *cudaFieldSlot(field, record) = value;
        }
    }
}

}  // namespace

bool discoverCuda(base::LogSink& log, const char* libraryName) {
    base::DynamicLibrary library(libraryName);
    if (!library) {
        base::logTo(log, "Could not find %s.", libraryName);
        return false;
    }
    auto init = library.function<CuInitFn>("cuInit");
    if (!init || init(0) != kCudaSuccess) return false;

    CudaState& state = cudaState();
    state.deviceCount = 0;
    if (auto getCount = library.function<CuDeviceGetCountFn>("cuDeviceGetCount")) {
        int reported = 0;
        // A failed or negative count is no count, whatever the driver wrote.
        if (getCount(&reported) == kCudaSuccess && reported >= 0) {
            state.deviceCount = std::min(reported, kMaxCudaDevices);
            base::logTo(log, "Found %d CUDA-capable devices.", state.deviceCount);
            if (state.deviceCount < reported)
                base::logTo(log, "The CUDA driver reported %d devices; only the first %d are read.", reported,
                          state.deviceCount);
        }
    }
    if (state.deviceCount == 0) return true;

    state.devices.assign(size_t(state.deviceCount), CudaDeviceRecord{});
    auto getDevice = library.function<CuDeviceGetFn>("cuDeviceGet");
    if (!getDevice) return true;
    for (int ordinal = 0; ordinal < state.deviceCount; ++ordinal) {
        CUdevice device = 0;
        if (getDevice(&device, ordinal) != kCudaSuccess) continue;
        readDevice(library, device, state.devices[size_t(ordinal)]);
    }
    return true;
}

int32_t getCudaDeviceCount() { return cudaState().deviceCount; }

const std::vector<CudaDeviceRecord>& cudaDevices() { return cudaState().devices; }

void freeCudaDevices() {
    cudaState().devices = {};
    cudaState().deviceCount = 0;
}

}  // namespace compute
