// A stand-in for the OpenCL loader: two platforms, the first with a device of odd type and a plain CPU, the
// second with no device at all. It answers like a driver: a buffer of the wrong size is refused.
#define CL_TARGET_OPENCL_VERSION 120
#define CL_USE_DEPRECATED_OPENCL_1_1_APIS
#include <CL/cl.h>
#include <CL/cl_gl.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "fake_opencl_values.h"

struct _cl_platform_id {
    int index;
};
struct _cl_device_id {
    int index;
};

namespace {

_cl_platform_id gPlatforms[2] = {{0}, {1}};
_cl_device_id gDevices[2] = {{0}, {1}};

std::string scenario() {
    const char* value = std::getenv(fake_cl::kScenarioVariable);
    return value ? value : "";
}

cl_int answerText(const std::string& text, size_t size, void* value, size_t* sizeReturned) {
    if (sizeReturned) *sizeReturned = text.size() + 1;
    if (!value) return CL_SUCCESS;
    if (size < text.size() + 1) return CL_INVALID_VALUE;
    std::memcpy(value, text.c_str(), text.size() + 1);
    return CL_SUCCESS;
}

cl_int answerBytes(const void* data, size_t width, size_t size, void* value, size_t* sizeReturned) {
    if (sizeReturned) *sizeReturned = width;
    if (!value) return CL_SUCCESS;
    if (size != width) return CL_INVALID_VALUE;
    std::memcpy(value, data, width);
    return CL_SUCCESS;
}

template <typename T>
cl_int answer(T data, size_t size, void* value, size_t* sizeReturned) {
    return answerBytes(&data, sizeof data, size, value, sizeReturned);
}

std::string deviceExtensions(int device) {
    if (device == 1) return "cl_khr_fp64 ";
    return "cl_khr_gl_sharing cl_nv_device_attribute_query " + std::string(130, 'x') + " cl_device_tail";
}

bool isUintQuery(cl_device_info param) {
    switch (param) {
        case CL_DEVICE_VENDOR_ID: case CL_DEVICE_MAX_COMPUTE_UNITS: case CL_DEVICE_MAX_CLOCK_FREQUENCY:
        case CL_DEVICE_ADDRESS_BITS: case CL_DEVICE_GLOBAL_MEM_CACHELINE_SIZE:
        case CL_DEVICE_ERROR_CORRECTION_SUPPORT: case CL_DEVICE_IMAGE_SUPPORT: case CL_DEVICE_MAX_READ_IMAGE_ARGS:
        case CL_DEVICE_MAX_WRITE_IMAGE_ARGS: case CL_DEVICE_MAX_SAMPLERS:
        case CL_DEVICE_PREFERRED_VECTOR_WIDTH_CHAR: case CL_DEVICE_PREFERRED_VECTOR_WIDTH_SHORT:
        case CL_DEVICE_PREFERRED_VECTOR_WIDTH_INT: case CL_DEVICE_PREFERRED_VECTOR_WIDTH_LONG:
        case CL_DEVICE_PREFERRED_VECTOR_WIDTH_FLOAT: case CL_DEVICE_PREFERRED_VECTOR_WIDTH_DOUBLE:
            return true;
        default:
            return false;
    }
}

bool isUlongQuery(cl_device_info param) {
    switch (param) {
        case CL_DEVICE_MAX_MEM_ALLOC_SIZE: case CL_DEVICE_GLOBAL_MEM_SIZE: case CL_DEVICE_GLOBAL_MEM_CACHE_SIZE:
        case CL_DEVICE_LOCAL_MEM_SIZE: case CL_DEVICE_MAX_CONSTANT_BUFFER_SIZE:
            return true;
        default:
            return false;
    }
}

bool isSizeQuery(cl_device_info param) {
    switch (param) {
        case CL_DEVICE_MAX_WORK_GROUP_SIZE: case CL_DEVICE_MAX_PARAMETER_SIZE: case CL_DEVICE_IMAGE2D_MAX_WIDTH:
        case CL_DEVICE_IMAGE2D_MAX_HEIGHT: case CL_DEVICE_IMAGE3D_MAX_WIDTH: case CL_DEVICE_IMAGE3D_MAX_HEIGHT:
        case CL_DEVICE_IMAGE3D_MAX_DEPTH:
            return true;
        default:
            return false;
    }
}

}  // namespace

