#pragma once

#include <cstdint>
#include <string>

// What discovery learned about one CUDA device. The reports take these records as they are, so a record
// filled by hand replays any machine; how each field is read and shown is its row in cuda_device_fields.cpp.
namespace compute {

constexpr size_t kCudaNameSize = 128;  // 127 characters and the terminator

// All zero until read; a device the driver would not hand out keeps an all-zero record.
struct CudaDeviceRecord {
    std::string name;          // at most 127 characters
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

}  // namespace compute
