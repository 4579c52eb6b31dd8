#include "engine/vx_gpu_shader.h"

#include <GL/glew.h>

#include <cstring>

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

vxGpuShader::vxGpuShader(std::string name)
    : m_name(std::move(name)),
      m_program(GpuProgramHabits{.logFailures = false, .retryFailedLink = false, .nameSilentFailures = true}) {}

vxGpuShader::~vxGpuShader() { m_program.release(); }

int vxGpuShader::loadVertexShaderFromMemory(const char* source) {
    return m_program.loadShader(GpuProgram::kVertex, source, source ? std::strlen(source) : 0) ? 0 : -1;
}

int vxGpuShader::loadPixelShaderFromMemory(const char* source) {
    return m_program.loadShader(GpuProgram::kPixel, source, source ? std::strlen(source) : 0) ? 0 : -1;
}

template <typename Set>
void vxGpuShader::_set(const char* name, Set&& set) {
    if (!m_program.link() || m_program.uniformLocation(name) < 0) return;
    withProgram(m_program.programId(), set);
}

void vxGpuShader::setUniform1i(const char* name, int value) {
    _set(name, [&] { m_program.set1i(name, value); });
}
void vxGpuShader::setUniform1f(const char* name, float value) {
    _set(name, [&] { m_program.set1f(name, value); });
}
void vxGpuShader::setUniform2f(const char* name, float x, float y) {
    _set(name, [&] { m_program.set2f(name, x, y); });
}
void vxGpuShader::setUniform3f(const char* name, float x, float y, float z) {
    _set(name, [&] { m_program.set3f(name, x, y, z); });
}
void vxGpuShader::setUniform4f(const char* name, float x, float y, float z, float w) {
    _set(name, [&] { m_program.set4f(name, x, y, z, w); });
}
void vxGpuShader::setUniform2fv(const char* name, int count, const float* values) {
    if (count > 0 && values) _set(name, [&] { m_program.set2fArray(name, count, values); });
}
void vxGpuShader::setUniform3fv(const char* name, int count, const float* values) {
    if (count > 0 && values) _set(name, [&] { m_program.set3fArray(name, count, values); });
}
void vxGpuShader::setUniform4fv(const char* name, int count, const float* values) {
    if (count > 0 && values) _set(name, [&] { m_program.set4fArray(name, count, values); });
}
void vxGpuShader::setUniformMatrix4(const char* name, const vxMat4& matrix) {
    _set(name, [&] { m_program.setMatrix(name, matrix.data()); });
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
