#include "engine/vx_hud.h"

#include <GL/glew.h>

#include "engine/vx_material.h"

namespace Vantalux_nsp {

vxHud::vxHud(std::string name, int width, int height) : vxObject(std::move(name), kHud), m_width(width), m_height(height) {
    // Drawn only when a frame asks for it.
    setVisible(false);
}

vxBkgImage::vxBkgImage(std::string name) : vxObject(std::move(name), kBackground) {}

void vxBkgImage::draw(vxRenderer&, vxDrawMode mode, int pass) {
    if (mode == vxDrawMode::kDepthOnly) return;
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    if (m_material) m_material->apply(pass);
    glDisable(GL_LIGHTING);
    glDisable(GL_CULL_FACE);
    glDisable(GL_DEPTH_TEST);
    glDepthMask(GL_FALSE);
    glColor4f(1, 1, 1, 1);
    glBegin(GL_QUADS);
    glTexCoord2f(0, 0), glVertex2f(-1, -1);
    glTexCoord2f(1, 0), glVertex2f(1, -1);
    glTexCoord2f(1, 1), glVertex2f(1, 1);
    glTexCoord2f(0, 1), glVertex2f(-1, 1);
    glEnd();
    if (m_material) m_material->unapply();
    glDepthMask(GL_TRUE);
    glEnable(GL_DEPTH_TEST);
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopMatrix();
}

}  // namespace Vantalux_nsp
