#include "picture.h"

#include <FreeImage.h>

#include "noise.h"

namespace media {

bool writePicture(const std::string& path, int width, int height, const std::function<Rgb(float u, float v)>& shade) {
    FIBITMAP* image = FreeImage_Allocate(width, height, 24);
    if (!image) return false;
    for (int y = 0; y < height; ++y) {
        // FreeImage keeps the bottom row first.
        BYTE* row = FreeImage_GetScanLine(image, height - 1 - y);
        for (int x = 0; x < width; ++x, row += 3) {
            const Rgb c = shade((float(x) + 0.5f) / float(width), (float(y) + 0.5f) / float(height));
            row[FI_RGBA_RED] = BYTE(clamp01(c.r) * 255.0f + 0.5f);
            row[FI_RGBA_GREEN] = BYTE(clamp01(c.g) * 255.0f + 0.5f);
            row[FI_RGBA_BLUE] = BYTE(clamp01(c.b) * 255.0f + 0.5f);
        }
    }
    const bool png = path.size() > 4 && path.compare(path.size() - 4, 4, ".png") == 0;
    const bool saved = png ? FreeImage_Save(FIF_PNG, image, path.c_str(), PNG_Z_BEST_COMPRESSION)
                           : FreeImage_Save(FIF_JPEG, image, path.c_str(), JPEG_QUALITYGOOD | JPEG_OPTIMIZE);
    FreeImage_Unload(image);
    return saved;
}

}  // namespace media
