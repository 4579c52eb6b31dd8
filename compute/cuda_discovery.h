#pragma once

#include <cstdint>
#include <vector>

#include "base/log_sink.h"
#include "compute/cuda_records.h"

// CUDA devices, read once at start-up through the driver library, which is unloaded again afterwards.
namespace compute {

inline constexpr const char* kCudaLibraryName = "libcuda.so.1";

// True when the library answered cuInit and the count was asked.
bool discoverCuda(base::LogSink& log = base::programLog(), const char* libraryName = kCudaLibraryName);

// 0 until discovery counted devices.
int32_t getCudaDeviceCount();
const std::vector<CudaDeviceRecord>& cudaDevices();

// Frees the device array (shutdown).
void freeCudaDevices();

}  // namespace compute
