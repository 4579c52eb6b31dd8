#pragma once

#include <cstdint>
#include <vector>

#include "app/app_log.h"

// CUDA devices, read once at start-up through the driver library, which is unloaded again afterwards.
namespace compute {

inline constexpr const char* kCudaLibraryName = "libcuda.so.1";
constexpr size_t kCudaNameSize = 128;  // 127 characters and the terminator

// All zero until read; a device the driver would not hand out keeps an all-zero record.
struct CudaDeviceRecord {
    char name[kCudaNameSize] = {};
    uint64_t totalMemory = 0;  // bytes
    // The driver's 14-word property block, in its order.
    int32_t maxThreadsPerBlock = 0;
    int32_t maxThreadsDim[3] = {};
    int32_t maxGridSize[3] = {};
    int32_t sharedMemPerBlock = 0;    // bytes
    int32_t totalConstantMemory = 0;  // bytes
    int32_t simdWidth = 0;
    int32_t memPitch = 0;  // bytes
    int32_t regsPerBlock = 0;
    int32_t clockRate = 0;     // kHz; the clock attribute replaces the property block's value
    int32_t textureAlign = 0;  // bytes
    int32_t computeMajor = 0;
    int32_t computeMinor = 0;
    int32_t warpSize = 0;
    int32_t multiprocessorCount = 0;
};

// True when the library answered cuInit and the count was asked.
bool discoverCuda(AppLog& log = appLog(), const char* libraryName = kCudaLibraryName);

// 0 until discovery counted devices.
int32_t getCudaDeviceCount();
const std::vector<CudaDeviceRecord>& cudaDevices();

// Frees the device array (shutdown).
void freeCudaDevices();

}  // namespace compute
