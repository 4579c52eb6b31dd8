#include "demos/gl_utility/render_window_gl.h"

#include <GL/glew.h>

#include "base/log_sink.h"
#include "demos/gl_utility/context_attempts.h"
#include "demos/gl_utility/sample_choice.h"

namespace {

// How long present() waits for a headless frame before it gives up on that frame: one second.
constexpr GLuint64 kFrameWaitNs = 1000000000ull;

std::vector<int> offeredSampleCounts() {
    std::vector<int> counts;
    GLint number = 0;
    if (glGetInternalformativ) {
        glGetInternalformativ(GL_RENDERBUFFER, GL_RGBA8, GL_NUM_SAMPLE_COUNTS, 1, &number);
        if (number > 0) {
            counts.resize(size_t(number));
            glGetInternalformativ(GL_RENDERBUFFER, GL_RGBA8, GL_SAMPLES, number, counts.data());
        }
    } else {
        GLint maxSamples = 0;
        glGetIntegerv(GL_MAX_SAMPLES, &maxSamples);
        if (maxSamples > 0) counts.push_back(maxSamples);
    }
    return counts;
}

}  // namespace

RenderWindowGL::~RenderWindowGL() { release(); }

bool RenderWindowGL::create(const NativeWindow& window, int widthIn, int heightIn, int msaaSamples,
                            uint32_t kind, bool keepLastFrame) {
    release();
    int major = 0, minor = 0;
    if (!contextKindVersion(kind, &major, &minor) || widthIn <= 0 || heightIn <= 0) return false;
    width = widthIn;
    height = heightIn;
    contextKind = kind;
    if (!_createEglContext(window, major, minor, msaaSamples, keepLastFrame)) {
        release();
        return false;
    }
    current = true;
    if (m_headless && !_createOffscreenFramebuffer(msaaSamples)) {
        release();
        return false;
    }
    valid = true;
    _setStartingState(msaaSamples);
    return true;
}

bool RenderWindowGL::_createOffscreenFramebuffer(int msaaSamples) {
    if (!glGenFramebuffers || !glGenRenderbuffers) return false;
    m_samples = msaaSamples > 0 ? chooseSampleCount(offeredSampleCounts(), msaaSamples) : 0;
    glGenFramebuffers(1, &m_drawFramebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_drawFramebuffer);
    glGenRenderbuffers(1, &m_colorBuffer);
    glBindRenderbuffer(GL_RENDERBUFFER, m_colorBuffer);
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, m_samples, GL_RGBA8, width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_colorBuffer);
    glGenRenderbuffers(1, &m_depthBuffer);
    glBindRenderbuffer(GL_RENDERBUFFER, m_depthBuffer);
    glRenderbufferStorageMultisample(GL_RENDERBUFFER, m_samples, GL_DEPTH24_STENCIL8, width, height);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER, m_depthBuffer);
    bool complete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    if (complete && m_samples > 0) {
        glGenFramebuffers(1, &m_resolveFramebuffer);
        glBindFramebuffer(GL_FRAMEBUFFER, m_resolveFramebuffer);
        glGenRenderbuffers(1, &m_resolveColorBuffer);
        glBindRenderbuffer(GL_RENDERBUFFER, m_resolveColorBuffer);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width, height);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_resolveColorBuffer);
        complete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    }
    glBindRenderbuffer(GL_RENDERBUFFER, 0);
    glBindFramebuffer(GL_FRAMEBUFFER, m_drawFramebuffer);
    return complete;
}

void RenderWindowGL::_deleteOffscreenFramebuffer() {
    if (glDeleteFramebuffers) {
        for (GLuint* framebuffer : {&m_drawFramebuffer, &m_resolveFramebuffer})
            if (*framebuffer) glDeleteFramebuffers(1, framebuffer);
    }
    if (glDeleteRenderbuffers) {
        for (GLuint* renderbuffer : {&m_colorBuffer, &m_depthBuffer, &m_resolveColorBuffer})
            if (*renderbuffer) glDeleteRenderbuffers(1, renderbuffer);
    }
    m_drawFramebuffer = m_resolveFramebuffer = m_colorBuffer = m_depthBuffer = m_resolveColorBuffer = 0;
}

