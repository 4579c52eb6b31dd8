#include "demos/gl_utility/image_file.h"

#include <GL/glew.h>

uint32_t ImageFile::createTexture() {
    if (m_image.rgba.empty()) return 0;
    if (m_textureId == 0) glGenTextures(1, &m_textureId);
    glBindTexture(GL_TEXTURE_2D, m_textureId);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, m_image.width, m_image.height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 m_image.rgba.data());
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    return m_textureId;
}

void ImageFile::release() {
    if (m_textureId != 0) glDeleteTextures(1, &m_textureId);
    m_textureId = 0;
    m_image = {};
}