extern "C" {

CL_API_ENTRY cl_int CL_API_CALL clGetPlatformIDs(cl_uint numEntries, cl_platform_id* platforms, cl_uint* count) {
    const std::string which = scenario();
    if (which == "platform_ids_fail") return CL_OUT_OF_HOST_MEMORY;
    const cl_uint available = which == "no_platforms" ? 0 : 2;
    if (count) *count = available;
    for (cl_uint i = 0; platforms && i < numEntries && i < available; ++i) platforms[i] = &gPlatforms[i];
    return CL_SUCCESS;
}

CL_API_ENTRY cl_int CL_API_CALL clGetPlatformInfo(cl_platform_id platform, cl_platform_info param, size_t size,
                                                  void* value, size_t* sizeReturned) {
    if (!platform) return CL_INVALID_PLATFORM;
    const bool first = platform->index == 0;
    switch (param) {
        case CL_PLATFORM_VENDOR: return answerText("Fake Vendor", size, value, sizeReturned);
        case CL_PLATFORM_NAME: return answerText(first ? "Fake Platform A" : "Fake Platform B", size, value, sizeReturned);
        case CL_PLATFORM_PROFILE: return answerText("FULL_PROFILE", size, value, sizeReturned);
        case CL_PLATFORM_VERSION: return answerText("OpenCL 1.2 Fake", size, value, sizeReturned);
        case CL_PLATFORM_EXTENSIONS: return answerText(fake_cl::kPlatformExtensions, size, value, sizeReturned);
        default: return CL_INVALID_VALUE;
    }
}

CL_API_ENTRY cl_int CL_API_CALL clGetDeviceIDs(cl_platform_id platform, cl_device_type, cl_uint numEntries,
                                               cl_device_id* devices, cl_uint* count) {
    if (!platform) return CL_INVALID_PLATFORM;
    const cl_uint available = platform->index == 0 ? 2 : 0;
    if (count) *count = available;
    if (available == 0) return CL_DEVICE_NOT_FOUND;
    for (cl_uint i = 0; devices && i < numEntries && i < available; ++i) devices[i] = &gDevices[i];
    return CL_SUCCESS;
}

CL_API_ENTRY cl_int CL_API_CALL clGetDeviceInfo(cl_device_id device, cl_device_info param, size_t size, void* value,
                                                size_t* sizeReturned) {
    if (!device) return CL_INVALID_DEVICE;
    const int d = device->index;
    switch (param) {
        case CL_DEVICE_NAME:
            return answerText(d == 0 ? std::string(fake_cl::kDevice0NameLength, 'N') : fake_cl::kDevice1Name, size,
                              value, sizeReturned);
        case CL_DEVICE_VENDOR:
            if (d == 1) return CL_INVALID_VALUE;
            return answerText("Fake Device Vendor", size, value, sizeReturned);
        case CL_DRIVER_VERSION: return answerText("9.9", size, value, sizeReturned);
        case CL_DEVICE_PROFILE: return answerText("EMBEDDED_PROFILE", size, value, sizeReturned);
        case CL_DEVICE_VERSION: return answerText("OpenCL 1.1 Fake", size, value, sizeReturned);
        case CL_DEVICE_EXTENSIONS: return answerText(deviceExtensions(d), size, value, sizeReturned);
        case CL_DEVICE_TYPE:
            return answer<cl_device_type>(d == 0 ? fake_cl::kDevice0Type : fake_cl::kDevice1Type, size, value,
                                          sizeReturned);
        case CL_DEVICE_MAX_WORK_ITEM_DIMENSIONS: return answer<cl_uint>(d == 0 ? 4 : 3, size, value, sizeReturned);
        case CL_DEVICE_MAX_WORK_ITEM_SIZES: {
            // A driver refuses a buffer too short for all dimensions.
            size_t sizes[4] = {};
            const size_t count = d == 0 ? 4 : 3;
            for (size_t i = 0; i < count; ++i)
                sizes[i] = d == 0 ? fake_cl::kDevice0WorkItemSizes[i] : fake_cl::kDevice1WorkItemSizes[i];
            if (sizeReturned) *sizeReturned = count * sizeof(size_t);
            if (!value) return CL_SUCCESS;
            if (size < count * sizeof(size_t)) return CL_INVALID_VALUE;
            std::memcpy(value, sizes, count * sizeof(size_t));
            return CL_SUCCESS;
        }
        case CL_DEVICE_LOCAL_MEM_TYPE:
            return answer<cl_device_local_mem_type>(d == 0 ? CL_GLOBAL : CL_LOCAL, size, value, sizeReturned);
        case CL_DEVICE_EXECUTION_CAPABILITIES:
            return answer<cl_device_exec_capabilities>(d == 0 ? CL_EXEC_KERNEL | CL_EXEC_NATIVE_KERNEL : CL_EXEC_KERNEL,
                                                       size, value, sizeReturned);
        case CL_DEVICE_QUEUE_PROPERTIES:
            return answer<cl_command_queue_properties>(d == 0 ? CL_QUEUE_PROFILING_ENABLE : 3, size, value,
                                                       sizeReturned);
        default: break;
    }
    if (param >= 0x4000 && param <= 0x4006) {
        if (d != 0) return CL_INVALID_VALUE;
        return answer<cl_uint>(fake_cl::kNvValueBase + (param - 0x4000), size, value, sizeReturned);
    }
    const uint64_t number = fake_cl::numericValue(d, param);
    if (isUintQuery(param)) return answer<cl_uint>(cl_uint(number), size, value, sizeReturned);
    if (isUlongQuery(param)) return answer<cl_ulong>(number, size, value, sizeReturned);
    if (isSizeQuery(param)) return answer<size_t>(size_t(number), size, value, sizeReturned);
    return CL_INVALID_VALUE;
}

// Present only so that the OpenGL sharing entry points can be found.
CL_API_ENTRY cl_mem CL_API_CALL clCreateFromGLBuffer(cl_context, cl_mem_flags, cl_GLuint, cl_int* error) {
    if (error) *error = CL_INVALID_CONTEXT;
    return nullptr;
}
CL_API_ENTRY cl_mem CL_API_CALL clCreateFromGLTexture2D(cl_context, cl_mem_flags, cl_GLenum, cl_GLint, cl_GLuint,
                                                        cl_int* error) {
    if (error) *error = CL_INVALID_CONTEXT;
    return nullptr;
}
CL_API_ENTRY cl_int CL_API_CALL clEnqueueAcquireGLObjects(cl_command_queue, cl_uint, const cl_mem*, cl_uint,
                                                          const cl_event*, cl_event*) {
    return CL_INVALID_COMMAND_QUEUE;
}
CL_API_ENTRY cl_int CL_API_CALL clEnqueueReleaseGLObjects(cl_command_queue, cl_uint, const cl_mem*, cl_uint,
                                                          const cl_event*, cl_event*) {
    return CL_INVALID_COMMAND_QUEUE;
}

}  // extern "C"
