#include "frame_capture.h"

#include <FreeImage.h>

bool writePng(const std::string& path, const std::vector<uint8_t>& rgba, int width, int height) {
    if (width <= 0 || height <= 0 || rgba.size() != size_t(width) * size_t(height) * 4) return false;
    FIBITMAP* image = FreeImage_Allocate(width, height, 24);
    if (!image) return false;
    // FreeImage keeps its rows bottom-up too, so row y of the read-back is scan line y.
    for (int y = 0; y < height; ++y) {
        BYTE* out = FreeImage_GetScanLine(image, y);
        const uint8_t* in = rgba.data() + size_t(y) * size_t(width) * 4;
        for (int x = 0; x < width; ++x, in += 4, out += 3) {
            out[FI_RGBA_RED] = in[0];
            out[FI_RGBA_GREEN] = in[1];
            out[FI_RGBA_BLUE] = in[2];
        }
    }
    const bool saved = FreeImage_Save(FIF_PNG, image, path.c_str(), PNG_DEFAULT);
    FreeImage_Unload(image);
    return saved;
}

std::string capturedFrameName(const char* resultName) { return std::string("demo_") + (resultName ? resultName : "") + ".png"; }
