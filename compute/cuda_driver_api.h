#pragma once

#include <cstddef>

// The few CUDA driver calls discovery makes, declared from NVIDIA's public driver API reference; the driver
// library is loaded at run time, never linked.
namespace compute {

using CUresult = int;  // 0 is CUDA_SUCCESS
using CUdevice = int;  // a device ordinal's handle

constexpr CUresult kCudaSuccess = 0;
constexpr CUresult kCudaErrorNoDevice = 100;
constexpr CUresult kCudaErrorStubLibrary = 34;  // the toolkit's link-time stub answers this to every call

// The attributes that carry the property block's words and the compute capability.
enum CUdevice_attribute : int {
    kCuAttributeMaxThreadsPerBlock = 1,
    kCuAttributeMaxBlockDimX = 2,
    kCuAttributeMaxBlockDimY = 3,
    kCuAttributeMaxBlockDimZ = 4,
    kCuAttributeMaxGridDimX = 5,
    kCuAttributeMaxGridDimY = 6,
    kCuAttributeMaxGridDimZ = 7,
    kCuAttributeMaxSharedMemoryPerBlock = 8,  // bytes
    kCuAttributeTotalConstantMemory = 9,      // bytes
    kCuAttributeWarpSize = 10,
    kCuAttributeMaxPitch = 11,  // bytes
    kCuAttributeMaxRegistersPerBlock = 12,
    kCuAttributeClockRate = 13,         // kHz
    kCuAttributeTextureAlignment = 14,  // bytes
    kCuAttributeMultiprocessorCount = 16,
    kCuAttributeComputeCapabilityMajor = 75,
    kCuAttributeComputeCapabilityMinor = 76,
};

// The legacy device property block: 14 ints.
struct CUdevprop {
    int maxThreadsPerBlock;
    int maxThreadsDim[3];
    int maxGridSize[3];
    int sharedMemPerBlock;    // bytes
    int totalConstantMemory;  // bytes
    int SIMDWidth;
    int memPitch;  // bytes
    int regsPerBlock;
    int clockRate;     // kHz
    int textureAlign;  // bytes
};
static_assert(sizeof(CUdevprop) == 14 * sizeof(int), "the driver writes 14 ints");

using CuInitFn = CUresult(unsigned int flags);
using CuDeviceGetCountFn = CUresult(int* count);
using CuDeviceGetFn = CUresult(CUdevice* device, int ordinal);
using CuDeviceGetNameFn = CUresult(char* name, int length, CUdevice device);
using CuDeviceTotalMemV2Fn = CUresult(size_t* bytes, CUdevice device);     // cuDeviceTotalMem_v2
using CuDeviceTotalMemFn = CUresult(unsigned int* bytes, CUdevice device);  // cuDeviceTotalMem, 32-bit
using CuDeviceGetPropertiesFn = CUresult(CUdevprop* properties, CUdevice device);
using CuDeviceComputeCapabilityFn = CUresult(int* major, int* minor, CUdevice device);
using CuDeviceGetAttributeFn = CUresult(int* value, CUdevice_attribute attribute, CUdevice device);

}  // namespace compute
