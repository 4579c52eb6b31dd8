#include "kalidor/render_window.h"

#include <atomic>

#include "kalidor/opengl/gl_api.h"
#include "kalidor/opengl/platform/egl_probe.h"

namespace Kalidornm {

uint32_t nextLibrarySerial() {
    static std::atomic<uint32_t> counter{0};
    return ++counter;
}

RenderWindow::RenderWindow() : m_serial(nextLibrarySerial()), m_caps(std::make_unique<HardwareCaps>()) {}

RenderWindow::~RenderWindow() { destroyContext(); }

bool RenderWindow::create(int w, int h, int color, int depth, int stencil, int samples, int glMajor, int glMinor,
                          bool debug, GpuList& gpus) {
    if (!m_caps) return false;
    m_caps->init(gpus);
    requestedGlMajor = glMajor;
    requestedGlMinor = glMinor;
    width = w, height = h, colorBits = color, depthBits = depth, stencilBits = stencil, msaaSamples = samples;
    debugContext = debug;
    if (glMajor >= 1) _createProbeContext();
    return true;
}

void RenderWindow::destroyContext() { _destroyProbeContext(); }

}  // namespace Kalidornm
