#include "demos/opencl/julia_cl.h"

#include "demos/opencl/demo_random.h"

bool JuliaCl::create(const ClDemoSession& session, int size, bool explicitSize, const float mu[4], const float color[4],
                     cl_int* error) {
    release();
    m_kernel = session.createKernel("QJuliaKernel", error);
    if (!m_kernel) return false;
    const uint64_t limit = session.maxBufferBytes();
    if (size < 1 || (limit != 0 && uint64_t(size) * uint64_t(size) * 4 > limit)) {
        *error = CL_INVALID_BUFFER_SIZE;
        release();
        return false;
    }
    m_bytes = size_t(size) * size_t(size) * 4;
    m_output = session.createBuffer(CL_MEM_WRITE_ONLY, m_bytes, nullptr, error);
    if (!m_output) {
        release();
        return false;
    }
    m_queue = session.queue();
    m_range = demoRange2d(size_t(size), size_t(size), explicitSize,
                          explicitSize ? kernelWorkGroupSize(m_kernel.get(), session.device()) : 0);
    // The kernel takes the picture's width from the range, so the range must be the picture: groups that
    // do not divide it are left to the driver.
    if (m_range.global[0] != size_t(size) || m_range.global[1] != size_t(size))
        m_range = demoRange2d(size_t(size), size_t(size), false, 0);
    setKernelArg(m_kernel.get(), 0, m_output.get());
    setKernelArg(m_kernel.get(), 3, kEpsilon);
    setParameters(mu, color);
    return true;
}

void JuliaCl::setParameters(const float mu[4], const float color[4]) {
    if (!m_kernel) return;
    setKernelArg(m_kernel.get(), 1, cl_float4{{mu[0], mu[1], mu[2], mu[3]}});
    setKernelArg(m_kernel.get(), 2, cl_float4{{color[0], color[1], color[2], color[3]}});
}

bool JuliaCl::enqueueRender() const {
    return m_kernel && compute::clEnqueueNDRangeKernel(m_queue, m_kernel.get(), 2, nullptr, m_range.global,
                                                       m_range.localSizes(), 0, nullptr, nullptr) == CL_SUCCESS;
}

bool JuliaCl::readPixels(void* pixels) const {
    return m_output && pixels &&
           compute::clEnqueueReadBuffer(m_queue, m_output.get(), CL_TRUE, 0, m_bytes, pixels, 0, nullptr, nullptr) ==
               CL_SUCCESS;
}

void JuliaCl::release() {
    m_kernel.reset();
    m_output.reset();
    m_queue = nullptr;
    m_range = ClRange{};
    m_bytes = 0;
}

void JuliaAnimation::advance() {
    muFactor += 0.01f;
    if (muFactor >= 1.0f) {
        muFactor = 0.0f;
        for (int i = 0; i < 4; ++i) {
            muFrom[i] = muTo[i];
            muTo[i] = float(demoRandom()) / 32768.0f;
        }
    }
    for (int i = 0; i < 4; ++i) mu[i] = muFrom[i] * (1.0f - muFactor) + muTo[i] * muFactor;

    colorFactor += 0.01f;
    if (colorFactor >= 1.0f) {
        colorFactor = 0.0f;
        for (int i = 0; i < 4; ++i) {
            colorFrom[i] = colorTo[i];
            colorTo[i] = i < 3 ? float(demoRandom()) / 32768.0f : 1.0f;
        }
    }
    for (int i = 0; i < 4; ++i) color[i] = colorFrom[i] * (1.0f - colorFactor) + colorTo[i] * colorFactor;
}
