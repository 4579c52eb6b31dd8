#include "demos/opencl/particle_system_cl.h"

#include <cstdlib>
#include <new>

#include "demos/opencl/demo_random.h"

namespace {

constexpr char kHeldParticlesSource[] =
#include "particles.inc"
    ;

}  // namespace

const char* heldParticlesSource() { return kHeldParticlesSource; }

const char* ParticleSystemCl::kernelName(bool sineKernel, bool nativeSin) {
    if (!sineKernel) return "updateParticleWithoutCollision";
    return nativeSin ? "updateParticleWithoutCollisionNativeSin" : "updateParticleWithoutCollisionSin";
}

bool ParticleSystemCl::create(const ClDemoSession& session, int32_t count, int width, int height, bool sineKernel,
                              bool nativeSin, bool explicitSize, cl_int* error) {
    release();
    m_kernel = session.createKernel(kernelName(sineKernel, nativeSin), error);
    if (!m_kernel) return false;
    if (count < 1) {
        *error = CL_INVALID_BUFFER_SIZE;
        return false;
    }
    m_count = uint32_t(count);
    const size_t groupSize = explicitSize ? kernelWorkGroupSize(m_kernel.get(), session.device()) : 0;
    m_range = demoRange1d(m_count, explicitSize, groupSize);
    const size_t global = m_range.global[0];
    const uint64_t limit = session.maxBufferBytes();
    if (limit != 0 && uint64_t(global) * sizeof(ParticleRecord) > limit) {
        *error = CL_INVALID_BUFFER_SIZE;
        return false;
    }
    try {
        m_records.assign(global, ParticleRecord{});
        m_positions.assign(global * 2, 0.0f);
    } catch (const std::bad_alloc&) {
        *error = CL_OUT_OF_HOST_MEMORY;
        release();
        return false;
    }
    for (uint32_t i = 0; i < m_count; ++i) {
        ParticleRecord& p = m_records[i];
        p.pos[0] = float(demoRandom()) * float(width) / 32768.0f;
        p.pos[1] = float(demoRandom()) * float(height) / 32768.0f;
        p.mass = float(demoRandom()) * 1.5f / 32768.0f * 10.0f + 5.0f;
        p.radius = 10.0f;
        m_positions[i * 2] = p.pos[0];
        m_positions[i * 2 + 1] = p.pos[1];
    }

    m_recordBuffer = session.createBuffer(CL_MEM_READ_WRITE | CL_MEM_USE_HOST_PTR, global * sizeof(ParticleRecord),
                                          m_records.data(), error);
    if (m_recordBuffer)
        m_positionBuffer =
            session.createBuffer(CL_MEM_WRITE_ONLY | CL_MEM_USE_HOST_PTR, global * 8, m_positions.data(), error);
    if (!m_positionBuffer) {
        release();
        return false;
    }
    m_queue = session.queue();
    const cl_kernel kernel = m_kernel.get();
    setKernelArg(kernel, 0, m_recordBuffer.get());
    setKernelArg(kernel, 1, m_positionBuffer.get());
    setKernelArg(kernel, 2, cl_uint(global));
    setKernelArg(kernel, 3, cl_float2{{float(width) / 2, float(height) / 2}});
    setKernelArg(kernel, 4, cl_float2{{float(width), float(height)}});
    setKernelArg(kernel, 5, 0.0f);
    return true;
}

bool ParticleSystemCl::enqueueStep(float mouseX, float mouseY, float time) {
    if (!m_kernel) return false;
    setKernelArg(m_kernel.get(), 3, cl_float2{{mouseX, mouseY}});
    setKernelArg(m_kernel.get(), 5, time);
    return compute::clEnqueueNDRangeKernel(m_queue, m_kernel.get(), 1, nullptr, m_range.global, m_range.localSizes(), 0,
                                           nullptr, nullptr) == CL_SUCCESS;
}

bool ParticleSystemCl::readPositions() {
    if (!m_positionBuffer) return false;
    return compute::clEnqueueReadBuffer(m_queue, m_positionBuffer.get(), CL_TRUE, 0, m_positions.size() * sizeof(float),
                                        m_positions.data(), 0, nullptr, nullptr) == CL_SUCCESS;
}

bool ParticleSystemCl::readRecords(std::vector<ParticleRecord>& records) const {
    if (!m_recordBuffer) return false;
    records.assign(m_records.size(), ParticleRecord{});
    return compute::clEnqueueReadBuffer(m_queue, m_recordBuffer.get(), CL_TRUE, 0,
                                        records.size() * sizeof(ParticleRecord), records.data(), 0, nullptr,
                                        nullptr) == CL_SUCCESS;
}

void ParticleSystemCl::release() {
    m_kernel.reset();
    m_recordBuffer.reset();
    m_positionBuffer.reset();
    m_queue = nullptr;
    m_count = 0;
    m_range = ClRange{};
    m_records.clear();
    m_records.shrink_to_fit();
    m_positions.clear();
    m_positions.shrink_to_fit();
}
