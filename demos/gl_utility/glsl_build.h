#pragma once

#include <cstdint>
#include <string>

// The driver's two steps of making a GLSL program, shared by the demos' GpuProgram and the engine's
// vxGpuShader. Both need a current context with the entry points bound.

// Compiles `text` (zero-terminated) as a shader of `stageType` (GL_VERTEX_SHADER, ...): the shader's name,
// or 0 with the compiler's log in `log` (empty when the driver wrote none). A shader that fails is deleted.
uint32_t compileGlslStage(uint32_t stageType, const char* text, std::string& log);

// Links `program`; false with the linker's log in `log` (empty when the driver wrote none).
bool linkGlslProgram(uint32_t program, std::string& log);
