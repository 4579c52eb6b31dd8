// The EGL side of RenderWindowGL: displays, configs, the context, the window surface and the swap.
// Xlib's macros (None, Bool, Status) stay out: the window arrives as a plain XID.
#define EGL_NO_X11
#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <cstring>
#include <mutex>
#include <vector>

#include "demos/gl_utility/context_attempts.h"
#include "demos/gl_utility/gl_entry_points.h"
#include "demos/gl_utility/render_window_gl.h"
#include "demos/gl_utility/sample_choice.h"

namespace {

bool hasWord(const char* list, const char* word) {
    if (!list || !word) return false;
    const size_t n = std::strlen(word);
    for (const char* p = std::strstr(list, word); p; p = std::strstr(p + 1, word))
        if ((p == list || p[-1] == ' ') && (p[n] == ' ' || p[n] == '\0')) return true;
    return false;
}

EGLDisplay initialized(EGLDisplay display) {
    if (display == EGL_NO_DISPLAY) return EGL_NO_DISPLAY;
    return eglInitialize(display, nullptr, nullptr) ? display : EGL_NO_DISPLAY;
}

// A GPU's device before a software one, so that a headless run on a GPU server measures the GPU.
EGLDisplay openDeviceDisplay() {
    if (!hasWord(eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS), "EGL_EXT_platform_device")) return EGL_NO_DISPLAY;
    auto queryDevices = reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    auto queryDeviceString =
        reinterpret_cast<PFNEGLQUERYDEVICESTRINGEXTPROC>(eglGetProcAddress("eglQueryDeviceStringEXT"));
    if (!queryDevices) return EGL_NO_DISPLAY;
    EGLDeviceEXT devices[16];
    EGLint count = 0;
    if (!queryDevices(16, devices, &count) || count < 1) return EGL_NO_DISPLAY;
    std::vector<EGLDeviceEXT> ordered;
    for (int pass = 0; pass < 2; ++pass) {
        for (EGLint i = 0; i < count; ++i) {
            const char* extensions = queryDeviceString ? queryDeviceString(devices[i], EGL_EXTENSIONS) : nullptr;
            const bool software = hasWord(extensions, "EGL_MESA_device_software");
            if (software == (pass == 1)) ordered.push_back(devices[i]);
        }
    }
    for (EGLDeviceEXT device : ordered) {
        const EGLDisplay display = initialized(eglGetPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, device, nullptr));
        if (display != EGL_NO_DISPLAY) return display;
    }
    return EGL_NO_DISPLAY;
}

// One headless display for the whole process, opened at the first headless start and never terminated: the
// same EGL display may serve the hardware library's probe and other demos, and terminating it would pull it
// from under them.
EGLDisplay headlessDisplay() {
    static std::mutex openLock;
    static EGLDisplay display = EGL_NO_DISPLAY;
    std::lock_guard<std::mutex> guard(openLock);
    if (display != EGL_NO_DISPLAY) return display;
    display = openDeviceDisplay();
    if (display == EGL_NO_DISPLAY)
        display = initialized(eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr));
    return display;
}

struct ConfigList {
    std::vector<EGLConfig> configs;
    std::vector<FramebufferConfigTraits> traits;
    std::vector<bool> preservesFrames;
};

ConfigList listConfigs(EGLDisplay display) {
    ConfigList list;
    EGLint count = 0;
    if (!eglGetConfigs(display, nullptr, 0, &count) || count < 1) return list;
    list.configs.resize(size_t(count));
    if (!eglGetConfigs(display, list.configs.data(), count, &count)) count = 0;
    list.configs.resize(size_t(count));
    for (EGLConfig config : list.configs) {
        auto get = [&](EGLint attribute) {
            EGLint value = 0;
            eglGetConfigAttrib(display, config, attribute, &value);
            return value;
        };
        FramebufferConfigTraits t;
        t.id = get(EGL_CONFIG_ID);
        t.rendersOpenGl = (get(EGL_RENDERABLE_TYPE) & EGL_OPENGL_BIT) != 0;
        const EGLint surfaceTypes = get(EGL_SURFACE_TYPE);
        t.window = (surfaceTypes & EGL_WINDOW_BIT) != 0;
        t.colorBits = get(EGL_BUFFER_SIZE);
        t.depthBits = get(EGL_DEPTH_SIZE);
        t.stencilBits = get(EGL_STENCIL_SIZE);
        t.sampleBuffers = get(EGL_SAMPLE_BUFFERS);
        t.samples = get(EGL_SAMPLES);
        t.visualId = static_cast<unsigned long>(get(EGL_NATIVE_VISUAL_ID));
        if (get(EGL_COLOR_BUFFER_TYPE) != EGL_RGB_BUFFER || get(EGL_RED_SIZE) < 8) t.rendersOpenGl = false;
        list.traits.push_back(t);
        list.preservesFrames.push_back((surfaceTypes & EGL_SWAP_BEHAVIOR_PRESERVED_BIT) != 0);
    }
    return list;
}

