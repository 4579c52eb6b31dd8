#pragma once

#include <cstddef>
#include <cstdint>

#include "demos/gl_utility/image_codec.h"

// An image decoded by image_codec and the texture made from it. Loading needs no context; createTexture and
// release need the current one.
class ImageFile {
public:
    ImageFile() = default;
    ImageFile(const ImageFile&) = delete;
    ImageFile& operator=(const ImageFile&) = delete;

    // False when the bytes or the file are not an image the codec can read.
    bool loadFromMemory(const uint8_t* data, size_t size) { return decodeImageMemory(data, size, m_image); }
    bool loadFromFile(const char* path) { return decodeImageFile(path, m_image); }
    int width() const { return m_image.width; }
    int height() const { return m_image.height; }
    // Makes an RGBA GL_TEXTURE_2D with nearest filtering from the image; 0 without one.
    uint32_t createTexture();
    uint32_t textureId() const { return m_textureId; }
    // Deletes the texture, if any, and forgets the image.
    void release();

private:
    DecodedImage m_image;
    uint32_t m_textureId = 0;
};
