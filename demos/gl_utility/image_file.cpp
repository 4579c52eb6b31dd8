#include "image_file.h"

#include <FreeImage.h>
#include <GL/glew.h>

ImageFile::~ImageFile() { _unloadBitmap(); }

bool ImageFile::_adopt(FIBITMAP* loaded) {
    if (!loaded) return false;
    _unloadBitmap();
    const unsigned bpp = FreeImage_GetBPP(loaded);
    if (bpp == 32) {
        pixelFormat = GL_BGRA;
    } else if (bpp == 24) {
        pixelFormat = GL_BGR;
    } else {
        FIBITMAP* converted = FreeImage_ConvertTo24Bits(loaded);
        FreeImage_Unload(loaded);
        if (!converted) return false;
        loaded = converted;
        pixelFormat = GL_BGR;
    }
    bitmap = loaded;
    width = FreeImage_GetWidth(loaded);
    height = FreeImage_GetHeight(loaded);
    return true;
}

bool ImageFile::loadFromMemory(const uint8_t* data, size_t size) {
    if (!data || size == 0 || size > 0xFFFFFFFFu) return false;
    FIMEMORY* stream = FreeImage_OpenMemory(const_cast<BYTE*>(data), DWORD(size));
    if (!stream) return false;
    const FREE_IMAGE_FORMAT format = FreeImage_GetFileTypeFromMemory(stream, 0);
    const bool ok = format != FIF_UNKNOWN && FreeImage_FIFSupportsReading(format) &&
                    _adopt(FreeImage_LoadFromMemory(format, stream, 0));
    FreeImage_CloseMemory(stream);
    return ok;
}

bool ImageFile::loadFromFile(const char* path) {
    if (!path || !*path) return false;
    FREE_IMAGE_FORMAT format = FreeImage_GetFileType(path, 0);
    if (format == FIF_UNKNOWN) format = FreeImage_GetFIFFromFilename(path);
    return format != FIF_UNKNOWN && FreeImage_FIFSupportsReading(format) && _adopt(FreeImage_Load(format, path, 0));
}

uint32_t ImageFile::createTexture() {
    if (!bitmap) return 0;
    if (textureId == 0) glGenTextures(1, &textureId);
    glBindTexture(GL_TEXTURE_2D, textureId);
    // FreeImage pads each scan line to 4 bytes, which is GL's default unpack alignment.
    glPixelStorei(GL_UNPACK_ALIGNMENT, 4);
    glTexImage2D(GL_TEXTURE_2D, 0, GLint(internalFormat), GLsizei(width), GLsizei(height), 0, pixelFormat,
                 GL_UNSIGNED_BYTE, FreeImage_GetBits(bitmap));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    return textureId;
}

void ImageFile::release() {
    if (textureId != 0) glDeleteTextures(1, &textureId);
    textureId = 0;
    _unloadBitmap();
}

void ImageFile::_unloadBitmap() {
    if (bitmap) FreeImage_Unload(bitmap);
    bitmap = nullptr;
    width = height = 0;
}
