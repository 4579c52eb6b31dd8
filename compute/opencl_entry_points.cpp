#include "compute/opencl_entry_points.h"

#include <array>
#include <atomic>
#include <utility>

namespace compute {
namespace {

constexpr cl_int kEntryMissing = -1;

// A slot may be filled by two threads at once; both store the same address, so relaxed order is enough.
std::array<std::atomic<void*>, size_t(ClEntry::Count)> gSlots{};

template <typename Fn>
Fn* entry(ClEntry which) {
    return reinterpret_cast<Fn*>(clEntryPoint(which));
}

template <typename Fn, typename... Args>
cl_int callStatus(ClEntry which, Args... args) {
    Fn* fn = entry<Fn>(which);
    return fn ? fn(args...) : kEntryMissing;
}

template <typename Fn, typename... Args>
auto callObject(ClEntry which, Args... args) -> decltype(std::declval<Fn*>()(args...)) {
    Fn* fn = entry<Fn>(which);
    return fn ? fn(args...) : nullptr;
}

void* lookUp(ClEntry which) { return clModule().symbol(kClEntryNames[size_t(which)]); }

}  // namespace

base::DynamicLibrary& clModule() {
    static base::DynamicLibrary module;
    return module;
}

void* clEntryPoint(ClEntry which) {
    if (which >= ClEntry::Count) return nullptr;
    std::atomic<void*>& slot = gSlots[size_t(which)];
    void* fn = slot.load(std::memory_order_relaxed);
    if (!fn) {
        fn = lookUp(which);
        slot.store(fn, std::memory_order_relaxed);
    }
    return fn;
}

void clearClEntryPoints() {
    for (auto& slot : gSlots) slot.store(nullptr, std::memory_order_relaxed);
}

bool loadClGlEntryPoints() {
    bool all = true;
    for (ClEntry which : {ClEntry::CreateFromGLTexture2D, ClEntry::CreateFromGLBuffer,
                          ClEntry::EnqueueAcquireGLObjects, ClEntry::EnqueueReleaseGLObjects}) {
        void* fn = lookUp(which);
        gSlots[size_t(which)].store(fn, std::memory_order_relaxed);
        all = all && fn;
    }
    return all;
}

cl_int clBuildProgram(cl_program program, cl_uint numDevices, const cl_device_id* devices, const char* options,
                      void(CL_CALLBACK* notify)(cl_program, void*), void* userData) {
    return callStatus<decltype(::clBuildProgram)>(ClEntry::BuildProgram, program, numDevices, devices, options, notify,
                                                  userData);
}

cl_int clEnqueueAcquireGLObjects(cl_command_queue queue, cl_uint numObjects, const cl_mem* objects,
                                 cl_uint numWaitEvents, const cl_event* waitList, cl_event* event) {
    return callStatus<decltype(::clEnqueueAcquireGLObjects)>(ClEntry::EnqueueAcquireGLObjects, queue, numObjects,
                                                             objects, numWaitEvents, waitList, event);
}

cl_int clEnqueueCopyBufferToImage(cl_command_queue queue, cl_mem source, cl_mem image, size_t sourceOffset,
                                  const size_t* origin, const size_t* region, cl_uint numWaitEvents,
                                  const cl_event* waitList, cl_event* event) {
    return callStatus<decltype(::clEnqueueCopyBufferToImage)>(ClEntry::EnqueueCopyBufferToImage, queue, source,
                                                              image, sourceOffset, origin, region, numWaitEvents,
                                                              waitList, event);
}

cl_int clEnqueueNDRangeKernel(cl_command_queue queue, cl_kernel kernel, cl_uint workDim, const size_t* globalOffset,
                              const size_t* globalSize, const size_t* localSize, cl_uint numWaitEvents,
                              const cl_event* waitList, cl_event* event) {
    return callStatus<decltype(::clEnqueueNDRangeKernel)>(ClEntry::EnqueueNDRangeKernel, queue, kernel, workDim,
                                                          globalOffset, globalSize, localSize, numWaitEvents,
                                                          waitList, event);
}

cl_int clEnqueueReadBuffer(cl_command_queue queue, cl_mem buffer, cl_bool blocking, size_t offset, size_t size,
                           void* target, cl_uint numWaitEvents, const cl_event* waitList, cl_event* event) {
    return callStatus<decltype(::clEnqueueReadBuffer)>(ClEntry::EnqueueReadBuffer, queue, buffer, blocking, offset,
                                                       size, target, numWaitEvents, waitList, event);
}

cl_int clEnqueueReleaseGLObjects(cl_command_queue queue, cl_uint numObjects, const cl_mem* objects,
                                 cl_uint numWaitEvents, const cl_event* waitList, cl_event* event) {
    return callStatus<decltype(::clEnqueueReleaseGLObjects)>(ClEntry::EnqueueReleaseGLObjects, queue, numObjects,
                                                             objects, numWaitEvents, waitList, event);
}

cl_int clEnqueueWriteBuffer(cl_command_queue queue, cl_mem buffer, cl_bool blocking, size_t offset, size_t size,
                            const void* source, cl_uint numWaitEvents, const cl_event* waitList, cl_event* event) {
    return callStatus<decltype(::clEnqueueWriteBuffer)>(ClEntry::EnqueueWriteBuffer, queue, buffer, blocking, offset,
                                                        size, source, numWaitEvents, waitList, event);
}

cl_int clGetContextInfo(cl_context context, cl_context_info name, size_t size, void* value, size_t* sizeReturned) {
    return callStatus<decltype(::clGetContextInfo)>(ClEntry::GetContextInfo, context, name, size, value,
                                                    sizeReturned);
}

cl_int clGetDeviceIDs(cl_platform_id platform, cl_device_type type, cl_uint numEntries, cl_device_id* devices,
                      cl_uint* numDevices) {
    return callStatus<decltype(::clGetDeviceIDs)>(ClEntry::GetDeviceIDs, platform, type, numEntries, devices,
                                                  numDevices);
}

cl_int clGetDeviceInfo(cl_device_id device, cl_device_info name, size_t size, void* value, size_t* sizeReturned) {
    return callStatus<decltype(::clGetDeviceInfo)>(ClEntry::GetDeviceInfo, device, name, size, value, sizeReturned);
}

cl_int clGetKernelWorkGroupInfo(cl_kernel kernel, cl_device_id device, cl_kernel_work_group_info name, size_t size,
                                void* value, size_t* sizeReturned) {
    return callStatus<decltype(::clGetKernelWorkGroupInfo)>(ClEntry::GetKernelWorkGroupInfo, kernel, device, name,
                                                            size, value, sizeReturned);
}

cl_int clGetPlatformIDs(cl_uint numEntries, cl_platform_id* platforms, cl_uint* numPlatforms) {
    return callStatus<decltype(::clGetPlatformIDs)>(ClEntry::GetPlatformIDs, numEntries, platforms, numPlatforms);
}

cl_int clGetPlatformInfo(cl_platform_id platform, cl_platform_info name, size_t size, void* value,
                         size_t* sizeReturned) {
    return callStatus<decltype(::clGetPlatformInfo)>(ClEntry::GetPlatformInfo, platform, name, size, value,
                                                     sizeReturned);
}

cl_int clGetProgramBuildInfo(cl_program program, cl_device_id device, cl_program_build_info name, size_t size,
                             void* value, size_t* sizeReturned) {
    return callStatus<decltype(::clGetProgramBuildInfo)>(ClEntry::GetProgramBuildInfo, program, device, name, size,
                                                         value, sizeReturned);
}

cl_int clGetSupportedImageFormats(cl_context context, cl_mem_flags flags, cl_mem_object_type imageType,
                                  cl_uint numEntries, cl_image_format* formats, cl_uint* numFormats) {
    return callStatus<decltype(::clGetSupportedImageFormats)>(ClEntry::GetSupportedImageFormats, context, flags,
                                                              imageType, numEntries, formats, numFormats);
}

cl_int clReleaseCommandQueue(cl_command_queue queue) {
    return callStatus<decltype(::clReleaseCommandQueue)>(ClEntry::ReleaseCommandQueue, queue);
}

cl_int clReleaseContext(cl_context context) {
    return callStatus<decltype(::clReleaseContext)>(ClEntry::ReleaseContext, context);
}

cl_int clReleaseMemObject(cl_mem object) {
    return callStatus<decltype(::clReleaseMemObject)>(ClEntry::ReleaseMemObject, object);
}

// Kernels hold their program; the demos release them before it, so that a stopped demo leaves nothing behind.
cl_int clReleaseKernel(cl_kernel kernel) {
    return callStatus<decltype(::clReleaseKernel)>(ClEntry::ReleaseKernel, kernel);
}

cl_int clReleaseProgram(cl_program program) {
    return callStatus<decltype(::clReleaseProgram)>(ClEntry::ReleaseProgram, program);
}

cl_int clSetKernelArg(cl_kernel kernel, cl_uint index, size_t size, const void* value) {
    return callStatus<decltype(::clSetKernelArg)>(ClEntry::SetKernelArg, kernel, index, size, value);
}

cl_mem clCreateBuffer(cl_context context, cl_mem_flags flags, size_t size, void* hostData, cl_int* error) {
    return callObject<decltype(::clCreateBuffer)>(ClEntry::CreateBuffer, context, flags, size, hostData, error);
}

cl_command_queue clCreateCommandQueue(cl_context context, cl_device_id device,
                                      cl_command_queue_properties properties, cl_int* error) {
    return callObject<decltype(::clCreateCommandQueue)>(ClEntry::CreateCommandQueue, context, device, properties,
                                                        error);
}

cl_context clCreateContext(const cl_context_properties* properties, cl_uint numDevices, const cl_device_id* devices,
                           void(CL_CALLBACK* notify)(const char*, const void*, size_t, void*), void* userData,
                           cl_int* error) {
    return callObject<decltype(::clCreateContext)>(ClEntry::CreateContext, properties, numDevices, devices, notify,
                                                   userData, error);
}

cl_context clCreateContextFromType(const cl_context_properties* properties, cl_device_type type,
                                   void(CL_CALLBACK* notify)(const char*, const void*, size_t, void*),
                                   void* userData, cl_int* error) {
    return callObject<decltype(::clCreateContextFromType)>(ClEntry::CreateContextFromType, properties, type, notify,
                                                           userData, error);
}

cl_mem clCreateFromGLBuffer(cl_context context, cl_mem_flags flags, cl_GLuint buffer, cl_int* error) {
    return callObject<decltype(::clCreateFromGLBuffer)>(ClEntry::CreateFromGLBuffer, context, flags, buffer, error);
}

cl_mem clCreateFromGLTexture2D(cl_context context, cl_mem_flags flags, cl_GLenum target, cl_GLint mipLevel,
                               cl_GLuint texture, cl_int* error) {
    return callObject<decltype(::clCreateFromGLTexture2D)>(ClEntry::CreateFromGLTexture2D, context, flags, target,
                                                           mipLevel, texture, error);
}

cl_kernel clCreateKernel(cl_program program, const char* kernelName, cl_int* error) {
    return callObject<decltype(::clCreateKernel)>(ClEntry::CreateKernel, program, kernelName, error);
}

cl_program clCreateProgramWithSource(cl_context context, cl_uint count, const char** strings, const size_t* lengths,
                                     cl_int* error) {
    return callObject<decltype(::clCreateProgramWithSource)>(ClEntry::CreateProgramWithSource, context, count,
                                                             strings, lengths, error);
}

}  // namespace compute