void RenderWindowGL::_setStartingState(int msaaSamples) {
    // A core profile (the ladder's later rungs) draws nothing without a vertex array object; one bound for
    // the context's life lets the demos' code run unchanged on every profile.
    if (glGenVertexArrays) {
        glGenVertexArrays(1, &m_vertexArray);
        glBindVertexArray(m_vertexArray);
    }
    for (int check = 0; check < 2; ++check) {
        const GLenum error = glGetError();
        if (error != GL_NO_ERROR) base::logLine("Tholos - OpenGL error has occured: %d", int(error));
    }
    glViewport(0, 0, width, height);
    glClearColor(0.0f, 1.0f, 0.0f, 1.0f);
    glEnable(GL_DEPTH_TEST);
    glClearDepth(1.0);
    glDepthFunc(GL_LEQUAL);
    glDepthMask(GL_TRUE);
    glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
    glEnable(GL_CULL_FACE);
    if (msaaSamples > 0 && m_samples > 0) glEnable(GL_MULTISAMPLE);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
}

bool RenderWindowGL::makeCurrent() {
    if (!valid) return false;
    if (current) return true;
    current = _makeEglCurrent();
    return current;
}

void RenderWindowGL::present() {
    if (!valid) return;
    if (!m_headless) {
        _swapEglBuffers();
        return;
    }
    if (m_resolveFramebuffer) {
        glBindFramebuffer(GL_READ_FRAMEBUFFER, m_drawFramebuffer);
        glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_resolveFramebuffer);
        glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
        glBindFramebuffer(GL_FRAMEBUFFER, m_drawFramebuffer);
    }
    _waitForFrame();
}

// Headless frames end where a window would swap: when the GPU has finished them, so that headless and
// windowed frame rates measure the same work.
void RenderWindowGL::_waitForFrame() {
    if (!glFenceSync || !glClientWaitSync) {
        glFinish();
        return;
    }
    GLsync fence = glFenceSync(GL_SYNC_GPU_COMMANDS_COMPLETE, 0);
    if (!fence) {
        glFinish();
        return;
    }
    glClientWaitSync(fence, GL_SYNC_FLUSH_COMMANDS_BIT, kFrameWaitNs);
    glDeleteSync(fence);
}

bool RenderWindowGL::readLastFrame(std::vector<uint8_t>& rgba) {
    if (!valid || !makeCurrent()) return false;
    rgba.assign(size_t(width) * size_t(height) * 4, 0);
    GLint previousRead = 0;
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &previousRead);
    if (m_headless) {
        glBindFramebuffer(GL_READ_FRAMEBUFFER, m_resolveFramebuffer ? m_resolveFramebuffer : m_drawFramebuffer);
    } else {
        glBindFramebuffer(GL_READ_FRAMEBUFFER, 0);
        glReadBuffer(GL_BACK);
    }
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    while (glGetError() != GL_NO_ERROR) {
    }
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    const bool ok = glGetError() == GL_NO_ERROR;
    glBindFramebuffer(GL_READ_FRAMEBUFFER, GLuint(previousRead));
    return ok;
}

bool RenderWindowGL::getVersion(int* major, int* minor) const {
    if (!major || !minor || !m_eglContext) return false;
    const char* version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    if (!version || !version[0]) return false;
    *major = version[0] - '0';
    if (*major < 3) {
        *minor = version[1] == '.' ? version[2] - '0' : 0;
        return true;
    }
    glGetIntegerv(GL_MAJOR_VERSION, major);
    glGetIntegerv(GL_MINOR_VERSION, minor);
    return true;
}

void RenderWindowGL::release() {
    if (m_eglContext && (current || _makeEglCurrent())) {
        _deleteOffscreenFramebuffer();
        if (m_vertexArray && glDeleteVertexArrays) glDeleteVertexArrays(1, &m_vertexArray);
    }
    m_vertexArray = 0;
    m_drawFramebuffer = m_resolveFramebuffer = m_colorBuffer = m_depthBuffer = m_resolveColorBuffer = 0;
    _releaseEgl();
    current = false;
    valid = false;
    m_samples = 0;
    m_headless = false;
}
