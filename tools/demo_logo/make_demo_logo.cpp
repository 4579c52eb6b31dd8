// Draws the demos' corner logo, a 128x128 picture of our own: a lens ring over a black ground with three
// colour beams through it. Black stays black under the additive blending the demos draw the logo with, so
// only the ring and the beams show over a scene. Writes the JPEG named by its argument.
#include <FreeImage.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {

constexpr int kSize = 128;

float smoothBand(float distance, float centre, float halfWidth) {
    const float d = std::fabs(distance - centre) / halfWidth;
    return d >= 1.0f ? 0.0f : 1.0f - d * d;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s OUTPUT.jpg\n", argv[0]);
        return 2;
    }
    FIBITMAP* image = FreeImage_Allocate(kSize, kSize, 24);
    if (!image) return 1;
    for (int y = 0; y < kSize; ++y) {
        BYTE* row = FreeImage_GetScanLine(image, y);
        for (int x = 0; x < kSize; ++x) {
            const float fx = (x + 0.5f) / kSize * 2.0f - 1.0f, fy = (y + 0.5f) / kSize * 2.0f - 1.0f;
            const float r = std::sqrt(fx * fx + fy * fy);
            float red = 0, green = 0, blue = 0;
            // The lens: a ring with a soft edge, brighter towards the upper left where light falls on it.
            const float ring = smoothBand(r, 0.62f, 0.12f);
            const float light = 0.65f + 0.35f * (-fx + fy) / 1.4142f;
            red += 0.35f * ring * light, green += 0.75f * ring * light, blue += 1.0f * ring * light;
            // Three beams leaving the lens to the lower right, in the three primaries.
            for (int beam = 0; beam < 3; ++beam) {
                const float offset = (beam - 1) * 0.16f;
                const float along = (fx - fy) / 1.4142f, across = (fx + fy) / 1.4142f - offset;
                const float strength = along > 0.0f ? smoothBand(across, 0.0f, 0.05f) * std::min(1.0f, along * 2.0f) : 0;
                (beam == 0 ? red : beam == 1 ? green : blue) += strength;
            }
            row[FI_RGBA_RED] = BYTE(std::min(1.0f, red) * 255.0f);
            row[FI_RGBA_GREEN] = BYTE(std::min(1.0f, green) * 255.0f);
            row[FI_RGBA_BLUE] = BYTE(std::min(1.0f, blue) * 255.0f);
            row += 3;
        }
    }
    const bool saved = FreeImage_Save(FIF_JPEG, image, argv[1], JPEG_QUALITYGOOD);
    FreeImage_Unload(image);
    return saved ? 0 : 1;
}
