#include "demos/opencl/surface_deformer_cl.h"

#include <new>

namespace {

constexpr char kSurfaceDeformerSource[] =
#include "surface_deformer.inc"
    ;

}  // namespace

const char* surfaceDeformerSource() { return kSurfaceDeformerSource; }

const char* SurfaceDeformerCl::kernelName(bool withCheck, bool nativeSin) {
    if (withCheck) return nativeSin ? "surface_deformer_with_check_native_sin" : "surface_deformer_with_check";
    return nativeSin ? "surface_deformer_native_sin" : "surface_deformer";
}

bool SurfaceDeformerCl::create(const ClDemoSession& session, uint32_t width, uint32_t height, bool withCheck,
                               bool nativeSin, bool explicitSize, cl_int* error) {
    release();
    m_kernel = session.createKernel(kernelName(withCheck, nativeSin), error);
    if (!m_kernel) return false;
    m_width = width;
    m_height = height;
    const size_t vertices = size_t(width) * height;
    const uint64_t limit = session.maxBufferBytes();
    if (vertices == 0 || (limit != 0 && uint64_t(vertices) * 16 > limit)) {
        *error = CL_INVALID_BUFFER_SIZE;
        release();
        return false;
    }
    m_positions = session.createBuffer(CL_MEM_WRITE_ONLY, vertices * 16, nullptr, error);
    if (m_positions) m_normals = session.createBuffer(CL_MEM_WRITE_ONLY, vertices * 16, nullptr, error);
    if (m_normals && withCheck) {
        try {
            m_sincosHost.assign(vertices, 0.0f);
        } catch (const std::bad_alloc&) {
            *error = CL_OUT_OF_HOST_MEMORY;
            release();
            return false;
        }
        m_sincos = session.createBuffer(CL_MEM_WRITE_ONLY, vertices * 4, nullptr, error);
    }
    if (!m_normals || (withCheck && !m_sincos)) {
        release();
        return false;
    }

    m_queue = session.queue();
    const size_t groupSize = explicitSize ? kernelWorkGroupSize(m_kernel.get(), session.device()) : 0;
    m_range = demoRange2d(width, height, explicitSize, groupSize);
    const cl_kernel kernel = m_kernel.get();
    setKernelArg(kernel, 0, m_positions.get());
    setKernelArg(kernel, 1, m_normals.get());
    setKernelArg(kernel, 2, cl_uint(width));
    setKernelArg(kernel, 3, cl_uint(height));
    setKernelArg(kernel, 4, kFrequency);
    if (withCheck) setKernelArg(kernel, 8, m_sincos.get());
    return true;
}

bool SurfaceDeformerCl::enqueueStep(float time, uint32_t sinLoad, uint32_t madLoad) {
    if (!m_kernel) return false;
    setKernelArg(m_kernel.get(), 5, time);
    setKernelArg(m_kernel.get(), 6, cl_uint(sinLoad));
    setKernelArg(m_kernel.get(), 7, cl_uint(madLoad));
    return compute::clEnqueueNDRangeKernel(m_queue, m_kernel.get(), 2, nullptr, m_range.global, m_range.localSizes(), 0,
                                           nullptr, nullptr) == CL_SUCCESS;
}

bool SurfaceDeformerCl::waitForStep() const {
    float vertex[4];
    return m_positions && compute::clEnqueueReadBuffer(m_queue, m_positions.get(), CL_TRUE, 0, sizeof vertex, vertex, 0,
                                                       nullptr, nullptr) == CL_SUCCESS;
}

bool SurfaceDeformerCl::readPositions(void* target) const {
    return m_positions && target &&
           compute::clEnqueueReadBuffer(m_queue, m_positions.get(), CL_TRUE, 0, vertexCount() * 16, target, 0, nullptr,
                                        nullptr) == CL_SUCCESS;
}

bool SurfaceDeformerCl::readNormals(void* target) const {
    return m_normals && target &&
           compute::clEnqueueReadBuffer(m_queue, m_normals.get(), CL_TRUE, 0, vertexCount() * 16, target, 0, nullptr,
                                        nullptr) == CL_SUCCESS;
}

bool SurfaceDeformerCl::readCheckSum(double* sum) {
    if (!m_sincos ||
        compute::clEnqueueReadBuffer(m_queue, m_sincos.get(), CL_TRUE, 0, m_sincosHost.size() * sizeof(float),
                                     m_sincosHost.data(), 0, nullptr, nullptr) != CL_SUCCESS)
        return false;
    double total = 0;
    for (float value : m_sincosHost) total += value;
    *sum = total;
    return true;
}

void SurfaceDeformerCl::release() {
    m_kernel.reset();
    m_positions.reset();
    m_normals.reset();
    m_sincos.reset();
    m_sincosHost.clear();
    m_queue = nullptr;
    m_range = ClRange{};
    m_width = m_height = 0;
}
