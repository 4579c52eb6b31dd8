#pragma once

#include <string>

#include "demos/gl_utility/gpu_program.h"

struct DemoContext;
class RenderWindowGL;

// Steps the OpenGL 3 and 4 demos share.

// The version test of the GL 3 demos: 3.0 is refused, 3.1 and later pass. Shows the refusal and returns
// false; on success the context's version is in major and minor.
bool requireGl31(const RenderWindowGL& window, int* major, int* minor);
// The tessellation demo's test: 4.0 or later.
bool requireGl40(const RenderWindowGL& window, int* major, int* minor);

// The first line of the GL 3 demos' shaders: the 1.40 language below minor version 2 (which 4.0 and 4.1
// contexts have too), 1.50 core from there.
const char* gl3LanguageLine(int minor);

// Compiles the stages given (null ones are left out) and links the program, showing the demos' message for
// the first step that fails. False after the message.
struct DemoShaderSources {
    std::string vertex;
    std::string tessControl;
    std::string tessEvaluation;
    std::string pixel;
};
bool buildDemoProgram(GpuProgram& program, const DemoShaderSources& sources);

// "<fps>FPS, OpenGL <major>.<minor> <what> - Lumenscope" with the version the context reports.
std::string glDemoFpsTitle(const DemoContext& context, const RenderWindowGL& window, const char* what);
