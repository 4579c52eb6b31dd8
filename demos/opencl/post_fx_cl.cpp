#include "demos/opencl/post_fx_cl.h"

namespace {

constexpr char kHeldPostFxSource[] =
#include "postfx.inc"
    ;

}  // namespace

const char* heldPostFxSource() { return kHeldPostFxSource; }

const char* PostFxCl::kernelName(bool localMem) {
    return localMem ? "post_fx_kernel_local_mem" : "post_fx_kernel_global_mem";
}

bool PostFxCl::create(const ClDemoSession& session, int width, int height, bool localMem, bool explicitSize,
                      cl_int* error) {
    release();
    m_kernel = session.createKernel(kernelName(localMem), error);
    if (!m_kernel) return false;
    if (width < 1 || height < 1) {
        *error = CL_INVALID_BUFFER_SIZE;
        release();
        return false;
    }
    m_width = width;
    m_height = height;
    m_input = session.createBuffer(CL_MEM_READ_ONLY, _bytes(), nullptr, error);
    if (m_input) m_output = session.createBuffer(CL_MEM_WRITE_ONLY, _bytes(), nullptr, error);
    if (!m_output) {
        release();
        return false;
    }

    m_queue = session.queue();
    if (localMem)
        m_range = fixedGroupRange2d(size_t(width), size_t(height), kLocalGroupSide, kLocalGroupSide);
    else
        m_range = demoRange2d(size_t(width), size_t(height), explicitSize,
                              explicitSize ? kernelWorkGroupSize(m_kernel.get(), session.device()) : 0);
    // The tile's row: the group's width and a border of the radius on each side. Only the local form reads it.
    const size_t tileWidth = m_range.local[0] + 2 * kRadius;
    const cl_kernel kernel = m_kernel.get();
    setKernelArg(kernel, 0, m_input.get());
    setKernelArg(kernel, 1, m_output.get());
    setKernelArg(kernel, 2, cl_int(width));
    setKernelArg(kernel, 3, cl_int(height));
    setKernelArg(kernel, 4, cl_int(tileWidth));
    setKernelArg(kernel, 5, cl_int(kRadius));
    setKernelArg(kernel, 6, kThreshold);
    setKernelArg(kernel, 7, kHighlight);
    if (localMem) {
        // Room for a border of twice the radius on every side, more than the tile needs.
        const size_t localBytes = (m_range.local[1] + 32) * (m_range.local[0] + 32) * 4;
        compute::clSetKernelArg(kernel, 8, localBytes, nullptr);
    }
    return true;
}

bool PostFxCl::writeInput(const void* pixels) const {
    return m_input && pixels &&
           compute::clEnqueueWriteBuffer(m_queue, m_input.get(), CL_TRUE, 0, _bytes(), pixels, 0, nullptr, nullptr) ==
               CL_SUCCESS;
}

bool PostFxCl::enqueueFilter() const {
    return m_kernel && compute::clEnqueueNDRangeKernel(m_queue, m_kernel.get(), 2, nullptr, m_range.global,
                                                       m_range.localSizes(), 0, nullptr, nullptr) == CL_SUCCESS;
}

bool PostFxCl::readOutput(void* pixels) const {
    return m_output && pixels &&
           compute::clEnqueueReadBuffer(m_queue, m_output.get(), CL_TRUE, 0, _bytes(), pixels, 0, nullptr, nullptr) ==
               CL_SUCCESS;
}

void PostFxCl::release() {
    m_kernel.reset();
    m_input.reset();
    m_output.reset();
    m_queue = nullptr;
    m_range = ClRange{};
    m_width = m_height = 0;
}
