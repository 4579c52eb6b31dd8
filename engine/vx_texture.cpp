#include "engine/vx_texture.h"

#include <GL/glew.h>

#include <algorithm>
#include <vector>

#include "demos/gl_utility/image_codec.h"
#include "engine/gl_errors.h"
#include "engine/vantalux.h"
#include "engine/vx_render_window.h"

namespace Vantalux_nsp {

namespace {

constexpr int kMaxTextureSide = 16384;

bool validSize(int width, int height) {
    return width >= 1 && height >= 1 && width <= kMaxTextureSide && height <= kMaxTextureSide;
}

GLenum glFormat(VX_PIXEL_FORMAT format) { return format == VX_PIXEL_FORMAT_RGB ? GL_RGB : GL_RGBA; }

GLenum glInternalFormat(const vxTextureData& options) {
    const bool rgb = options.pixelFormat == VX_PIXEL_FORMAT_RGB;
    if (options.internalFormat == VX_INTERNAL_FORMAT_FLOAT) return rgb ? GL_RGB16F : GL_RGBA16F;
    return rgb ? GL_RGB8 : GL_RGBA8;
}

vxRenderWindow* currentWindow() { return Vantalux::getInstance()->getCurrentRenderWindow(); }

}  // namespace

vxTexture::vxTexture(std::string name, Kind kind) : m_name(std::move(name)), m_kind(kind) {}

vxTexture::~vxTexture() {
    if (m_id) glDeleteTextures(1, &m_id);
}

unsigned vxTexture::_target() const { return m_kind == kCubeMap ? GL_TEXTURE_CUBE_MAP : GL_TEXTURE_2D; }

bool vxTexture::uploadRgba8(int width, int height, const uint8_t* rgba, const vxTextureData& options) {
    if (m_kind != k2D || !validSize(width, height) || !rgba) return false;
    clearGlErrors();
    if (!m_id) glGenTextures(1, &m_id);
    glBindTexture(GL_TEXTURE_2D, m_id);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    std::vector<uint8_t> rgb;
    const void* texels = rgba;
    if (options.pixelFormat == VX_PIXEL_FORMAT_RGB) {
        // The alpha of the image is dropped here rather than by the driver, so the texture has no alpha.
        rgb.resize(size_t(width) * size_t(height) * 3);
        for (size_t i = 0, n = size_t(width) * size_t(height); i < n; ++i)
            std::copy_n(rgba + i * 4, 3, rgb.data() + i * 3);
        texels = rgb.data();
    }
    glTexImage2D(GL_TEXTURE_2D, 0, GLint(glInternalFormat(options)), width, height, 0, glFormat(options.pixelFormat),
                 GL_UNSIGNED_BYTE, texels);
    m_width = width, m_height = height;
    _applySampling(options);
    glBindTexture(GL_TEXTURE_2D, 0);
    return glGetError() == GL_NO_ERROR;
}

bool vxTexture::uploadFloatRgba(int width, int height, const float* rgba, const vxTextureData& options) {
    if (m_kind != k2D || !validSize(width, height)) return false;
    clearGlErrors();
    if (!m_id) glGenTextures(1, &m_id);
    glBindTexture(GL_TEXTURE_2D, m_id);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    vxTextureData format = options;
    format.pixelFormat = VX_PIXEL_FORMAT_RGBA;
    const GLenum internal = options.internalFormat == VX_INTERNAL_FORMAT_FLOAT ? GL_RGBA16F : GL_RGBA8;
    glTexImage2D(GL_TEXTURE_2D, 0, GLint(internal), width, height, 0, GL_RGBA, GL_FLOAT, rgba);
    m_width = width, m_height = height;
    _applySampling(format);
    glBindTexture(GL_TEXTURE_2D, 0);
    return glGetError() == GL_NO_ERROR;
}

bool vxTexture::uploadCubeFaces(int size, const float* const faces[6], const vxTextureData& options) {
    if (m_kind != kCubeMap || !validSize(size, size) || !faces) return false;
    for (int f = 0; f < 6; ++f)
        if (!faces[f]) return false;
    clearGlErrors();
    if (!m_id) glGenTextures(1, &m_id);
    glBindTexture(GL_TEXTURE_CUBE_MAP, m_id);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    for (int f = 0; f < 6; ++f)
        glTexImage2D(GLenum(GL_TEXTURE_CUBE_MAP_POSITIVE_X + f), 0, GL_RGB16F, size, size, 0, GL_RGB, GL_FLOAT, faces[f]);
    m_width = m_height = size;
    vxTextureData sampling = options;
    sampling.addressing = VX_ADDRESS_CLAMP;  // seams between faces would show a wrapped edge
    _applySampling(sampling);
    glBindTexture(GL_TEXTURE_CUBE_MAP, 0);
    return glGetError() == GL_NO_ERROR;
}

bool vxTexture::allocateDepth(int width, int height) {
    if (m_kind != kDepth || !validSize(width, height)) return false;
    clearGlErrors();
    if (!m_id) glGenTextures(1, &m_id);
    glBindTexture(GL_TEXTURE_2D, m_id);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT24, width, height, 0, GL_DEPTH_COMPONENT, GL_UNSIGNED_INT, nullptr);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_LINEAR);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_FUNC, GL_LEQUAL);
    glTexParameteri(GL_TEXTURE_2D, GL_DEPTH_TEXTURE_MODE, GL_LUMINANCE);
    m_width = width, m_height = height;
    glBindTexture(GL_TEXTURE_2D, 0);
    return glGetError() == GL_NO_ERROR;
}

