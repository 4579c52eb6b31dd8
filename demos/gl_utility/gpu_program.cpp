#include "demos/gl_utility/gpu_program.h"

#include <GL/glew.h>

#include "base/log_sink.h"
#include "demos/gl_utility/glsl_build.h"

namespace {

constexpr GLenum kStageTypes[GpuProgram::kStageCount] = {GL_VERTEX_SHADER, GL_FRAGMENT_SHADER, GL_GEOMETRY_SHADER,
                                                         GL_TESS_CONTROL_SHADER, GL_TESS_EVALUATION_SHADER};
constexpr const char* kStageNames[GpuProgram::kStageCount] = {"Vertex", "Pixel", "Geometry", "Tessellation control",
                                                              "Tessellation evaluation"};

}  // namespace

const char* GpuProgram::stageName(StageKind stage) {
    return stage >= 0 && stage < kStageCount ? kStageNames[stage] : "";
}

bool GpuProgram::_refuseEmpty() {
    if (m_habits.nameSilentFailures) m_errorText = "empty shader source";
    return false;
}

void GpuProgram::_nameSilentFailure(const char* reason) {
    if (m_habits.nameSilentFailures && m_errorText.empty()) m_errorText = reason;
}

void GpuProgram::_stagesChanged() {
    m_linked = m_linkFailed = false;  // a changed stage needs a new link
    m_uniformLocations.clear();
}

bool GpuProgram::loadVertexShader(const char* text, size_t length) {
    if (!text || length == 0) return _refuseEmpty();
    m_vertexSource.assign(text, length);
    return _compile(kVertex, m_vertexSource.c_str(), "Vertex Shader Error: %s");
}

bool GpuProgram::loadPixelShader(const char* text, size_t length) {
    if (!text || length == 0) return _refuseEmpty();
    m_pixelSource.assign(text, length);
    return _compile(kPixel, m_pixelSource.c_str(), "Pixel Shader Error: %s");
}

bool GpuProgram::loadShader(StageKind stage, const char* text, size_t length) {
    if (stage < 0 || stage >= kStageCount) return false;
    if (!text || length == 0) return _refuseEmpty();
    return _compile(stage, text, nullptr);
}

bool GpuProgram::_compile(StageKind stage, const char* text, const char* errorFormat) {
    if (!glCreateShader) return false;  // no context has bound the entry points
    if (!glIsProgram(m_programId)) m_programId = glCreateProgram();
    if (m_programId == 0) {
        m_errorText.clear();
        _nameSilentFailure("no program object");
        return false;
    }
    const GLuint shader = compileGlslStage(kStageTypes[stage], text, m_errorText);
    if (shader == 0) {
        _nameSilentFailure("unknown error");
        if (!m_habits.logFailures) return false;
        if (errorFormat)
            base::logLine(errorFormat, m_errorText.c_str());
        else
            base::logLine("%s shader error: %s", kStageNames[stage], m_errorText.c_str());
        return false;
    }
    if (m_stageShaderIds[stage] != 0) {
        glDetachShader(m_programId, m_stageShaderIds[stage]);
        glDeleteShader(m_stageShaderIds[stage]);
    }
    // Only attached shaders stay in the table, so that release() detaches nothing that never was.
    m_stageShaderIds[stage] = shader;
    glAttachShader(m_programId, shader);
    _stagesChanged();
    return true;
}

bool GpuProgram::link() {
    if (m_linked) return true;
    if (m_programId == 0) {
        m_errorText.clear();
        _nameSilentFailure("no stage loaded");
        return false;
    }
    if (m_linkFailed && !m_habits.retryFailedLink) return false;
    if (!linkGlslProgram(m_programId, m_errorText)) {
        _nameSilentFailure("unknown error");
        m_linkFailed = true;
        if (m_habits.logFailures) base::logLine("Shader program Error: %s", m_errorText.c_str());
        return false;
    }
    m_linked = true;
    m_uniformLocations.clear();
    return true;
}

bool GpuProgram::use() {
    if (m_programId == 0 || !glUseProgram) return false;
    if (!link()) return false;
    glUseProgram(m_programId);
    return true;
}

void GpuProgram::unuse() {
    if (glUseProgram) glUseProgram(0);
}

int GpuProgram::attribLocation(const char* name) const {
    return m_programId != 0 && name ? glGetAttribLocation(m_programId, name) : -1;
}

int GpuProgram::uniformLocation(const char* name) {
    if (!m_linked || !name) return -1;
    if (auto it = m_uniformLocations.find(std::string_view(name)); it != m_uniformLocations.end()) return it->second;
    const int location = glGetUniformLocation(m_programId, name);
    m_uniformLocations.emplace(name, location);
    return location;
}

void GpuProgram::set1i(const char* name, int value) {
    if (const int at = uniformLocation(name); at >= 0) glUniform1i(at, value);
}

void GpuProgram::set1f(const char* name, float value) {
    if (const int at = uniformLocation(name); at >= 0) glUniform1f(at, value);
}

void GpuProgram::set2f(const char* name, float x, float y) {
    if (const int at = uniformLocation(name); at >= 0) glUniform2f(at, x, y);
}

void GpuProgram::set3f(const char* name, float x, float y, float z) {
    if (const int at = uniformLocation(name); at >= 0) glUniform3f(at, x, y, z);
}

void GpuProgram::set4f(const char* name, float x, float y, float z, float w) {
    if (const int at = uniformLocation(name); at >= 0) glUniform4f(at, x, y, z, w);
}

void GpuProgram::set4fv(const char* name, const float value[4]) {
    if (const int at = uniformLocation(name); at >= 0) glUniform4fv(at, 1, value);
}

void GpuProgram::set2fArray(const char* name, int count, const float* values) {
    if (const int at = uniformLocation(name); at >= 0 && count > 0 && values) glUniform2fv(at, count, values);
}

void GpuProgram::set3fArray(const char* name, int count, const float* values) {
    if (const int at = uniformLocation(name); at >= 0 && count > 0 && values) glUniform3fv(at, count, values);
}

void GpuProgram::set4fArray(const char* name, int count, const float* values) {
    if (const int at = uniformLocation(name); at >= 0 && count > 0 && values) glUniform4fv(at, count, values);
}

void GpuProgram::setMatrix(const char* name, const float matrix[16]) {
    if (const int at = uniformLocation(name); at >= 0 && matrix) glUniformMatrix4fv(at, 1, GL_FALSE, matrix);
}

void GpuProgram::release() {
    if (m_programId != 0 && glDeleteProgram) {
        for (uint32_t& shader : m_stageShaderIds) {
            if (shader == 0) continue;
            glDetachShader(m_programId, shader);
            glDeleteShader(shader);
            shader = 0;
        }
        glDeleteProgram(m_programId);
    }
    m_programId = 0;
    m_linked = m_linkFailed = false;
    m_uniformLocations.clear();
    m_vertexSource.clear();
    m_pixelSource.clear();
}
