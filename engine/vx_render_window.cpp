#include "engine/vx_render_window.h"

#include <GL/glew.h>

namespace Vantalux_nsp {

vxRenderWindow::vxRenderWindow(vxWindowSurface* surface, int width, int height)
    : m_surface(surface), m_width(width), m_height(height) {}

vxRenderWindow::~vxRenderWindow() { destroyAll(); }

bool vxRenderWindow::makeCurrent() { return m_surface && m_surface->makeCurrent(); }

void vxRenderWindow::present() {
    if (m_surface) m_surface->present();
}

uint32_t vxRenderWindow::framebuffer() const { return m_surface ? m_surface->framebuffer() : 0; }

int vxRenderWindow::samples() const { return m_surface ? m_surface->samples() : 0; }

void vxRenderWindow::bindFramebuffer() const {
    glBindFramebuffer(GL_FRAMEBUFFER, framebuffer());
    glViewport(0, 0, m_width, m_height);
}

bool vxRenderWindow::destroy(vxResource* resource) {
    for (auto it = m_resources.begin(); it != m_resources.end(); ++it) {
        if (it->get() != resource) continue;
        // The GL names inside go with the object: they must meet this window's context.
        makeCurrent();
        m_resources.erase(it);
        return true;
    }
    return false;
}

void vxRenderWindow::destroyAll() {
    if (m_resources.empty()) return;
    makeCurrent();
    while (!m_resources.empty()) m_resources.pop_back();
}

}  // namespace Vantalux_nsp
