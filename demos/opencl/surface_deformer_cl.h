#pragma once

#include <cstdint>
#include <vector>

#include "demos/opencl/cl_demo_session.h"
#include "demos/opencl/cl_work_sizes.h"

// The deformer kernels the program holds, all four forms in one source.
const char* surfaceDeformerSource();

// The deforming surface's compute side: positions and normals of a width x height vertex grid, four floats
// each, row by row, and with the check the per-vertex sums of the two loads.
class SurfaceDeformerCl {
public:
    static constexpr float kFrequency = 4.1f;

    // "surface_deformer", with "_with_check" and "_native_sin" as asked.
    static const char* kernelName(bool withCheck, bool nativeSin);

    SurfaceDeformerCl() = default;
    SurfaceDeformerCl(const SurfaceDeformerCl&) = delete;
    SurfaceDeformerCl& operator=(const SurfaceDeformerCl&) = delete;

    // On the session's program built from surfaceDeformerSource(). False with `*error` set when the kernel
    // or a buffer cannot be had.
    bool create(const ClDemoSession& session, uint32_t width, uint32_t height, bool withCheck, bool nativeSin,
                bool explicitSize, cl_int* error);
    // One step at `time` seconds with the two loads; enqueued, not waited for.
    bool enqueueStep(float time, uint32_t sinLoad, uint32_t madLoad);
    // Waits until the step has run, by a blocking read of one vertex: without it a frame that copies
    // nothing would only queue steps, faster than the device runs them.
    bool waitForStep() const;
    // Blocking reads of vertexCount() x 16 bytes into `target`.
    bool readPositions(void* target) const;
    bool readNormals(void* target) const;
    // Blocking read of the check buffer, summed; false without the check.
    bool readCheckSum(double* sum);
    void release();

    size_t vertexCount() const { return size_t(m_width) * m_height; }
    const ClRange& range() const { return m_range; }

private:
    cl_command_queue m_queue = nullptr;
    ClKernelObject m_kernel;
    ClMemObject m_positions;
    ClMemObject m_normals;
    ClMemObject m_sincos;
    std::vector<float> m_sincosHost;
    ClRange m_range;
    uint32_t m_width = 0;
    uint32_t m_height = 0;
};
