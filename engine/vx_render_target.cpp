#include "engine/vx_render_target.h"

#include <GL/glew.h>

#include "engine/gl_errors.h"
#include "engine/vantalux.h"
#include "engine/vx_render_window.h"
#include "engine/vx_texture.h"

namespace Vantalux_nsp {

vxRenderTarget::vxRenderTarget(std::string name, vxRenderWindow* window) : m_name(std::move(name)), m_window(window) {}

vxRenderTarget::~vxRenderTarget() {
    if (m_depthBuffer) glDeleteRenderbuffers(1, &m_depthBuffer);
    if (m_framebuffer) glDeleteFramebuffers(1, &m_framebuffer);
}

bool vxRenderTarget::_create(int colorCount, int width, int height, VX_PIXEL_FORMAT pixelFormat,
                             VX_INTERNAL_FORMAT internalFormat, bool depthBuffer, bool depthTexture) {
    if (width < 1 || height < 1 || width > 16384 || height > 16384) return false;
    if (colorCount < 0 || colorCount > kMaxColorTargets) return false;
    GLint maxDrawBuffers = 1;
    glGetIntegerv(GL_MAX_DRAW_BUFFERS, &maxDrawBuffers);
    if (colorCount > maxDrawBuffers) return false;
    clearGlErrors();
    m_width = width, m_height = height;
    glGenFramebuffers(1, &m_framebuffer);
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    vxTextureData options;
    options.addressing = VX_ADDRESS_CLAMP;
    options.pixelFormat = pixelFormat;
    options.internalFormat = internalFormat;
    GLenum buffers[kMaxColorTargets];
    for (int i = 0; i < colorCount; ++i) {
        auto texture = std::make_unique<vxTexture>(m_name + "_color" + std::to_string(i), vxTexture::k2D);
        if (!texture->uploadFloatRgba(width, height, nullptr, options)) return false;
        glFramebufferTexture2D(GL_FRAMEBUFFER, GLenum(GL_COLOR_ATTACHMENT0 + i), GL_TEXTURE_2D, texture->getId(), 0);
        buffers[i] = GLenum(GL_COLOR_ATTACHMENT0 + i);
        m_colors.push_back(std::move(texture));
    }
    if (depthTexture) {
        m_depthTexture = std::make_unique<vxTexture>(m_name + "_depth", vxTexture::kDepth);
        if (!m_depthTexture->allocateDepth(width, height)) return false;
        glFramebufferTexture2D(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_TEXTURE_2D, m_depthTexture->getId(), 0);
    } else if (depthBuffer) {
        glGenRenderbuffers(1, &m_depthBuffer);
        glBindRenderbuffer(GL_RENDERBUFFER, m_depthBuffer);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_DEPTH_COMPONENT24, width, height);
        glBindRenderbuffer(GL_RENDERBUFFER, 0);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_DEPTH_ATTACHMENT, GL_RENDERBUFFER, m_depthBuffer);
    }
    if (colorCount > 0) {
        glDrawBuffers(colorCount, buffers);
    } else {
        glDrawBuffer(GL_NONE);
        glReadBuffer(GL_NONE);
    }
    const bool complete = glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    glBindFramebuffer(GL_FRAMEBUFFER, m_window ? m_window->framebuffer() : 0);
    return complete && glGetError() == GL_NO_ERROR;
}

vxTexture* vxRenderTarget::getColorTexture(int index) const {
    return index >= 0 && size_t(index) < m_colors.size() ? m_colors[size_t(index)].get() : nullptr;
}

void vxRenderTarget::begin() {
    if (!m_framebuffer) return;
    if (!m_active) glGetIntegerv(GL_VIEWPORT, m_savedViewport);
    m_active = true;
    glBindFramebuffer(GL_FRAMEBUFFER, m_framebuffer);
    glViewport(0, 0, m_width, m_height);
}

void vxRenderTarget::end() {
    if (!m_active) return;
    m_active = false;
    glBindFramebuffer(GL_FRAMEBUFFER, m_window ? m_window->framebuffer() : 0);
    glViewport(m_savedViewport[0], m_savedViewport[1], m_savedViewport[2], m_savedViewport[3]);
}

vxRenderTarget* vxRenderTarget::_make(const char* name, int colorCount, int width, int height,
                                      VX_PIXEL_FORMAT pixelFormat, VX_INTERNAL_FORMAT internalFormat, bool depthBuffer,
                                      bool depthTexture) {
    vxRenderWindow* window = Vantalux::getInstance()->getCurrentRenderWindow();
    if (!window) return nullptr;
    vxRenderTarget* target = window->make<vxRenderTarget>(name ? name : "", window);
    if (target->_create(colorCount, width, height, pixelFormat, internalFormat, depthBuffer, depthTexture))
        return target;
    vxTraceMgr::getInstance()->logTrace(1, "render target %s could not be made complete", name ? name : "");
    window->destroy(target);
    return nullptr;
}

vxRenderTarget* vxRenderTarget::createColorTarget(const char* name, int width, int height, VX_PIXEL_FORMAT pixelFormat,
                                                  VX_INTERNAL_FORMAT internalFormat, bool depthBuffer) {
    return _make(name, 1, width, height, pixelFormat, internalFormat, depthBuffer, false);
}

vxRenderTarget* vxRenderTarget::createMultipleColorTargets(const char* name, int count, int width, int height,
                                                           VX_PIXEL_FORMAT pixelFormat,
                                                           VX_INTERNAL_FORMAT internalFormat, bool depthBuffer) {
    if (count < 1) return nullptr;
    return _make(name, count, width, height, pixelFormat, internalFormat, depthBuffer, false);
}

vxRenderTarget* vxRenderTarget::createDepthTarget(const char* name, int width, int height) {
    return _make(name, 0, width, height, VX_PIXEL_FORMAT_RGBA, VX_INTERNAL_FORMAT_BYTE, false, true);
}

}  // namespace Vantalux_nsp
