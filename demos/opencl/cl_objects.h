#pragma once

#include <utility>

#include "compute/opencl_entry_points.h"

// One OpenCL object, released through the entry-point table when the holder goes. The OpenCL library stays
// loaded until the program's shutdown, after every demo has ended, so a release always finds its function.
template <typename Handle, cl_int (*Release)(Handle)>
class ClObject {
public:
    ClObject() = default;
    explicit ClObject(Handle handle) : m_handle(handle) {}
    ~ClObject() { reset(); }
    ClObject(ClObject&& other) noexcept : m_handle(std::exchange(other.m_handle, nullptr)) {}
    ClObject& operator=(ClObject&& other) noexcept {
        if (this != &other) reset(std::exchange(other.m_handle, nullptr));
        return *this;
    }
    ClObject(const ClObject&) = delete;
    ClObject& operator=(const ClObject&) = delete;

    void reset(Handle handle = nullptr) {
        if (m_handle) Release(m_handle);
        m_handle = handle;
    }
    Handle get() const { return m_handle; }
    // The handle's address, for calls that take an array of one (clSetKernelArg).
    const Handle* address() const { return &m_handle; }
    explicit operator bool() const { return m_handle != nullptr; }

private:
    Handle m_handle = nullptr;
};

using ClContextObject = ClObject<cl_context, compute::clReleaseContext>;
using ClQueueObject = ClObject<cl_command_queue, compute::clReleaseCommandQueue>;
using ClProgramObject = ClObject<cl_program, compute::clReleaseProgram>;
using ClKernelObject = ClObject<cl_kernel, compute::clReleaseKernel>;
using ClMemObject = ClObject<cl_mem, compute::clReleaseMemObject>;
