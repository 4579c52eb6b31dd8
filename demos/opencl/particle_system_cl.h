#pragma once

#include <cstdint>
#include <vector>

#include "demos/opencl/cl_demo_session.h"
#include "demos/opencl/cl_work_sizes.h"

// The copy of media/particles.cl the program runs when that file cannot be opened.
const char* heldParticlesSource();

// One particle as the host and the kernels hold it: 32 bytes.
struct ParticleRecord {
    float pos[2];
    float accel[2];
    float vel[2];
    float mass;
    float radius;
};
static_assert(sizeof(ParticleRecord) == 32, "the kernels' Particle is 32 bytes");

// The particle swarm's compute side: the records and the drawn positions in host memory that the buffers
// use, and one kernel step at a time. The global range may exceed the particle count; the records beyond it
// stay zero, without mass, and never move.
class ParticleSystemCl {
public:
    // "updateParticleWithoutCollision", or one of its two sine forms.
    static const char* kernelName(bool sineKernel, bool nativeSin);

    ParticleSystemCl() = default;
    ParticleSystemCl(const ParticleSystemCl&) = delete;
    ParticleSystemCl& operator=(const ParticleSystemCl&) = delete;

    // `count` particles at random places in a width x height area, on the session's built program. False
    // with `*error` set when the kernel, the memory or a buffer cannot be had (a count below 1 included).
    bool create(const ClDemoSession& session, int32_t count, int width, int height, bool sineKernel, bool nativeSin,
                bool explicitSize, cl_int* error);
    // One step with the pointer at (mouseX, mouseY), y upwards, at `time` seconds: enqueued, not waited for.
    bool enqueueStep(float mouseX, float mouseY, float time);
    // Blocking read of the global range's positions into positions().
    bool readPositions();
    // Blocking read of the records as the device holds them.
    bool readRecords(std::vector<ParticleRecord>& records) const;
    void release();

    uint32_t count() const { return m_count; }
    uint32_t globalCount() const { return uint32_t(m_range.global[0]); }
    const ClRange& range() const { return m_range; }
    // x, y pairs of the whole global range.
    const float* positions() const { return m_positions.data(); }
    // The host memory the record buffer uses: the records as created until the first step, the device's
    // afterwards (readRecords() gives those).
    const std::vector<ParticleRecord>& hostRecords() const { return m_records; }

private:
    cl_command_queue m_queue = nullptr;
    ClKernelObject m_kernel;
    ClMemObject m_recordBuffer;
    ClMemObject m_positionBuffer;
    ClRange m_range;
    uint32_t m_count = 0;
    std::vector<ParticleRecord> m_records;
    std::vector<float> m_positions;
};