// The classic single-sampled choice: an OpenGL window config of the window's visual with at least 24 colour
// and 24 depth bits, 32 colour bits and a stencil preferred.
int chooseSingleSampleConfig(const ConfigList& list, unsigned long visualId, bool keepLastFrame) {
    int best = -1, bestScore = -1;
    for (size_t i = 0; i < list.traits.size(); ++i) {
        const FramebufferConfigTraits& t = list.traits[i];
        if (!t.rendersOpenGl || !t.window || t.sampleBuffers != 0 || t.colorBits < 24 || t.depthBits < 24) continue;
        if (visualId != 0 && t.visualId != visualId) continue;
        const int score = (t.colorBits == 32 ? 4 : 0) + (t.stencilBits > 0 ? 1 : 0) +
                          (keepLastFrame && list.preservesFrames[i] ? 8 : 0);
        if (score > bestScore) best = int(i), bestScore = score;
    }
    return best;
}

}  // namespace

bool RenderWindowGL::_createEglContext(const NativeWindow& window, int major, int minor, int msaaSamples,
                                       bool keepLastFrame) {
    m_headless = window.display == nullptr;
    EGLDisplay display = EGL_NO_DISPLAY;
    if (m_headless) {
        display = headlessDisplay();
    } else {
        display = initialized(eglGetPlatformDisplay(EGL_PLATFORM_X11_KHR, window.display, nullptr));
        m_ownsDisplay = display != EGL_NO_DISPLAY;
    }
    if (display == EGL_NO_DISPLAY) return false;
    m_eglDisplay = display;
    if (!eglBindAPI(EGL_OPENGL_API)) return false;

    EGLConfig config = EGL_NO_CONFIG_KHR;
    bool preserve = false;
    if (m_headless) {
        if (!hasWord(eglQueryString(display, EGL_EXTENSIONS), "EGL_KHR_no_config_context")) {
            const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
            EGLint found = 0;
            if (!eglChooseConfig(display, wanted, &config, 1, &found) || found < 1) return false;
        }
    } else {
        const ConfigList list = listConfigs(display);
        int chosen = msaaSamples > 0 ? chooseMultisampleConfig(list.traits, msaaSamples, window.visualId) : -1;
        if (chosen < 0) chosen = chooseSingleSampleConfig(list, window.visualId, keepLastFrame);
        if (chosen < 0) chosen = chooseSingleSampleConfig(list, 0, keepLastFrame);
        if (chosen < 0) return false;
        config = list.configs[size_t(chosen)];
        m_samples = list.traits[size_t(chosen)].sampleBuffers ? list.traits[size_t(chosen)].samples : 0;
        preserve = keepLastFrame && list.preservesFrames[size_t(chosen)];
    }

    EGLContext context = EGL_NO_CONTEXT;
    createByAttempts(major, minor, [&](const ContextAttempt& attempt) {
        std::vector<EGLint> attributes;
        if (!attempt.plain) {
            attributes = {EGL_CONTEXT_MAJOR_VERSION, attempt.major, EGL_CONTEXT_MINOR_VERSION, attempt.minor};
            if (attempt.compatibilityProfile)
                attributes.insert(attributes.end(),
                                  {EGL_CONTEXT_OPENGL_PROFILE_MASK, EGL_CONTEXT_OPENGL_COMPATIBILITY_PROFILE_BIT});
        }
        attributes.push_back(EGL_NONE);
        context = eglCreateContext(display, config, EGL_NO_CONTEXT, attributes.data());
        return context != EGL_NO_CONTEXT;
    });
    if (context == EGL_NO_CONTEXT) return false;
    m_eglContext = context;

    if (!m_headless) {
        unsigned long nativeWindow = window.window;  // an X11 Window
        EGLSurface surface = eglCreatePlatformWindowSurface(display, config, &nativeWindow, nullptr);
        if (surface == EGL_NO_SURFACE) return false;
        m_eglSurface = surface;
        if (preserve) eglSurfaceAttrib(display, surface, EGL_SWAP_BEHAVIOR, EGL_BUFFER_PRESERVED);
    }
    if (!_makeEglCurrent()) return false;
    // Vertical sync is off for every demo: they measure how fast frames can be drawn.
    if (!m_headless) eglSwapInterval(display, 0);
    return bindGlEntryPoints();
}

bool RenderWindowGL::_makeEglCurrent() {
    const EGLSurface surface = m_eglSurface ? m_eglSurface : EGL_NO_SURFACE;
    return m_eglContext && eglMakeCurrent(m_eglDisplay, surface, surface, m_eglContext) == EGL_TRUE;
}

void RenderWindowGL::_swapEglBuffers() {
    if (m_eglSurface) eglSwapBuffers(m_eglDisplay, m_eglSurface);
}

void RenderWindowGL::_releaseEgl() {
    if (m_eglDisplay) {
        eglMakeCurrent(m_eglDisplay, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        if (m_eglSurface) eglDestroySurface(m_eglDisplay, m_eglSurface);
        if (m_eglContext) eglDestroyContext(m_eglDisplay, m_eglContext);
        if (m_ownsDisplay) eglTerminate(m_eglDisplay);
        // The thread's EGL state would otherwise keep the display's per-thread data until the thread ends.
        eglReleaseThread();
    }
    m_eglDisplay = m_eglContext = m_eglSurface = nullptr;
    m_ownsDisplay = false;
}
