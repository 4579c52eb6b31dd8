#include "demos/opencl/cl_demo_session.h"

#include <vector>

#include "demos/opencl/cl_device_choice.h"
#include "compute/opencl_discovery.h"
#include "demos/harness/demo_settings.h"

bool ClDemoSession::_fail(Failure failure, cl_int error) {
    m_failure = failure;
    m_clError = error;
    return false;
}

bool ClDemoSession::open(const DemoSettings& settings, PlatformRule rule) {
    release();
    m_failure = Failure::None;
    m_clError = CL_SUCCESS;
    const std::vector<compute::ClPlatformRecord>& platforms = compute::clPlatforms();
    const uint32_t type = settings.clDeviceType;
    const int index = rule == PlatformRule::FirstWithDeviceType
                          ? firstPlatformWithDeviceType(platforms, type)
                          : chosenPlatformWithDeviceType(platforms, settings.clPlatformIndex, type);
    if (index < 0 || !platforms[size_t(index)].platformId) return _fail(Failure::NoPlatform, CL_DEVICE_NOT_FOUND);
    m_platform = &platforms[size_t(index)];

    cl_uint count = 0;
    cl_int error = compute::clGetDeviceIDs(m_platform->platformId, type, 0, nullptr, &count);
    if (error != CL_SUCCESS || count == 0)
        return _fail(Failure::NoContext, error != CL_SUCCESS ? error : CL_DEVICE_NOT_FOUND);
    std::vector<cl_device_id> devices(count);
    error = compute::clGetDeviceIDs(m_platform->platformId, type, count, devices.data(), nullptr);
    if (error != CL_SUCCESS) return _fail(Failure::NoContext, error);
    m_device = devices[demoDeviceIndex(settings, count)];

    const cl_context_properties properties[] = {CL_CONTEXT_PLATFORM,
                                                reinterpret_cast<cl_context_properties>(m_platform->platformId), 0};
    error = CL_SUCCESS;
    m_context.reset(compute::clCreateContext(properties, 1, &m_device, nullptr, nullptr, &error));
    if (!m_context) return _fail(Failure::NoContext, error != CL_SUCCESS ? error : CL_INVALID_CONTEXT);
    error = CL_SUCCESS;
    m_queue.reset(compute::clCreateCommandQueue(m_context.get(), m_device, 0, &error));
    if (!m_queue) return _fail(Failure::NoContext, error != CL_SUCCESS ? error : CL_INVALID_COMMAND_QUEUE);
    return true;
}

bool ClDemoSession::build(const std::string& source, const char* options) {
    m_buildLog.clear();
    const char* text = source.c_str();
    const size_t length = source.size();
    cl_int error = CL_SUCCESS;
    m_program.reset(compute::clCreateProgramWithSource(m_context.get(), 1, &text, &length, &error));
    if (!m_program) return _fail(Failure::BuildFailed, error != CL_SUCCESS ? error : CL_INVALID_PROGRAM);
    error = compute::clBuildProgram(m_program.get(), 1, &m_device, options, nullptr, nullptr);
    if (error == CL_SUCCESS) return true;

    size_t size = 0;
    if (compute::clGetProgramBuildInfo(m_program.get(), m_device, CL_PROGRAM_BUILD_LOG, 0, nullptr, &size) ==
            CL_SUCCESS &&
        size > 0) {
        std::string log(size, '\0');
        if (compute::clGetProgramBuildInfo(m_program.get(), m_device, CL_PROGRAM_BUILD_LOG, size, log.data(),
                                           nullptr) == CL_SUCCESS)
            m_buildLog = log.c_str();
    }
    return _fail(Failure::BuildFailed, error);
}

ClKernelObject ClDemoSession::createKernel(const char* name, cl_int* error) const {
    *error = CL_SUCCESS;
    ClKernelObject kernel(compute::clCreateKernel(m_program.get(), name, error));
    if (!kernel && *error == CL_SUCCESS) *error = CL_INVALID_KERNEL_NAME;
    return kernel;
}

ClMemObject ClDemoSession::createBuffer(cl_mem_flags flags, size_t bytes, void* hostData, cl_int* error) const {
    *error = CL_SUCCESS;
    ClMemObject buffer(compute::clCreateBuffer(m_context.get(), flags, bytes, hostData, error));
    if (!buffer && *error == CL_SUCCESS) *error = CL_INVALID_BUFFER_SIZE;
    return buffer;
}

uint64_t ClDemoSession::maxBufferBytes() const {
    cl_ulong bytes = 0;
    if (compute::clGetDeviceInfo(m_device, CL_DEVICE_MAX_MEM_ALLOC_SIZE, sizeof bytes, &bytes, nullptr) != CL_SUCCESS)
        return 0;
    return bytes;
}

void ClDemoSession::release() {
    m_program.reset();
    m_queue.reset();
    m_context.reset();
    m_device = nullptr;
    m_platform = nullptr;
}
