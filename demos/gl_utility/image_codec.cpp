#include "demos/gl_utility/image_codec.h"

#include <FreeImage.h>

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

bool toRgba(FIBITMAP* source, DecodedImage& image) {
    if (!source) return false;
    const int width = int(FreeImage_GetWidth(source)), height = int(FreeImage_GetHeight(source));
    if (width < 1 || height < 1 || width > kMaxImageSide || height > kMaxImageSide) return false;
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

bool decodeImageFile(const char* path, DecodedImage& image) {
    if (!path || !*path) return false;
    FREE_IMAGE_FORMAT format = FreeImage_GetFileType(path, 0);
    if (format == FIF_UNKNOWN) format = FreeImage_GetFIFFromFilename(path);
    if (format == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(format)) return false;
    Bitmap bitmap(FreeImage_Load(format, path, 0));
    return toRgba(bitmap.handle, image);
}

bool decodeImageMemory(const uint8_t* data, size_t size, DecodedImage& image) {
    if (!data || size == 0 || size > 0x7fffffffu) return false;
    MemoryStream stream(data, size);
    if (!stream.handle) return false;
    const FREE_IMAGE_FORMAT format = FreeImage_GetFileTypeFromMemory(stream.handle, 0);
    if (format == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(format)) return false;
    Bitmap bitmap(FreeImage_LoadFromMemory(format, stream.handle, 0));
    return toRgba(bitmap.handle, image);
}

bool writePng(const std::string& path, const std::vector<uint8_t>& rgba, int width, int height) {
    if (width <= 0 || height <= 0 || rgba.size() != size_t(width) * size_t(height) * 4) return false;
    Bitmap image(FreeImage_Allocate(width, height, 24));
    if (!image.handle) return false;
    // FreeImage keeps its rows bottom-up too, so row y of the read-back is scan line y.
    for (int y = 0; y < height; ++y) {
        BYTE* out = FreeImage_GetScanLine(image.handle, y);
        const uint8_t* in = rgba.data() + size_t(y) * size_t(width) * 4;
        for (int x = 0; x < width; ++x, in += 4, out += 3) {
            out[FI_RGBA_RED] = in[0];
            out[FI_RGBA_GREEN] = in[1];
            out[FI_RGBA_BLUE] = in[2];
        }
    }
    return FreeImage_Save(FIF_PNG, image.handle, path.c_str(), PNG_DEFAULT);
}
