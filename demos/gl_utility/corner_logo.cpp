#include "demos/gl_utility/corner_logo.h"

#include <GL/glew.h>

#include <cstdint>

namespace {

#include "demos/gl_utility/corner_logo_jpeg.inc"

}  // namespace

bool CornerLogo::create(const char* versionLine) {
    release();
    if (!m_image.loadFromMemory(kCornerLogoJpeg, sizeof kCornerLogoJpeg) || !m_image.createTexture()) return false;
    if (!m_quad.create(versionLine)) {
        release();
        return false;
    }
    m_ready = true;
    return true;
}

void CornerLogo::draw(int clientWidth) {
    if (!m_ready) return;
    glViewport(clientWidth - kSize, 0, kSize, kSize);
    glEnable(GL_BLEND);
    glBlendFunc(GL_ONE, GL_ONE);
    m_quad.draw(m_image.textureId());
    glDisable(GL_BLEND);
}

void CornerLogo::release() {
    m_ready = false;
    m_image.release();
    m_quad.release();
}
