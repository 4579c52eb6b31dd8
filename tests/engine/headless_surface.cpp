#include "tests/engine/headless_surface.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/glew.h>

#include "demos/gl_utility/gl_entry_points.h"

HeadlessSurface::~HeadlessSurface() {
    if (!m_context) return;
    makeCurrent();
    glDeleteFramebuffers(1, &m_framebuffer);
    glDeleteRenderbuffers(1, &m_color);
    glDeleteRenderbuffers(1, &m_depth);
    eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(m_display, m_context);
}

bool HeadlessSurface::create(int width, int height) {
    // The display stays initialised for the process: other surfaces of the same test share it.
    static EGLDisplay display = [] {
        EGLDisplay d = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        return d != EGL_NO_DISPLAY && eglInitialize(d, nullptr, nullptr) ? d : EGL_NO_DISPLAY;
    }();
    if (display == EGL_NO_DISPLAY || !eglBindAPI(EGL_OPENGL_API)) return false;
    const EGLint configAttributes[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint count = 0;
    eglChooseConfig(display, configAttributes, &config, 1, &count);
    EGLContext context = eglCreateContext(display, count > 0 ? config : EGL_NO_CONFIG_KHR, EGL_NO_CONTEXT, nullptr);
    if (context == EGL_NO_CONTEXT) return false;
    m_display = display;
    m_context = context;
    // The surface draws through GLEW's table, as the engine does.
    if (!makeCurrent() || !bindGlEntryPoints()) return false;
    m_width = width, m_height = height;
    glGenRenderbuffers(1, &m_color);
    glBindRenderbuffer(GL_RENDERBUFFER, m_color);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width, height);
    glGenRenderbuffers(1, &m_depth);
    glBindRenderbuffer(GL_RENDERBUFFER, m_depth);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH24_STENCIL8, width, height);
    glGenFramebuffers(1, &m_framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_color);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_STENCIL_ATTACHMENT, GL_RENDERBUFFER, m_depth);
    return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
}

bool HeadlessSurface::makeCurrent() {
    if (!m_context) return false;
    if (eglGetCurrentContext() == m_context) return true;
    return eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, m_context) == EGL_TRUE;
}

void HeadlessSurface::present() { glFinish(); }

std::array<uint8_t, 4> HeadlessSurface::pixel(int x, int y) const {
    std::array<uint8_t, 4> rgba{};
    GLint previous = 0;
    glGetIntegerv(GL_READ_FRAMEBUFFER_BINDING, &previous);
    glBindFramebuffer(GL_READ_FRAMEBUFFER, m_framebuffer);
    glReadPixels(x, y, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
    glBindFramebuffer(GL_READ_FRAMEBUFFER, GLuint(previous));
    return rgba;
}
