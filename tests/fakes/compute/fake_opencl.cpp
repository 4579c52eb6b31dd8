// A stand-in for the OpenCL loader: two platforms, the first with a device of odd type and a plain CPU, the
// second with no device at all. It answers like a driver, a buffer of the wrong size is refused, and
// LUMENSCOPE_FAKE_CL turns it into a broken driver (fake_opencl_values.h lists the modes).
#define CL_TARGET_OPENCL_VERSION 120
#define CL_USE_DEPRECATED_OPENCL_1_1_APIS
#include <CL/cl.h>
#include <CL/cl_gl.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/fakes/compute/fake_opencl_values.h"

struct _cl_platform_id {
    int index;
};
struct _cl_device_id {
    int index;
};

namespace {

_cl_platform_id gPlatforms[2] = {{0}, {1}};
_cl_device_id gDevices[2] = {{0}, {1}};

bool isMode(const char* name) {
    const char* value = std::getenv(fake_cl::kScenarioVariable);
    return value && std::strcmp(value, name) == 0;
}

// What a failing call leaves behind: junk over the whole buffer and an absurd size.
cl_int failAfterScribbling(size_t size, void* value, size_t* sizeReturned) {
    if (value) std::memset(value, fake_cl::kJunkByte, size);
    if (sizeReturned) *sizeReturned = size_t(fake_cl::kHugeSize);
    return CL_OUT_OF_RESOURCES;
}

// Junk handles, which the fake would crash on if they were ever handed back.
template <typename Handle>
void scribbleHandles(Handle* handles, cl_uint count) {
    for (cl_uint i = 0; handles && i < count; ++i) handles[i] = reinterpret_cast<Handle>(uintptr_t(0xDEAD0000u + i));
}

cl_uint countFor(cl_uint normal) {
    if (isMode(fake_cl::mode::kHugeCounts)) return 0xFFFFFFFFu;
    if (isMode(fake_cl::mode::kManyCounts)) return fake_cl::kManyCount;
    return normal;
}

cl_int answerText(const std::string& text, size_t size, void* value, size_t* sizeReturned) {
    if (isMode(fake_cl::mode::kUnterminated)) {
        // Fills whatever it is given, or reports the length without room for a terminator.
        if (sizeReturned) *sizeReturned = text.size();
        if (!value) return CL_SUCCESS;
        for (size_t i = 0; i < size; ++i) static_cast<char*>(value)[i] = text[i % text.size()];
        return CL_SUCCESS;
    }
    if (sizeReturned) *sizeReturned = text.size() + 1;
    if (!value) return CL_SUCCESS;
    if (size < text.size() + 1) return CL_INVALID_VALUE;
    std::memcpy(value, text.c_str(), text.size() + 1);
    return CL_SUCCESS;
}

// An extension string: its size is absurd in the count modes, so that only a capped reader survives.
cl_int answerExtensions(const std::string& text, size_t size, void* value, size_t* sizeReturned) {
    if (isMode(fake_cl::mode::kHugeCounts) || isMode(fake_cl::mode::kManyCounts)) {
        const size_t claimed = isMode(fake_cl::mode::kHugeCounts) ? size_t(fake_cl::kHugeSize) : fake_cl::kManyCount;
        if (sizeReturned) *sizeReturned = claimed;
        return value && size < claimed ? CL_INVALID_VALUE : CL_SUCCESS;
    }
    if (isMode(fake_cl::mode::kZeroCounts)) {
        if (sizeReturned) *sizeReturned = 0;
        return CL_SUCCESS;
    }
    return answerText(text, size, value, sizeReturned);
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

std::string longExtensions() {
    std::string text;
    for (size_t i = 0; i < fake_cl::kLongExtensionCount; ++i)
        text += "cl_" + std::string(fake_cl::kLongExtensionLength - 3, char('a' + i % 26)) + " ";
    return text;
}

std::string platformName(int platform) {
    if (isMode(fake_cl::mode::kSpecialChars)) return fake_cl::kSpecialName;
    if (isMode(fake_cl::mode::kLongStrings)) return std::string(fake_cl::kLongNameLength, 'P');
    return platform == 0 ? "Fake Platform A" : "Fake Platform B";
}

std::string platformExtensions() {
    if (isMode(fake_cl::mode::kSpecialChars)) return fake_cl::kSpecialExtensions;
    if (isMode(fake_cl::mode::kLongStrings)) return longExtensions();
    return fake_cl::kPlatformExtensions;
}

std::string deviceName(int device) {
    if (isMode(fake_cl::mode::kSpecialChars)) return fake_cl::kSpecialName;
    if (isMode(fake_cl::mode::kLongStrings)) return std::string(fake_cl::kLongNameLength, 'D');
    return device == 0 ? std::string(fake_cl::kDevice0NameLength, 'N') : fake_cl::kDevice1Name;
}

std::string deviceExtensions(int device) {
    if (isMode(fake_cl::mode::kSpecialChars)) return fake_cl::kSpecialExtensions;
    if (isMode(fake_cl::mode::kLongStrings)) return longExtensions();
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

// A driver refuses a buffer too short for all dimensions; in the count modes it claims absurdly many.
cl_int answerWorkItemSizes(int d, size_t size, void* value, size_t* sizeReturned) {
    if (isMode(fake_cl::mode::kHugeCounts) || isMode(fake_cl::mode::kManyCounts)) {
        if (sizeReturned) *sizeReturned = size_t(countFor(0)) * sizeof(size_t);
        return value ? CL_INVALID_VALUE : CL_SUCCESS;
    }
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

}  // namespace

extern "C" {

CL_API_ENTRY cl_int CL_API_CALL clGetPlatformIDs(cl_uint numEntries, cl_platform_id* platforms, cl_uint* count) {
    if (isMode(fake_cl::mode::kPlatformIdsFail) || (platforms && isMode(fake_cl::mode::kIdFetchFails))) {
        if (count) *count = fake_cl::kJunkCount;
        scribbleHandles(platforms, numEntries);
        return CL_OUT_OF_HOST_MEMORY;
    }
    const cl_uint available = isMode(fake_cl::mode::kNoPlatforms) ? 0 : 2;
    if (count) *count = countFor(available);
    for (cl_uint i = 0; platforms && i < numEntries && i < available; ++i) platforms[i] = &gPlatforms[i];
    return CL_SUCCESS;
}

CL_API_ENTRY cl_int CL_API_CALL clGetPlatformInfo(cl_platform_id platform, cl_platform_info param, size_t size,
                                                  void* value, size_t* sizeReturned) {
    if (!platform) return CL_INVALID_PLATFORM;
    if (isMode(fake_cl::mode::kErrors)) return failAfterScribbling(size, value, sizeReturned);
    switch (param) {
        case CL_PLATFORM_VENDOR: return answerText("Fake Vendor", size, value, sizeReturned);
        case CL_PLATFORM_NAME: return answerText(platformName(platform->index), size, value, sizeReturned);
        case CL_PLATFORM_PROFILE: return answerText("FULL_PROFILE", size, value, sizeReturned);
        case CL_PLATFORM_VERSION: return answerText("OpenCL 1.2 Fake", size, value, sizeReturned);
        case CL_PLATFORM_EXTENSIONS: return answerExtensions(platformExtensions(), size, value, sizeReturned);
        default: return CL_INVALID_VALUE;
    }
}

CL_API_ENTRY cl_int CL_API_CALL clGetDeviceIDs(cl_platform_id platform, cl_device_type, cl_uint numEntries,
                                               cl_device_id* devices, cl_uint* count) {
    if (!platform) return CL_INVALID_PLATFORM;
    // The count query that fails yet says 3: nothing of it may be believed.
    if (isMode(fake_cl::mode::kErrors) || (devices && isMode(fake_cl::mode::kIdFetchFails))) {
        if (count) *count = fake_cl::kJunkCount;
        scribbleHandles(devices, numEntries);
        return CL_OUT_OF_RESOURCES;
    }
    const cl_uint available = platform->index == 0 && !isMode(fake_cl::mode::kZeroCounts) ? 2 : 0;
    if (count) *count = countFor(available);
    if (available == 0) return isMode(fake_cl::mode::kZeroCounts) ? CL_SUCCESS : CL_DEVICE_NOT_FOUND;
    for (cl_uint i = 0; devices && i < numEntries && i < available; ++i) devices[i] = &gDevices[i];
    return CL_SUCCESS;
}

CL_API_ENTRY cl_int CL_API_CALL clGetDeviceInfo(cl_device_id device, cl_device_info param, size_t size, void* value,
                                                size_t* sizeReturned) {
    if (!device) return CL_INVALID_DEVICE;
    if (isMode(fake_cl::mode::kDeviceErrors)) return failAfterScribbling(size, value, sizeReturned);
    const int d = device->index;
    switch (param) {
        case CL_DEVICE_NAME: return answerText(deviceName(d), size, value, sizeReturned);
        case CL_DEVICE_VENDOR:
            if (d == 1) return CL_INVALID_VALUE;
            return answerText("Fake Device Vendor", size, value, sizeReturned);
        case CL_DRIVER_VERSION: return answerText("9.9", size, value, sizeReturned);
        case CL_DEVICE_PROFILE: return answerText("EMBEDDED_PROFILE", size, value, sizeReturned);
        case CL_DEVICE_VERSION: return answerText("OpenCL 1.1 Fake", size, value, sizeReturned);
        case CL_DEVICE_EXTENSIONS: return answerExtensions(deviceExtensions(d), size, value, sizeReturned);
        case CL_DEVICE_TYPE:
            return answer<cl_device_type>(d == 0 ? fake_cl::kDevice0Type : fake_cl::kDevice1Type, size, value,
                                          sizeReturned);
        case CL_DEVICE_MAX_WORK_ITEM_DIMENSIONS: return answer<cl_uint>(d == 0 ? 4 : 3, size, value, sizeReturned);
        case CL_DEVICE_MAX_WORK_ITEM_SIZES: return answerWorkItemSizes(d, size, value, sizeReturned);
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
