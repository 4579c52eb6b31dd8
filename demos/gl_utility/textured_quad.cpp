#include "demos/gl_utility/textured_quad.h"

#include <GL/glew.h>

#include <string>

#include "demos/gl_utility/shader_texts.h"

namespace {

// The orthographic projection of the unit square (0..1 in x and y, depth -1..1) onto the whole viewport,
// in OpenGL's column order.
constexpr float kUnitSquareToClip[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, -1, 0, -1, -1, -0.0f, 1};

}  // namespace

bool TexturedQuad::create(const char* versionLine) {
    release();
    const std::string vertex = shaderSource(versionLine, "textured_quad.vert");
    const std::string pixel = shaderSource(versionLine, "textured_quad.frag");
    if (!m_program.loadVertexShader(vertex.c_str(), vertex.size()) ||
        !m_program.loadPixelShader(pixel.c_str(), pixel.size()) || !m_program.use())
        return false;
    m_program.set1i("colorMap", 0);
    m_program.setMatrix("WorldViewProjectionMatrix", kUnitSquareToClip);
    m_program.unuse();
    return m_quad.makeQuad();
}

void TexturedQuad::draw(uint32_t texture) {
    // The quad winds clockwise on screen; culling, which some demos keep on, would drop it.
    const bool culling = glIsEnabled(GL_CULL_FACE);
    glDisable(GL_CULL_FACE);
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, texture);
    m_program.use();
    m_quad.positionAttrib = uint32_t(m_program.attribLocation("In_Position"));
    m_quad.texCoordAttrib = uint32_t(m_program.attribLocation("In_UV"));
    MeshDrawOptions options;
    options.useTexCoords = true;
    m_quad.draw(options);
    m_program.unuse();
    glBindTexture(GL_TEXTURE_2D, 0);
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_TRUE);
    if (culling) glEnable(GL_CULL_FACE);
}

void TexturedQuad::release() {
    m_program.release();
    m_quad.release();
}
