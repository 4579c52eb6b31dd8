#pragma once

#include <string>

#include "engine/vx_enums.h"

namespace Vantalux_nsp {

// What the driver of the current context offers, read when a render window is made.
class vxHardwareCaps {
public:
    static vxHardwareCaps* getInstance();

    // Reads the current context; false without one.
    bool read();

    // 1 and 2 tell NVIDIA and AMD apart; 0 is any other vendor.
    int getGPUVendor() const { return m_vendor; }
    bool getGPUCap(int cap) const;
    bool hasExtension(const char* name) const;
    int getGLMajorVersion() const { return m_major; }
    int getGLMinorVersion() const { return m_minor; }
    int getMaxVertexUniformComponents() const { return m_maxVertexUniforms; }
    int getMaxDrawBuffers() const { return m_maxDrawBuffers; }
    int getMaxVertexTextureImageUnits() const { return m_maxVertexTextureUnits; }
    const std::string& getRendererName() const { return m_renderer; }

    // The vendor number of a GL_VENDOR / GL_RENDERER pair.
    static int vendorOf(const char* vendor, const char* renderer);

private:
    int m_vendor = VX_GPU_VENDOR_OTHER;
    int m_major = 0;
    int m_minor = 0;
    int m_maxVertexUniforms = 0;
    int m_maxDrawBuffers = 0;
    int m_maxVertexTextureUnits = 0;
    std::string m_renderer;
    std::string m_extensions;  // space-separated, with a space at each end
};

}  // namespace Vantalux_nsp
