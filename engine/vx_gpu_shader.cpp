#include "engine/vx_gpu_shader.h"

#include <GL/glew.h>

#include "demos/gl_utility/glsl_build.h"
#include "engine/vantalux.h"
#include "engine/vx_render_window.h"

namespace Vantalux_nsp {

namespace {

// Runs `set` with `program` in use and puts back the program that was, so that setting a uniform never
// changes what is bound.
template <typename Set>
void withProgram(GLuint program, Set&& set) {
    GLint previous = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &previous);
    if (GLuint(previous) != program) glUseProgram(program);
    set();
    if (GLuint(previous) != program) glUseProgram(GLuint(previous));
}

}  // namespace

vxGpuShader::vxGpuShader(std::string name) : m_name(std::move(name)) {}

vxGpuShader::~vxGpuShader() {
    if (m_program) glDeleteProgram(m_program);
    if (m_vertexShader) glDeleteShader(m_vertexShader);
    if (m_pixelShader) glDeleteShader(m_pixelShader);
}

int vxGpuShader::_compile(unsigned stage, const char* source, uint32_t& shaderOut) {
    if (!source || !*source) {
        m_errorText = "empty shader source";
        return -1;
    }
    if (!m_program) m_program = glCreateProgram();
    if (!m_program) {
        m_errorText = "no program object";
        return -1;
    }
    const GLuint shader = compileGlslStage(stage, source, m_errorText);
    if (!shader) {
        if (m_errorText.empty()) m_errorText = "unknown error";
        return -1;
    }
    if (shaderOut) {
        glDetachShader(m_program, shaderOut);
        glDeleteShader(shaderOut);
    }
    shaderOut = shader;
    glAttachShader(m_program, shader);
    m_linked = m_linkFailed = false;
    m_locations.clear();
    return 0;
}

int vxGpuShader::loadVertexShaderFromMemory(const char* source) {
    return _compile(GL_VERTEX_SHADER, source, m_vertexShader);
}

int vxGpuShader::loadPixelShaderFromMemory(const char* source) {
    return _compile(GL_FRAGMENT_SHADER, source, m_pixelShader);
}

int vxGpuShader::link() {
    if (m_linked) return 0;
    if (!m_program || m_linkFailed) {
        if (!m_program) m_errorText = "no stage loaded";
        return -1;
    }
    if (!linkGlslProgram(m_program, m_errorText)) {
        if (m_errorText.empty()) m_errorText = "unknown error";
        m_linkFailed = true;  // a failed link is not retried every frame
        return -1;
    }
    m_linked = true;
    m_locations.clear();
    return 0;
}

bool vxGpuShader::bind() {
    if (link() != 0) return false;
    glUseProgram(m_program);
    return true;
}

void vxGpuShader::unbind() { glUseProgram(0); }

int vxGpuShader::getUniformLocation(const char* name) {
    if (!m_linked || !name) return -1;
    if (auto it = m_locations.find(std::string_view(name)); it != m_locations.end()) return it->second;
    const int location = glGetUniformLocation(m_program, name);
    m_locations.emplace(name, location);
    return location;
}

template <typename Setter>
void vxGpuShader::_set(const char* name, Setter&& setter) {
    if (link() != 0) return;
    const int location = getUniformLocation(name);
    if (location < 0) return;
    withProgram(m_program, [&] { setter(location); });
}

void vxGpuShader::setUniform1i(const char* name, int value) {
    _set(name, [&](int l) { glUniform1i(l, value); });
}
void vxGpuShader::setUniform1f(const char* name, float value) {
    _set(name, [&](int l) { glUniform1f(l, value); });
}
void vxGpuShader::setUniform2f(const char* name, float x, float y) {
    _set(name, [&](int l) { glUniform2f(l, x, y); });
}
void vxGpuShader::setUniform3f(const char* name, float x, float y, float z) {
    _set(name, [&](int l) { glUniform3f(l, x, y, z); });
}
void vxGpuShader::setUniform4f(const char* name, float x, float y, float z, float w) {
    _set(name, [&](int l) { glUniform4f(l, x, y, z, w); });
}
void vxGpuShader::setUniform2fv(const char* name, int count, const float* values) {
    if (count > 0 && values) _set(name, [&](int l) { glUniform2fv(l, count, values); });
}
void vxGpuShader::setUniform3fv(const char* name, int count, const float* values) {
    if (count > 0 && values) _set(name, [&](int l) { glUniform3fv(l, count, values); });
}
void vxGpuShader::setUniform4fv(const char* name, int count, const float* values) {
    if (count > 0 && values) _set(name, [&](int l) { glUniform4fv(l, count, values); });
}
void vxGpuShader::setUniformMatrix4(const char* name, const vxMat4& matrix) {
    _set(name, [&](int l) { glUniformMatrix4fv(l, 1, GL_FALSE, matrix.data()); });
}

vxGPUShaderMgr* vxGPUShaderMgr::getInstance() {
    static vxGPUShaderMgr instance;
    return &instance;
}

vxGpuShader* vxGPUShaderMgr::createGPUShader(const char* name) {
    vxRenderWindow* window = Vantalux::getInstance()->getCurrentRenderWindow();
    return window ? window->make<vxGpuShader>(name ? name : "") : nullptr;
}

bool vxGPUShaderMgr::destroyGPUShader(vxGpuShader* shader) {
    vxRenderWindow* window = Vantalux::getInstance()->getCurrentRenderWindow();
    return window && shader && window->destroy(shader);
}

}  // namespace Vantalux_nsp
