#include "window_image.h"

#include <GL/glew.h>

#include <string>

#include "gl_utility/shader_texts.h"
#include "gl_utility/unit_square_projection.h"

bool WindowImage::create(const char* versionLine, int width, int height) {
    release();
    const std::string vertex = shaderSource(versionLine, "textured_quad.vert");
    const std::string pixel = shaderSource(versionLine, "textured_quad.frag");
    if (!m_program.loadVertexShader(vertex.c_str(), vertex.size()) ||
        !m_program.loadPixelShader(pixel.c_str(), pixel.size()) || !m_program.use())
        return false;
    m_program.set1i("colorMap", 0);
    m_program.setMatrix("WorldViewProjectionMatrix", kUnitSquareToClip);
    m_program.unuse();
    if (!m_quad.makeQuad()) return false;

    glGenTextures(1, &m_texture);
    glBindTexture(GL_TEXTURE_2D, m_texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_BGRA, GL_UNSIGNED_BYTE, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glBindTexture(GL_TEXTURE_2D, 0);
    return true;
}

void WindowImage::draw(int clientWidth, int clientHeight) {
    glViewport(0, 0, clientWidth, clientHeight);
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    // The quad winds clockwise on screen.
    const bool culling = glIsEnabled(GL_CULL_FACE);
    glDisable(GL_CULL_FACE);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, m_texture);
    m_program.use();
    m_quad.positionAttrib = uint32_t(m_program.attribLocation("In_Position"));
    m_quad.texCoordAttrib = uint32_t(m_program.attribLocation("In_UV"));
    MeshDrawOptions options;
    options.useTexCoords = true;
    m_quad.draw(options);
    m_program.unuse();
    glBindTexture(GL_TEXTURE_2D, 0);
    if (culling) glEnable(GL_CULL_FACE);
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_TRUE);
}

void WindowImage::release() {
    if (m_texture) glDeleteTextures(1, &m_texture);
    m_texture = 0;
    m_program.release();
    m_quad.release();
}
