#include "kalidor/opengl/opengl_summary.h"

#include <cstdio>

namespace Kalidornm {

void copyOpenGlSummary(const HardwareCaps& caps, GpuSummary& summary) {
    const OpenGlState& gl = caps.gl;
    summary.glNumbers = gl.numbers;
    std::snprintf(summary.openGLVersion, sizeof summary.openGLVersion, "%s", gl.versionText);
    std::snprintf(summary.glslVersion, sizeof summary.glslVersion, "%s", gl.glslVersionText);
    summary.extensionNames = gl.extensions;
    summary.glExtensionCount = static_cast<uint32_t>(gl.glExtensionCount);
    summary.wglExtensionCount = static_cast<uint32_t>(gl.wglExtensionCount);
}

}  // namespace Kalidornm
