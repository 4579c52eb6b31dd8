#pragma once

// The OpenCL types and prototypes come from the Khronos headers; nothing links against the library; the
// prototypes only give the entry-point table its function types. The demos use 1.1 calls that later
// versions deprecate (clCreateFromGLTexture2D, clCreateCommandQueue).
#ifndef CL_TARGET_OPENCL_VERSION
#define CL_TARGET_OPENCL_VERSION 120
#endif
#ifndef CL_USE_DEPRECATED_OPENCL_1_1_APIS
#define CL_USE_DEPRECATED_OPENCL_1_1_APIS
#endif
#ifndef CL_USE_DEPRECATED_OPENCL_1_2_APIS
#define CL_USE_DEPRECATED_OPENCL_1_2_APIS
#endif
#include <CL/cl.h>
#include <CL/cl_gl.h>

namespace compute {

// NVIDIA's cl_nv_device_attribute_query values, 0x4000 to 0x4006.
constexpr cl_device_info kClNvComputeCapabilityMajor = 0x4000;
constexpr cl_device_info kClNvComputeCapabilityMinor = 0x4001;
constexpr cl_device_info kClNvRegistersPerBlock = 0x4002;
constexpr cl_device_info kClNvWarpSize = 0x4003;
constexpr cl_device_info kClNvGpuOverlap = 0x4004;
constexpr cl_device_info kClNvKernelExecTimeout = 0x4005;
constexpr cl_device_info kClNvIntegratedMemory = 0x4006;

}  // namespace compute
