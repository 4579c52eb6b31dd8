#pragma once

#include <cstddef>
#include <cstdint>

struct FIBITMAP;

// An image decoded by FreeImage, kept as 24 or 32 bits a pixel in FreeImage's bottom-up BGR(A) order, and
// the texture made from it. Loading needs no context; createTexture and release need the current one.
class ImageFile {
public:
    ImageFile() = default;
    ~ImageFile();
    ImageFile(const ImageFile&) = delete;
    ImageFile& operator=(const ImageFile&) = delete;

    // False when the bytes or the file are not an image FreeImage can read.
    bool loadFromMemory(const uint8_t* data, size_t size);
    bool loadFromFile(const char* path);
    // Makes a GL_TEXTURE_2D with nearest filtering from the bitmap; 0 without a bitmap.
    uint32_t createTexture();
    // Deletes the texture, if any, and unloads the bitmap.
    void release();

    FIBITMAP* bitmap = nullptr;
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t pixelFormat = 0x80E1;     // GL_BGRA; GL_BGR (0x80E0) for 24-bit images
    uint32_t internalFormat = 0x1908;  // GL_RGBA
    uint32_t textureId = 0;

private:
    bool _adopt(FIBITMAP* loaded);
    void _unloadBitmap();
};
