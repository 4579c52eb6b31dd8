#include "demos/gl_utility/glsl_build.h"

#include <GL/glew.h>

#include <vector>

namespace {

template <typename GetLength, typename GetLog>
std::string infoLog(GLuint object, GetLength getLength, GetLog getLog) {
    GLint length = 0;
    getLength(object, GL_INFO_LOG_LENGTH, &length);
    if (length <= 0) return {};
    std::vector<char> text(size_t(length) + 1, '\0');
    getLog(object, length, nullptr, text.data());
    return text.data();
}

}  // namespace

uint32_t compileGlslStage(uint32_t stageType, const char* text, std::string& log) {
    const GLuint shader = glCreateShader(stageType);
    if (shader == 0) {
        log = "the driver made no shader object";
        return 0;
    }
    glShaderSource(shader, 1, &text, nullptr);
    glCompileShader(shader);
    GLint compiled = 0;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled != 0) return shader;
    log = infoLog(shader, glGetShaderiv, glGetShaderInfoLog);
    glDeleteShader(shader);
    return 0;
}

bool linkGlslProgram(uint32_t program, std::string& log) {
    glLinkProgram(program);
    GLint linked = 0;
    glGetProgramiv(program, GL_LINK_STATUS, &linked);
    if (linked != 0) return true;
    log = infoLog(program, glGetProgramiv, glGetProgramInfoLog);
    return false;
}
