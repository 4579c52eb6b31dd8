#include "demos/opencl/window_image.h"

#include <GL/glew.h>

bool WindowImage::create(const char* versionLine, int width, int height) {
    release();
    if (!m_quad.create(versionLine)) return false;

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
    m_quad.draw(m_texture);
}

void WindowImage::release() {
    if (m_texture) glDeleteTextures(1, &m_texture);
    m_texture = 0;
    m_quad.release();
}
