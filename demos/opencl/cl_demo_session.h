#pragma once

#include <cstdint>
#include <string>

#include "demos/opencl/cl_objects.h"
#include "compute/opencl_records.h"

struct DemoSettings;

// The OpenCL side that every OpenCL demo sets up alike: a platform with a device of the demo's type, one
// device of it, a context on that device alone, an in-order queue and the demo's program. Built and used on
// one demo thread; everything it made goes with release() or the object.
class ClDemoSession {
public:
    // How the platform is found: the first in discovery's list with a device of the type, or only the
    // platform chosen on the OpenCL panel.
    enum class PlatformRule { FirstWithDeviceType, ChosenPlatformOnly };
    enum class Failure { None, NoPlatform, NoContext, BuildFailed };

    ClDemoSession() = default;
    ~ClDemoSession() { release(); }
    ClDemoSession(const ClDemoSession&) = delete;
    ClDemoSession& operator=(const ClDemoSession&) = delete;

    // Platform, device, context and queue for `settings.clDeviceType`. False with failure() and clError()
    // set.
    bool open(const DemoSettings& settings, PlatformRule rule);
    // Compiles `source` for the device with `options` (null: none). False with the compiler's log in
    // buildLog().
    bool build(const std::string& source, const char* options);
    // A kernel of the built program; empty with `*error` set when the program has no such kernel.
    ClKernelObject createKernel(const char* name, cl_int* error) const;
    // A buffer of `bytes` bytes; empty with `*error` set on failure.
    ClMemObject createBuffer(cl_mem_flags flags, size_t bytes, void* hostData, cl_int* error) const;

    // Program, queue, context: in that order, whatever exists. Kernels and buffers are their holders' to
    // release.
    void release();

    Failure failure() const { return m_failure; }
    cl_int clError() const { return m_clError; }
    const std::string& buildLog() const { return m_buildLog; }

    cl_context context() const { return m_context.get(); }
    cl_command_queue queue() const { return m_queue.get(); }
    cl_device_id device() const { return m_device; }
    // Discovery's record of the platform in use; null before open() found one.
    const compute::ClPlatformRecord* platform() const { return m_platform; }
    // The largest buffer the device takes, in bytes; 0 when it does not say.
    uint64_t maxBufferBytes() const;

private:
    bool _fail(Failure failure, cl_int error);

    const compute::ClPlatformRecord* m_platform = nullptr;
    cl_device_id m_device = nullptr;
    ClContextObject m_context;
    ClQueueObject m_queue;
    ClProgramObject m_program;
    Failure m_failure = Failure::None;
    cl_int m_clError = CL_SUCCESS;
    std::string m_buildLog;
};

// Sets argument `index` of `kernel` to `value`; what the driver answers is not looked at, as an argument the
// driver refuses shows at the enqueue.
template <typename T>
void setKernelArg(cl_kernel kernel, cl_uint index, const T& value) {
    compute::clSetKernelArg(kernel, index, sizeof value, &value);
}
