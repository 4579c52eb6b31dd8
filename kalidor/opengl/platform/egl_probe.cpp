#include "kalidor/opengl/platform/egl_probe.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <cstdio>
#include <cstring>

namespace Kalidornm {

namespace {

bool hasWord(const char* list, const char* word) {
    if (!list) return false;
    const size_t n = std::strlen(word);
    for (const char* p = std::strstr(list, word); p; p = std::strstr(p + 1, word))
        if ((p == list || p[-1] == ' ') && (p[n] == ' ' || p[n] == '\0')) return true;
    return false;
}

// Whether an EGL device's DRM file ("/dev/dri/card0") is one of the nodes named.
bool isOneOf(const char* file, const std::vector<std::string>& nodes) {
    if (!file) return false;
    const char* slash = std::strrchr(file, '/');
    const std::string base = slash ? slash + 1 : file;
    for (const std::string& node : nodes)
        if (base == node) return true;
    return false;
}

EGLDisplay openDevicePlatform(const std::vector<std::string>& primaryDrmNodes) {
    const char* clientExtensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (!hasWord(clientExtensions, "EGL_EXT_platform_device")) return EGL_NO_DISPLAY;
    auto queryDevices = reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    auto queryDeviceString =
        reinterpret_cast<PFNEGLQUERYDEVICESTRINGEXTPROC>(eglGetProcAddress("eglQueryDeviceStringEXT"));
    auto getPlatformDisplay =
        reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(eglGetProcAddress("eglGetPlatformDisplayEXT"));
    if (!queryDevices || !getPlatformDisplay) return EGL_NO_DISPLAY;
    EGLDeviceEXT devices[16];
    EGLint count = 0;
    if (!queryDevices(16, devices, &count) || count < 1) return EGL_NO_DISPLAY;
    EGLDeviceEXT chosen = devices[0];
    for (EGLint i = 0; queryDeviceString && i < count; ++i) {
        const char* node = queryDeviceString(devices[i], EGL_DRM_DEVICE_FILE_EXT);
        if (isOneOf(node, primaryDrmNodes)) {
            chosen = devices[i];
            break;
        }
    }
    return getPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, chosen, nullptr);
}

}  // namespace

EglProbe::~EglProbe() { release(); }

bool EglProbe::openDisplay(const std::vector<std::string>& primaryDrmNodes) {
    EGLDisplay display = openDevicePlatform(primaryDrmNodes);
    m_platformName = "device";
    if (display != EGL_NO_DISPLAY && !eglInitialize(display, nullptr, nullptr)) display = EGL_NO_DISPLAY;
    if (display == EGL_NO_DISPLAY) {
        display = eglGetPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr);
        m_platformName = "surfaceless";
        if (display != EGL_NO_DISPLAY && !eglInitialize(display, nullptr, nullptr)) display = EGL_NO_DISPLAY;
    }
    if (display == EGL_NO_DISPLAY) {
        m_platformName = "none";
        return false;
    }
    m_display = display;
    return eglBindAPI(EGL_OPENGL_API) == EGL_TRUE;
}

const char* EglProbe::displayExtensions() const {
    return m_display ? eglQueryString(m_display, EGL_EXTENSIONS) : nullptr;
}

std::vector<EglConfigTraits> EglProbe::configTraits() const {
    std::vector<EglConfigTraits> traits;
    EGLint count = 0;
    if (!m_display || !eglGetConfigs(m_display, nullptr, 0, &count) || count < 1) return traits;
    std::vector<EGLConfig> configs(static_cast<size_t>(count));
    if (!eglGetConfigs(m_display, configs.data(), count, &count)) return traits;
    for (EGLint i = 0; i < count; ++i) {
        auto get = [&](EGLint attribute) {
            EGLint value = 0;
            eglGetConfigAttrib(m_display, configs[i], attribute, &value);
            return value;
        };
        EglConfigTraits t;
        t.configId = get(EGL_CONFIG_ID);
        t.rendersOpenGl = (get(EGL_RENDERABLE_TYPE) & EGL_OPENGL_BIT) != 0;
        t.windowOrPbuffer = (get(EGL_SURFACE_TYPE) & (EGL_WINDOW_BIT | EGL_PBUFFER_BIT)) != 0;
        t.rgba = get(EGL_COLOR_BUFFER_TYPE) == EGL_RGB_BUFFER;
        t.colorBits = get(EGL_BUFFER_SIZE);
        t.depthBits = get(EGL_DEPTH_SIZE);
        t.stencilBits = get(EGL_STENCIL_SIZE);
        t.sampleBuffers = get(EGL_SAMPLE_BUFFERS);
        t.samples = get(EGL_SAMPLES);
        traits.push_back(t);
    }
    return traits;
}

bool EglProbe::tryCreate(const std::vector<int32_t>& attributes) {
    if (!m_display || m_context) return m_context != nullptr;
    EGLConfig config = EGL_NO_CONFIG_KHR;
    if (!hasWord(displayExtensions(), "EGL_KHR_no_config_context")) {
        const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_NONE};
        EGLint found = 0;
        if (!eglChooseConfig(m_display, wanted, &config, 1, &found) || found < 1) return false;
    }
    EGLContext context = eglCreateContext(m_display, config, EGL_NO_CONTEXT, attributes.data());
    if (context == EGL_NO_CONTEXT) return false;
    m_context = context;
    return true;
}

bool EglProbe::makeCurrent() {
    return m_context && eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, m_context) == EGL_TRUE;
}

void EglProbe::destroyContext() {
    if (!m_context) return;
    eglMakeCurrent(m_display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    eglDestroyContext(m_display, m_context);
    m_context = nullptr;
}

void EglProbe::release() {
    destroyContext();
    if (m_display) eglTerminate(m_display);
    m_display = nullptr;
}

}  // namespace Kalidornm
