#include "corner_logo.h"

#include <GL/glew.h>

#include <cstdint>
#include <string>

#include "shader_texts.h"
#include "unit_square_projection.h"

namespace {

#include "corner_logo_jpeg.inc"

}  // namespace

bool CornerLogo::create(const char* versionLine) {
    release();
    const std::string vertex = shaderSource(versionLine, "textured_quad.vert");
    const std::string pixel = shaderSource(versionLine, "textured_quad.frag");
    if (!m_image.loadFromMemory(kCornerLogoJpeg, sizeof kCornerLogoJpeg) || !m_image.createTexture()) return false;
    if (!m_program.loadVertexShader(vertex.c_str(), vertex.size()) ||
        !m_program.loadPixelShader(pixel.c_str(), pixel.size()) || !m_program.use()) {
        release();
        return false;
    }
    m_program.set1i("colorMap", 0);
    m_program.setMatrix("WorldViewProjectionMatrix", kUnitSquareToClip);
    m_program.unuse();
    if (!m_quad.makeQuad()) {
        release();
        return false;
    }
    m_ready = true;
    return true;
}

void CornerLogo::draw(int clientWidth) {
    if (!m_ready) return;
    // The quad winds clockwise on screen; culling, which some demos keep on, would drop it.
    const bool culling = glIsEnabled(GL_CULL_FACE);
    glDisable(GL_CULL_FACE);
    glViewport(clientWidth - kSize, 0, kSize, kSize);
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE);
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, m_image.textureId());
    m_program.use();
    m_quad.positionAttrib = uint32_t(m_program.attribLocation("In_Position"));
    m_quad.texCoordAttrib = uint32_t(m_program.attribLocation("In_UV"));
    MeshDrawOptions options;
    options.useTexCoords = true;
    m_quad.draw(options);
    m_program.unuse();
    glBindTexture(GL_TEXTURE_2D, 0);
    glDisable(GL_BLEND);
    glEnable(GL_DEPTH_TEST);
    glDepthMask(GL_TRUE);
    if (culling) glEnable(GL_CULL_FACE);
}

void CornerLogo::release() {
    m_ready = false;
    m_image.release();
    m_program.release();
    m_quad.release();
}
