#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>

#include "engine/vx_math.h"
#include "engine/vx_resource.h"

namespace Vantalux_nsp {

// A GLSL program of a vertex and a pixel stage. Loads answer 0 on success and -1 on failure, with the
// driver's log in getErrorText().
class vxGpuShader : public vxResource {
public:
    explicit vxGpuShader(std::string name);
    ~vxGpuShader() override;

    const std::string& getName() const { return m_name; }
    uint32_t getProgramId() const { return m_program; }

    int loadVertexShaderFromMemory(const char* source);
    int loadPixelShaderFromMemory(const char* source);
    // Links the stages loaded so far; bind() links on its first call when this was not called.
    int link();
    bool isLinked() const { return m_linked; }
    // The last compile or link log; empty when none failed.
    const char* getErrorText() const { return m_errorText.c_str(); }

    bool bind();
    void unbind();

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
    int getUniformLocation(const char* name);

private:
    int _compile(unsigned stage, const char* source, uint32_t& shaderOut);
    template <typename Setter>
    void _set(const char* name, Setter&& setter);

    struct NameHash {
        using is_transparent = void;
        size_t operator()(std::string_view s) const { return std::hash<std::string_view>{}(s); }
    };

    std::string m_name;
    uint32_t m_program = 0;
    uint32_t m_vertexShader = 0;
    uint32_t m_pixelShader = 0;
    bool m_linked = false;
    bool m_linkFailed = false;
    std::string m_errorText;
    std::unordered_map<std::string, int, NameHash, std::equal_to<>> m_locations;
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
