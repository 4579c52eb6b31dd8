#pragma once

#include <cstdint>

#include "demos/opencl/cl_demo_session.h"
#include "demos/opencl/cl_work_sizes.h"

// The copy of media/postfx.cl the program runs when that file cannot be opened.
const char* heldPostFxSource();

// The glow filter's compute side: a width x height picture of one uint a pixel in, the filtered one out.
class PostFxCl {
public:
    static constexpr int kRadius = 8;
    static constexpr float kThreshold = 0.8f;
    static constexpr float kHighlight = 4.0f;
    static constexpr size_t kLocalGroupSide = 16;  // the local-memory form's groups, whatever the options

    // "post_fx_kernel_local_mem" or "post_fx_kernel_global_mem".
    static const char* kernelName(bool localMem);

    PostFxCl() = default;
    PostFxCl(const PostFxCl&) = delete;
    PostFxCl& operator=(const PostFxCl&) = delete;

    // On the session's program built from the post FX source. False with `*error` set when the kernel or a
    // buffer cannot be had.
    bool create(const ClDemoSession& session, int width, int height, bool localMem, bool explicitSize, cl_int* error);
    // Blocking write of width x height x 4 bytes.
    bool writeInput(const void* pixels) const;
    // The filter over the whole picture; enqueued, not waited for.
    bool enqueueFilter() const;
    // Blocking read of width x height x 4 bytes.
    bool readOutput(void* pixels) const;
    void release();

    const ClRange& range() const { return m_range; }

private:
    size_t _bytes() const { return size_t(m_width) * size_t(m_height) * 4; }

    cl_command_queue m_queue = nullptr;
    ClKernelObject m_kernel;
    ClMemObject m_input;
    ClMemObject m_output;
    ClRange m_range;
    int m_width = 0;
    int m_height = 0;
};
