// Image decoding through FreeImage.
#include <FreeImage.h>

#include "vx_image.h"

namespace Vantalux_nsp {

namespace {

// Owns one FreeImage bitmap.
struct Bitmap {
    FIBITMAP* handle = nullptr;
    explicit Bitmap(FIBITMAP* h) : handle(h) {}
    ~Bitmap() {
        if (handle) FreeImage_Unload(handle);
    }
    Bitmap(const Bitmap&) = delete;
    Bitmap& operator=(const Bitmap&) = delete;
};

struct MemoryStream {
    FIMEMORY* handle;
    MemoryStream(const uint8_t* data, size_t size)
        : handle(FreeImage_OpenMemory(const_cast<BYTE*>(data), DWORD(size))) {}
    ~MemoryStream() {
        if (handle) FreeImage_CloseMemory(handle);
    }
    MemoryStream(const MemoryStream&) = delete;
    MemoryStream& operator=(const MemoryStream&) = delete;
};

bool toRgba(FIBITMAP* source, vxImage& image) {
    if (!source) return false;
    const int width = int(FreeImage_GetWidth(source)), height = int(FreeImage_GetHeight(source));
    if (width < 1 || height < 1 || width > kVxMaxImageSide || height > kVxMaxImageSide) return false;
    Bitmap converted(FreeImage_ConvertTo32Bits(source));
    if (!converted.handle) return false;
    image.width = width;
    image.height = height;
    image.rgba.resize(size_t(width) * size_t(height) * 4);
    // FreeImage keeps rows bottom first, as OpenGL wants them, in the byte order of FI_RGBA_*.
    for (int y = 0; y < height; ++y) {
        const BYTE* row = FreeImage_GetScanLine(converted.handle, y);
        uint8_t* out = &image.rgba[size_t(y) * size_t(width) * 4];
        for (int x = 0; x < width; ++x, row += 4, out += 4) {
            out[0] = row[FI_RGBA_RED];
            out[1] = row[FI_RGBA_GREEN];
            out[2] = row[FI_RGBA_BLUE];
            out[3] = row[FI_RGBA_ALPHA];
        }
    }
    return true;
}

}  // namespace

bool vxDecodeImageFile(const char* path, vxImage& image) {
    if (!path || !*path) return false;
    FREE_IMAGE_FORMAT format = FreeImage_GetFileType(path, 0);
    if (format == FIF_UNKNOWN) format = FreeImage_GetFIFFromFilename(path);
    if (format == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(format)) return false;
    Bitmap bitmap(FreeImage_Load(format, path, 0));
    return toRgba(bitmap.handle, image);
}

bool vxDecodeImageMemory(const uint8_t* data, size_t size, vxImage& image) {
    if (!data || size == 0 || size > 0x7fffffffu) return false;
    MemoryStream stream(data, size);
    if (!stream.handle) return false;
    const FREE_IMAGE_FORMAT format = FreeImage_GetFileTypeFromMemory(stream.handle, 0);
    if (format == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(format)) return false;
    Bitmap bitmap(FreeImage_LoadFromMemory(format, stream.handle, 0));
    return toRgba(bitmap.handle, image);
}

}  // namespace Vantalux_nsp
