#include "demos/gl_demo_support.h"

#include <cstdio>

#include "base/version.h"
#include "demos/demo_context.h"
#include "demos/gl_utility/render_window_gl.h"
#include "demos/harness/demo_host.h"

bool requireGl31(const RenderWindowGL& window, int* major, int* minor) {
    *major = *minor = 0;
    const bool read = window.getVersion(major, minor);
    if (!read || (*major < 4 && (*major < 3 || *minor == 0))) {
        demoShowError("Ouch! This demo requires at least an OpenGL 3.1 support.\n\rBye...");
        return false;
    }
    return true;
}

bool requireGl40(const RenderWindowGL& window, int* major, int* minor) {
    *major = *minor = 0;
    if (!window.getVersion(major, minor) || *major < 4) {
        demoShowError("Ouch! This demo requires at least an OpenGL 4.0 support.\n\rBye...");
        return false;
    }
    return true;
}

const char* gl3LanguageLine(int minor) { return minor < 2 ? "#version 140" : "#version 150 core"; }

bool buildDemoProgram(GpuProgram& program, const DemoShaderSources& sources) {
    if (!program.loadVertexShader(sources.vertex.c_str(), sources.vertex.size())) {
        demoShowError("Vertex shader creation failed: %s", program.errorText());
        return false;
    }
    if (!sources.tessControl.empty() &&
        !program.loadShader(GpuProgram::kTessControl, sources.tessControl.c_str(), sources.tessControl.size())) {
        demoShowError("Tessellation control shader creation failed: %s", program.errorText());
        return false;
    }
    if (!sources.tessEvaluation.empty() &&
        !program.loadShader(GpuProgram::kTessEvaluation, sources.tessEvaluation.c_str(),
                            sources.tessEvaluation.size())) {
        demoShowError("Tessellation evaluation shader creation failed: %s", program.errorText());
        return false;
    }
    if (!program.loadPixelShader(sources.pixel.c_str(), sources.pixel.size())) {
        demoShowError("Pixel shader creation failed: %s", program.errorText());
        return false;
    }
    if (!program.use()) {
        demoShowError("Shader program creation failed: %s", program.errorText());
        return false;
    }
    return true;
}

std::string glDemoFpsTitle(const DemoContext& context, const RenderWindowGL& window, const char* what) {
    int major = 0, minor = 0;
    window.getVersion(&major, &minor);
    char title[256];
    std::snprintf(title, sizeof title, "%dFPS, OpenGL %d.%d %s - %s", int(context.stats.currentFps), major, minor,
                  what, lumenscope::kDisplayName);
    return title;
}