void vxTexture::_applySampling(const vxTextureData& options) {
    const GLenum target = _target();
    m_mipmapped = options.filter == VX_FILTER_MIPMAP;
    if (m_mipmapped) glGenerateMipmap(target);
    setFilter(options.filter);
    setAddressing(options.addressing);
    setAnisotropy(options.anisotropy);
}

void vxTexture::setFilter(VX_FILTER filter) {
    if (!m_id) return;
    const GLenum target = _target();
    glBindTexture(target, m_id);
    if (filter == VX_FILTER_MIPMAP && !m_mipmapped) {
        glGenerateMipmap(target);
        m_mipmapped = true;
    }
    const GLint mag = filter == VX_FILTER_NEAREST ? GL_NEAREST : GL_LINEAR;
    const GLint min = filter == VX_FILTER_MIPMAP ? GL_LINEAR_MIPMAP_LINEAR : mag;
    glTexParameteri(target, GL_TEXTURE_MIN_FILTER, min);
    glTexParameteri(target, GL_TEXTURE_MAG_FILTER, mag);
}

void vxTexture::setAddressing(VX_ADDRESSING addressing) {
    if (!m_id) return;
    const GLenum target = _target();
    const GLint mode = addressing == VX_ADDRESS_CLAMP ? GL_CLAMP_TO_EDGE : GL_REPEAT;
    glBindTexture(target, m_id);
    glTexParameteri(target, GL_TEXTURE_WRAP_S, mode);
    glTexParameteri(target, GL_TEXTURE_WRAP_T, mode);
    if (m_kind == kCubeMap) glTexParameteri(target, GL_TEXTURE_WRAP_R, mode);
}

void vxTexture::setAnisotropy(float anisotropy) {
    if (!m_id) return;
    GLfloat most = 1.0f;
    glGetFloatv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, &most);
    glGetError();  // a driver without the extension answers with an error and leaves `most` at 1
    glBindTexture(_target(), m_id);
    if (most > 1.0f) glTexParameterf(_target(), GL_TEXTURE_MAX_ANISOTROPY_EXT, std::clamp(anisotropy, 1.0f, most));
}

void vxTexture::setCompareMode(bool compare) {
    if (!m_id || m_kind != kDepth) return;
    glBindTexture(GL_TEXTURE_2D, m_id);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_COMPARE_MODE, compare ? GL_COMPARE_REF_TO_TEXTURE : GL_NONE);
}

void vxTexture::bind(int unit) const {
    glActiveTexture(GLenum(GL_TEXTURE0 + unit));
    glBindTexture(_target(), m_id);
}

void vxTexture::unbind(int unit) const {
    glActiveTexture(GLenum(GL_TEXTURE0 + unit));
    glBindTexture(_target(), 0);
}

vxTextureMgr* vxTextureMgr::getInstance() {
    static vxTextureMgr instance;
    return &instance;
}

vxTexture* vxTextureMgr::createTexture2D(const char* path, const vxTextureData& options) {
    vxRenderWindow* window = currentWindow();
    DecodedImage image;
    if (!window || !decodeImageFile(path, image)) {
        vxTraceMgr::getInstance()->logTrace(1, "Unable to load image from file %s", path ? path : "(null)");
        return nullptr;
    }
    vxTexture* texture = window->make<vxTexture>(path, vxTexture::k2D);
    if (texture->uploadRgba8(image.width, image.height, image.rgba.data(), options)) return texture;
    window->destroy(texture);
    return nullptr;
}

vxTexture* vxTextureMgr::createTexture2D(const char* name, const uint8_t* data, size_t size,
                                         const vxTextureData& options) {
    vxRenderWindow* window = currentWindow();
    DecodedImage image;
    if (!window || !decodeImageMemory(data, size, image)) {
        vxTraceMgr::getInstance()->logTrace(1, "Unable to load image from memory");
        return nullptr;
    }
    vxTexture* texture = window->make<vxTexture>(name ? name : "", vxTexture::k2D);
    if (texture->uploadRgba8(image.width, image.height, image.rgba.data(), options)) return texture;
    window->destroy(texture);
    return nullptr;
}

vxTexture* vxTextureMgr::createTexture2D(const char* name, int width, int height, const vxTextureData& options) {
    vxRenderWindow* window = currentWindow();
    if (!window || !validSize(width, height)) return nullptr;
    vxTexture* texture = window->make<vxTexture>(name ? name : "", vxTexture::k2D);
    if (texture->uploadFloatRgba(width, height, nullptr, options)) return texture;
    window->destroy(texture);
    return nullptr;
}

vxTexture* vxTextureMgr::createCubeMap(const char* name, int faceSize, const float* const faces[6],
                                       const vxTextureData& options) {
    vxRenderWindow* window = currentWindow();
    if (!window) return nullptr;
    vxTexture* texture = window->make<vxTexture>(name ? name : "", vxTexture::kCubeMap);
    if (texture->uploadCubeFaces(faceSize, faces, options)) return texture;
    window->destroy(texture);
    return nullptr;
}

vxTexture* vxTextureMgr::getTexture(const char* name) const {
    vxRenderWindow* window = currentWindow();
    return window && name ? window->findNamed<vxTexture>(name) : nullptr;
}

}  // namespace Vantalux_nsp
