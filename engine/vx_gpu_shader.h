#pragma once

#include <cstdint>
#include <string>

#include "demos/gl_utility/gpu_program.h"
#include "engine/vx_math.h"
#include "engine/vx_resource.h"

namespace Vantalux_nsp {

// The engine's name for a GLSL program of a vertex and a pixel stage, over the GL utility layer's
// GpuProgram. Loads answer 0 on success and -1 on failure, with the driver's log in getErrorText(); nothing
// is logged here, and a failed link is not tried again until a stage changes.
class vxGpuShader : public vxResource {
public:
    explicit vxGpuShader(std::string name);
    ~vxGpuShader() override;

    const std::string& getName() const { return m_name; }
    uint32_t getProgramId() const { return m_program.programId(); }

    int loadVertexShaderFromMemory(const char* source);
    int loadPixelShaderFromMemory(const char* source);
    // Links the stages loaded so far; bind() links on its first call when this was not called.
    int link() { return m_program.link() ? 0 : -1; }
    bool isLinked() const { return m_program.linked(); }
    // The last compile or link log; empty when none failed.
    const char* getErrorText() const { return m_program.errorText(); }

    bool bind() { return m_program.link() && m_program.use(); }
    void unbind() { m_program.unuse(); }

    // Uniforms by name; a name the compiler dropped is silently skipped. They reach the program whether or
    // not it is bound.
    void setUniform1i(const char* name, int value);
    void setUniform1f(const char* name, float value);
    void setUniform2f(const char* name, float x, float y);
    void setUniform3f(const char* name, float x, float y, float z);
    void setUniform4f(const char* name, float x, float y, float z, float w);
    void setUniform2fv(const char* name, int count, const float* values);
    void setUniform3fv(const char* name, int count, const float* values);
    void setUniform4fv(const char* name, int count, const float* values);
    void setUniformMatrix4(const char* name, const vxMat4& matrix);
    // -1 when the program has no such active uniform.
    int getUniformLocation(const char* name) { return m_program.uniformLocation(name); }

private:
    template <typename Set>
    void _set(const char* name, Set&& set);

    std::string m_name;
    GpuProgram m_program;
};

// Makes programs in the current render window; null without one.
class vxGPUShaderMgr {
public:
    static vxGPUShaderMgr* getInstance();
    vxGpuShader* createGPUShader(const char* name);
    // Frees a program now, as a failed one is; false when it is not of the current window.
    bool destroyGPUShader(vxGpuShader* shader);
};

}  // namespace Vantalux_nsp
