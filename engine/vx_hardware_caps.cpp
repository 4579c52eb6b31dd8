#include "engine/vx_hardware_caps.h"

#include <GL/glew.h>

#include <cstdio>
#include <cstring>

#include "engine/gl_errors.h"

namespace Vantalux_nsp {

vxHardwareCaps* vxHardwareCaps::getInstance() {
    static vxHardwareCaps instance;
    return &instance;
}

int vxHardwareCaps::vendorOf(const char* vendor, const char* renderer) {
    auto has = [](const char* text, const char* word) { return text && std::strstr(text, word); };
    if (has(vendor, "NVIDIA")) return VX_GPU_VENDOR_NVIDIA;
    if (has(vendor, "ATI Technologies") || has(vendor, "Advanced Micro Devices") || has(vendor, "AMD") ||
        has(renderer, "Radeon") || has(renderer, "AMD"))
        return VX_GPU_VENDOR_AMD;
    return VX_GPU_VENDOR_OTHER;
}

bool vxHardwareCaps::read() {
    const char* version = reinterpret_cast<const char*>(glGetString(GL_VERSION));
    if (!version) return false;
    clearGlErrors();
    const char* vendor = reinterpret_cast<const char*>(glGetString(GL_VENDOR));
    const char* renderer = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    m_renderer = renderer ? renderer : "";
    m_vendor = vendorOf(vendor, renderer);
    m_major = m_minor = 0;
    std::sscanf(version, "%d.%d", &m_major, &m_minor);
    m_extensions = " ";
    if (m_major >= 3) {
        GLint count = 0;
        glGetIntegerv(GL_NUM_EXTENSIONS, &count);
        for (GLint i = 0; i < count; ++i)
            if (const auto* name = reinterpret_cast<const char*>(glGetStringi(GL_EXTENSIONS, GLuint(i))))
                m_extensions.append(name).push_back(' ');
    } else if (const auto* list = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS))) {
        m_extensions.append(list).push_back(' ');
    }
    auto integer = [](GLenum name) {
        GLint value = 0;
        glGetIntegerv(name, &value);
        return glGetError() == GL_NO_ERROR ? int(value) : 0;
    };
    m_maxVertexUniforms = integer(GL_MAX_VERTEX_UNIFORM_COMPONENTS);
    m_maxDrawBuffers = integer(GL_MAX_DRAW_BUFFERS);
    m_maxVertexTextureUnits = integer(GL_MAX_VERTEX_TEXTURE_IMAGE_UNITS);
    return true;
}

bool vxHardwareCaps::hasExtension(const char* name) const {
    if (!name || !*name || std::strchr(name, ' ')) return false;
    return m_extensions.find(' ' + std::string(name) + ' ') != std::string::npos;
}

bool vxHardwareCaps::getGPUCap(int cap) const {
    const bool gl20 = m_major >= 2;
    switch (cap) {
        case VX_CAP_OPENGL_2_0: return gl20;
        case VX_CAP_FRAMEBUFFER_OBJECT:
            return m_major >= 3 || hasExtension("GL_ARB_framebuffer_object") || hasExtension("GL_EXT_framebuffer_object");
        case VX_CAP_POINT_SPRITE: return gl20 || hasExtension("GL_ARB_point_sprite");
        case VX_CAP_DRAW_INSTANCED:
            return (m_major > 3 || (m_major == 3 && m_minor >= 1)) || hasExtension("GL_ARB_draw_instanced") ||
                   hasExtension("GL_EXT_draw_instanced");
        default: return false;
    }
}

}  // namespace Vantalux_nsp
