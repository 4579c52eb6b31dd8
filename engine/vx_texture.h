#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "engine/vx_enums.h"
#include "engine/vx_resource.h"

namespace Vantalux_nsp {

// How a texture is made: sampling, addressing and the format of its texels.
struct vxTextureData {
    VX_FILTER filter = VX_FILTER_LINEAR;
    VX_ADDRESSING addressing = VX_ADDRESS_REPEAT;
    float anisotropy = 1.0f;
    VX_INTERNAL_FORMAT internalFormat = VX_INTERNAL_FORMAT_BYTE;
    VX_PIXEL_FORMAT pixelFormat = VX_PIXEL_FORMAT_RGBA;

    void setInternalFloatPixelFormat(int format) { internalFormat = VX_INTERNAL_FORMAT(format); }
    void changePixelFormat(int format) { pixelFormat = VX_PIXEL_FORMAT(format); }
};

// One OpenGL texture: 2D, cube map, or the depth texture of a render target.
class vxTexture : public vxResource {
public:
    enum Kind { k2D, kCubeMap, kDepth };

    vxTexture(std::string name, Kind kind);
    ~vxTexture() override;

    const std::string& getName() const { return m_name; }
    Kind getKind() const { return m_kind; }
    uint32_t getId() const { return m_id; }
    int getWidth() const { return m_width; }
    int getHeight() const { return m_height; }

    // 8-bit RGBA texels, bottom row first.
    bool uploadRgba8(int width, int height, const uint8_t* rgba, const vxTextureData& options);
    // Float RGBA texels, bottom row first; null leaves the texels undefined (a render target's).
    bool uploadFloatRgba(int width, int height, const float* rgba, const vxTextureData& options);
    // Six square faces of float RGB texels in OpenGL's face order (+X, -X, +Y, -Y, +Z, -Z).
    bool uploadCubeFaces(int size, const float* const faces[6], const vxTextureData& options);
    // An empty depth texture for a shadow map, compared against the texture coordinate's r when sampled.
    bool allocateDepth(int width, int height);

    void setFilter(VX_FILTER filter);
    void setAddressing(VX_ADDRESSING addressing);
    void setAnisotropy(float anisotropy);
    // Depth textures only: sampled as a comparison (shadow samplers) or as plain depth.
    void setCompareMode(bool compare);

    void bind(int unit) const;
    void unbind(int unit) const;

private:
    void _applySampling(const vxTextureData& options);
    unsigned _target() const;

    std::string m_name;
    Kind m_kind;
    uint32_t m_id = 0;
    int m_width = 0;
    int m_height = 0;
    bool m_mipmapped = false;
};

// Makes textures in the current render window; each call answers null on failure (no window, an image that
// cannot be read, a size out of range).
class vxTextureMgr {
public:
    static vxTextureMgr* getInstance();

    // From an image file, named by its path.
    vxTexture* createTexture2D(const char* path, const vxTextureData& options = {});
    // From an image file's bytes held in memory.
    vxTexture* createTexture2D(const char* name, const uint8_t* data, size_t size, const vxTextureData& options = {});
    // Of a size, float RGBA texels to upload later with uploadFloatRgba.
    vxTexture* createTexture2D(const char* name, int width, int height, const vxTextureData& options = {});
    vxTexture* createCubeMap(const char* name, int faceSize, const float* const faces[6],
                             const vxTextureData& options = {});
    // The newest texture of that name in the current render window.
    vxTexture* getTexture(const char* name) const;
};

}  // namespace Vantalux_nsp
