#pragma once

#include <cstdint>

#include "demos/opencl/cl_demo_session.h"
#include "demos/opencl/cl_work_sizes.h"

// The quaternion Julia set's compute side: a size x size picture, four bytes a pixel (blue, green, red,
// alpha), row by row, drawn by the kernel "QJuliaKernel" of media/qjulia_kernel.cl.
class JuliaCl {
public:
    static constexpr float kEpsilon = 0.003f;

    JuliaCl() = default;
    JuliaCl(const JuliaCl&) = delete;
    JuliaCl& operator=(const JuliaCl&) = delete;

    // On the session's built Julia program, with `mu` and `color` as the first picture's. False with
    // `*error` set when the kernel or the buffer cannot be had.
    bool create(const ClDemoSession& session, int size, bool explicitSize, const float mu[4], const float color[4],
                cl_int* error);
    void setParameters(const float mu[4], const float color[4]);
    // One picture; enqueued, not waited for.
    bool enqueueRender() const;
    // Blocking read of size x size x 4 bytes.
    bool readPixels(void* pixels) const;
    void release();

    const ClRange& range() const { return m_range; }

private:
    cl_command_queue m_queue = nullptr;
    ClKernelObject m_kernel;
    ClMemObject m_output;
    ClRange m_range;
    size_t m_bytes = 0;
};

// How the Julia demo moves: mu and the colour each glide from one target to the next in 100 frames, and a
// new target is drawn from the C library's generator when one is reached.
struct JuliaAnimation {
    float muFrom[4] = {-0.278f, -0.479f, 0.0f, 0.0f};
    float muTo[4] = {0.278f, 0.479f, 0.0f, 0.0f};
    float mu[4] = {-0.278f, -0.479f, -0.231f, 0.235f};
    float colorFrom[4] = {0.25f, 0.45f, 1.0f, 1.0f};
    float colorTo[4] = {0.25f, 0.45f, 1.0f, 1.0f};
    float color[4] = {0.25f, 0.45f, 1.0f, 1.0f};
    float muFactor = 0.0f;
    float colorFactor = 0.0f;

    // One frame's move.
    void advance();
};
