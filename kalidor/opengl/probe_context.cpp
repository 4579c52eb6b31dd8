#include <cstring>

#include "kalidor/library_log.h"
#include "kalidor/opengl/extension_list.h"
#include "kalidor/opengl/gl_capability_reader.h"
#include "kalidor/opengl/msaa_modes.h"
#include "kalidor/opengl/platform/egl_probe.h"
#include "kalidor/opengl/platform/glew_api.h"
#include "kalidor/render_window.h"

namespace Kalidornm {

// Makes the headless probe context by the version ladder and reads everything OpenGL offers through it. The
// context stays current on this thread until _destroyProbeContext.
bool RenderWindow::_createProbeContext() {
    LibraryLog& trace = zTrace();
    trace.write("RenderWindow::initializeGLContextWin32()...");
    if (!m_caps) return false;
    HardwareCaps& caps = *m_caps;
    // A machine replayed from a fixture tree has no OpenGL driver of its own.
    if (caps.sources.rootDir != "/") return false;

    std::vector<std::string> primaryDrmNodes;
    if (const PciDevice* primary = caps._pciDeviceOfSlot(0))
        for (const std::string& node : {primary->drmCard, primary->renderNode})
            if (!node.empty()) primaryDrmNodes.push_back(node);
    auto probe = std::make_unique<EglProbe>();
    if (!probe->openDisplay(primaryDrmNodes)) return false;

    OpenGlState& state = caps.gl;
    state.msaaModes = scanMsaaModes(probe->configTraits(), colorBits, depthBits, stencilBits);
    state.maxSamples = state.msaaModes.empty() ? 0 : state.msaaModes.back().samples;

    const char* displayExtensions = probe->displayExtensions();
    const bool canVersion = displayExtensions && std::strstr(displayExtensions, "EGL_KHR_create_context");
    if (requestedGlMajor >= 3 && canVersion) runContextLadder(*probe, requestedGlMajor, requestedGlMinor, debugContext);
    if (!probe->hasContext()) probe->tryCreate({egl_attr::kNone});
    if (probe->hasContext() && !probe->makeCurrent()) probe->destroyContext();
    if (!probe->hasContext()) return false;

    auto api = std::make_unique<GlewApi>(displayExtensions);
    int32_t major = 1, minor = 0;
    getOpenGLVersion(*api, major, minor);
    trace.write("RenderWindow::initializeGLContextWin32() - getOpenGLVersion(): %d.%d", major, minor);
    trace.write("RenderWindow::initializeGLContextWin32() - glewInit()...");
    GlewApi::initGlew();
    trace.write("RenderWindow::initializeGLContextWin32() - buildOpenGLExtensionsList()...");
    buildOpenGLExtensionsList(*api, state);
    trace.write("RenderWindow::initializeGLContextWin32() - detectOpenGLApiVersion()...");
    detectOpenGLApiVersion(*api, state);
    trace.write("RenderWindow::initializeGLContextWin32() - initOpenGLRendererData()...");
    initOpenGLRendererData(*api, caps);
    trace.write("RenderWindow::initializeGLContextWin32() - readOpenGLCaps()...");
    readOpenGLCaps(*api, caps);

    if (state.msaaModes.empty()) {
        int32_t maxSamples[16] = {};
        api->getIntegerv(gl::kMaxSamples, maxSamples);
        state.msaaModes = framebufferMsaaModes(maxSamples[0]);
        state.maxSamples = state.msaaModes.empty() ? 0 : state.msaaModes.back().samples;
    }
    // Last step of the probe: the primary device's driver values, which the scan's driver text is made of.
    caps.initGraphicsControllerData();
    trace.write("RenderWindow::initializeGLContextWin32() OK.");

    m_hasNvxMemoryInfo = hasExtension(state.extensions, "GL_NVX_gpu_memory_info");
    m_hasAtiMemInfo = hasExtension(state.extensions, "GL_ATI_meminfo");
    m_probe = std::move(probe);
    m_glApi = std::move(api);
    return true;
}

void RenderWindow::_destroyProbeContext() {
    m_glApi.reset();
    m_probe.reset();
}

bool RenderWindow::readNvxMemoryKb(int32_t* totalKb, int32_t* freeKb) {
    if (!m_glApi || !m_hasNvxMemoryInfo) return false;
    int32_t total[16] = {}, available[16] = {};
    m_glApi->getIntegerv(gl::kNvxTotalAvailableMemory, total);
    m_glApi->getIntegerv(gl::kNvxCurrentAvailableVidmem, available);
    if (totalKb) *totalKb = total[0];
    if (freeKb) *freeKb = available[0];
    return true;
}

// No EGL or GL query gives an AMD board's total memory, so the total is the "not available" value -1 shifted
// by ten bits, and stays so.
int32_t RenderWindow::atiTotalMemoryKb() {
    if (!m_caps) return -1024;
    int32_t& total = m_caps->gl.atiTotalMemoryKb;
    if (total == -1) total = -1 * 1024;
    return total;
}

int32_t RenderWindow::atiUsedMemoryKb() {
    if (!m_glApi || !m_hasAtiMemInfo) return -1;
    int32_t freeMemory[16] = {};
    m_glApi->getIntegerv(gl::kTextureFreeMemoryAti, freeMemory);
    return atiTotalMemoryKb() - freeMemory[0];
}

}  // namespace Kalidornm
