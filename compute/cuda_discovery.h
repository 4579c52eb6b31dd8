#pragma once

#include <cstdint>
#include <vector>

#include "app/app_log.h"
#include "compute/cuda_records.h"

// CUDA devices, read once at start-up through the driver library, which is unloaded again afterwards.
namespace compute {

inline constexpr const char* kCudaLibraryName = "libcuda.so.1";

// True when the library answered cuInit and the count was asked.
bool discoverCuda(AppLog& log = appLog(), const char* libraryName = kCudaLibraryName);

// 0 until discovery counted devices.
int32_t getCudaDeviceCount();
const std::vector<CudaDeviceRecord>& cudaDevices();

// Frees the device array (shutdown).
void freeCudaDevices();

}  // namespace compute
