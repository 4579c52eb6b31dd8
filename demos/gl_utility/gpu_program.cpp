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

bool GpuProgram::loadVertexShader(const char* text, size_t length) {
    if (!text || length == 0) return false;
    m_vertexSource.assign(text, length);
    return _compile(kVertex, m_vertexSource.c_str(), "Vertex Shader Error: %s");
}

bool GpuProgram::loadPixelShader(const char* text, size_t length) {
    if (!text || length == 0) return false;
    m_pixelSource.assign(text, length);
    return _compile(kPixel, m_pixelSource.c_str(), "Pixel Shader Error: %s");
}

bool GpuProgram::loadShader(StageKind stage, const char* text, size_t length) {
    if (!text || length == 0 || stage < 0 || stage >= kStageCount) return false;
    return _compile(stage, text, nullptr);
}

bool GpuProgram::_compile(StageKind stage, const char* text, const char* errorFormat) {
    if (!glCreateShader) return false;  // no context has bound the entry points
    if (!glIsProgram(m_programId)) m_programId = glCreateProgram();
    if (m_stageShaderIds[stage] != 0) {
        glDetachShader(m_programId, m_stageShaderIds[stage]);
        glDeleteShader(m_stageShaderIds[stage]);
    }
    // Only attached shaders stay in the table, so that release() detaches nothing that never was.
    const GLuint shader = compileGlslStage(kStageTypes[stage], text, m_errorText);
    m_stageShaderIds[stage] = shader;
    if (shader == 0) {
        if (errorFormat)
            base::logLine(errorFormat, m_errorText.c_str());
        else
            base::logLine("%s shader error: %s", kStageNames[stage], m_errorText.c_str());
        return false;
    }
    glAttachShader(m_programId, shader);
    m_linked = false;  // a changed stage needs a new link
    return true;
}

bool GpuProgram::use() {
    if (m_programId == 0 || !glUseProgram) return false;
    if (!m_linked) {
        if (!linkGlslProgram(m_programId, m_errorText)) {
            base::logLine("Shader program Error: %s", m_errorText.c_str());
            return false;
        }
        m_linked = true;
    }
    glUseProgram(m_programId);
    return true;
}

void GpuProgram::unuse() {
    if (glUseProgram) glUseProgram(0);
}

int GpuProgram::attribLocation(const char* name) const {
    return m_programId != 0 && name ? glGetAttribLocation(m_programId, name) : -1;
}

int GpuProgram::_uniformLocation(const char* name) const {
    return m_linked && name ? glGetUniformLocation(m_programId, name) : -1;
}

void GpuProgram::set1i(const char* name, int value) {
    if (const int at = _uniformLocation(name); at >= 0) glUniform1i(at, value);
}

void GpuProgram::set1f(const char* name, float value) {
    if (const int at = _uniformLocation(name); at >= 0) glUniform1f(at, value);
}

void GpuProgram::set2f(const char* name, float x, float y) {
    if (const int at = _uniformLocation(name); at >= 0) glUniform2f(at, x, y);
}

void GpuProgram::set3f(const char* name, float x, float y, float z) {
    if (const int at = _uniformLocation(name); at >= 0) glUniform3f(at, x, y, z);
}

void GpuProgram::set4f(const char* name, float x, float y, float z, float w) {
    if (const int at = _uniformLocation(name); at >= 0) glUniform4f(at, x, y, z, w);
}

void GpuProgram::set4fv(const char* name, const float value[4]) {
    if (const int at = _uniformLocation(name); at >= 0) glUniform4fv(at, 1, value);
}

void GpuProgram::set4fArray(const char* name, int count, const float* values) {
    if (const int at = _uniformLocation(name); at >= 0 && count > 0 && values) glUniform4fv(at, count, values);
}

void GpuProgram::setMatrix(const char* name, const float matrix[16]) {
    if (const int at = _uniformLocation(name); at >= 0 && matrix) glUniformMatrix4fv(at, 1, GL_FALSE, matrix);
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
    m_linked = false;
    m_vertexSource.clear();
    m_pixelSource.clear();
}
