#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

#include "compute/opencl_api.h"
#include "base/dynamic_library.h"

// The OpenCL entry points that discovery and the OpenCL demos call. Each slot is filled from the loaded
// OpenCL library on first use; the wrappers below carry the API's names and arguments, and answer -1 (status
// functions) or null (object functions) while their entry point cannot be found.
namespace compute {

enum class ClEntry : uint8_t {
    BuildProgram,
    EnqueueAcquireGLObjects,
    EnqueueCopyBufferToImage,
    EnqueueNDRangeKernel,
    EnqueueReadBuffer,
    EnqueueReleaseGLObjects,
    EnqueueWriteBuffer,
    GetContextInfo,
    GetDeviceIDs,
    GetDeviceInfo,
    GetKernelWorkGroupInfo,
    GetPlatformIDs,
    GetPlatformInfo,
    GetProgramBuildInfo,
    GetSupportedImageFormats,
    ReleaseCommandQueue,
    ReleaseContext,
    ReleaseKernel,
    ReleaseMemObject,
    ReleaseProgram,
    SetKernelArg,
    CreateBuffer,
    CreateCommandQueue,
    CreateContext,
    CreateContextFromType,
    CreateFromGLBuffer,
    CreateFromGLTexture2D,
    CreateKernel,
    CreateProgramWithSource,
    Count
};

inline constexpr const char* kClEntryNames[] = {
    "clBuildProgram", "clEnqueueAcquireGLObjects", "clEnqueueCopyBufferToImage", "clEnqueueNDRangeKernel",
    "clEnqueueReadBuffer", "clEnqueueReleaseGLObjects", "clEnqueueWriteBuffer", "clGetContextInfo",
    "clGetDeviceIDs", "clGetDeviceInfo", "clGetKernelWorkGroupInfo", "clGetPlatformIDs",
    "clGetPlatformInfo", "clGetProgramBuildInfo", "clGetSupportedImageFormats", "clReleaseCommandQueue",
    "clReleaseContext", "clReleaseKernel", "clReleaseMemObject", "clReleaseProgram",
    "clSetKernelArg", "clCreateBuffer", "clCreateCommandQueue", "clCreateContext",
    "clCreateContextFromType", "clCreateFromGLBuffer", "clCreateFromGLTexture2D", "clCreateKernel",
    "clCreateProgramWithSource",
};
static_assert(std::size(kClEntryNames) == size_t(ClEntry::Count), "one name per entry point");
static_assert(std::size(kClEntryNames) == 29, "21 status functions and 8 object functions");

// The OpenCL library; loaded by discovery and kept until releaseOpenCl, because the demos call through it.
base::DynamicLibrary& clModule();

// The slot's function, filled from clModule() when still empty; null while the library lacks it.
void* clEntryPoint(ClEntry entry);

// Empties every slot.
void clearClEntryPoints();

// Looks the four OpenGL sharing entry points up anew; true only if all four exist.
bool loadClGlEntryPoints();

// Handles are pointers to global-namespace types, so argument-dependent lookup also finds the Khronos
// prototypes: call these as compute::clX.

// Status functions.
cl_int clBuildProgram(cl_program program, cl_uint numDevices, const cl_device_id* devices, const char* options,
                      void(CL_CALLBACK* notify)(cl_program, void*), void* userData);
cl_int clEnqueueAcquireGLObjects(cl_command_queue queue, cl_uint numObjects, const cl_mem* objects,
                                 cl_uint numWaitEvents, const cl_event* waitList, cl_event* event);
cl_int clEnqueueCopyBufferToImage(cl_command_queue queue, cl_mem source, cl_mem image, size_t sourceOffset,
                                  const size_t* origin, const size_t* region, cl_uint numWaitEvents,
                                  const cl_event* waitList, cl_event* event);
cl_int clEnqueueNDRangeKernel(cl_command_queue queue, cl_kernel kernel, cl_uint workDim, const size_t* globalOffset,
                              const size_t* globalSize, const size_t* localSize, cl_uint numWaitEvents,
                              const cl_event* waitList, cl_event* event);
cl_int clEnqueueReadBuffer(cl_command_queue queue, cl_mem buffer, cl_bool blocking, size_t offset, size_t size,
                           void* target, cl_uint numWaitEvents, const cl_event* waitList, cl_event* event);
cl_int clEnqueueReleaseGLObjects(cl_command_queue queue, cl_uint numObjects, const cl_mem* objects,
                                 cl_uint numWaitEvents, const cl_event* waitList, cl_event* event);
cl_int clEnqueueWriteBuffer(cl_command_queue queue, cl_mem buffer, cl_bool blocking, size_t offset, size_t size,
                            const void* source, cl_uint numWaitEvents, const cl_event* waitList, cl_event* event);
cl_int clGetContextInfo(cl_context context, cl_context_info name, size_t size, void* value, size_t* sizeReturned);
cl_int clGetDeviceIDs(cl_platform_id platform, cl_device_type type, cl_uint numEntries, cl_device_id* devices,
                      cl_uint* numDevices);
cl_int clGetDeviceInfo(cl_device_id device, cl_device_info name, size_t size, void* value, size_t* sizeReturned);
cl_int clGetKernelWorkGroupInfo(cl_kernel kernel, cl_device_id device, cl_kernel_work_group_info name, size_t size,
                                void* value, size_t* sizeReturned);
cl_int clGetPlatformIDs(cl_uint numEntries, cl_platform_id* platforms, cl_uint* numPlatforms);
cl_int clGetPlatformInfo(cl_platform_id platform, cl_platform_info name, size_t size, void* value,
                         size_t* sizeReturned);
cl_int clGetProgramBuildInfo(cl_program program, cl_device_id device, cl_program_build_info name, size_t size,
                             void* value, size_t* sizeReturned);
cl_int clGetSupportedImageFormats(cl_context context, cl_mem_flags flags, cl_mem_object_type imageType,
                                  cl_uint numEntries, cl_image_format* formats, cl_uint* numFormats);
cl_int clReleaseCommandQueue(cl_command_queue queue);
cl_int clReleaseContext(cl_context context);
cl_int clReleaseKernel(cl_kernel kernel);
cl_int clReleaseMemObject(cl_mem object);
cl_int clReleaseProgram(cl_program program);
cl_int clSetKernelArg(cl_kernel kernel, cl_uint index, size_t size, const void* value);

// Object functions.
cl_mem clCreateBuffer(cl_context context, cl_mem_flags flags, size_t size, void* hostData, cl_int* error);
cl_command_queue clCreateCommandQueue(cl_context context, cl_device_id device,
                                      cl_command_queue_properties properties, cl_int* error);
cl_context clCreateContext(const cl_context_properties* properties, cl_uint numDevices, const cl_device_id* devices,
                           void(CL_CALLBACK* notify)(const char*, const void*, size_t, void*), void* userData,
                           cl_int* error);
cl_context clCreateContextFromType(const cl_context_properties* properties, cl_device_type type,
                                   void(CL_CALLBACK* notify)(const char*, const void*, size_t, void*),
                                   void* userData, cl_int* error);
cl_mem clCreateFromGLBuffer(cl_context context, cl_mem_flags flags, cl_GLuint buffer, cl_int* error);
cl_mem clCreateFromGLTexture2D(cl_context context, cl_mem_flags flags, cl_GLenum target, cl_GLint mipLevel,
                               cl_GLuint texture, cl_int* error);
cl_kernel clCreateKernel(cl_program program, const char* kernelName, cl_int* error);
cl_program clCreateProgramWithSource(cl_context context, cl_uint count, const char** strings, const size_t* lengths,
                                     cl_int* error);

}  // namespace compute
