#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Vantalux_nsp {

class vxTexture;

// A high dynamic range picture: 3 floats a pixel (linear RGB), top row first.
struct vxRgbeImage {
    int width = 0;
    int height = 0;
    std::vector<float> rgb;
};

// Reads Radiance RGBE pictures (".hdr"): the text header, the resolution line "-Y height +X width", and
// scanlines that are flat, run-length encoded per channel, or in the older repeat-pixel encoding.
class vxRgbeReader {
public:
    // Larger pictures are refused rather than allocated.
    static constexpr int kMaxSide = 16384;  // a side, in pixels
    static constexpr size_t kMaxPixels = size_t(16) << 20;

    // False, with the image emptied, for anything that is not a whole RGBE picture.
    static bool readFromMemory(const uint8_t* data, size_t size, vxRgbeImage& image);
    static bool readFile(const char* path, vxRgbeImage& image);

    // A cube map in the current render window from a picture laid out as a vertical cross (see
    // vx_cube_cross.h); null when the file cannot be read or is not such a cross.
    static vxTexture* loadRGBECubeMap(const char* path);

    // One pixel's four bytes to linear RGB.
    static void rgbeToFloat(const uint8_t rgbe[4], float rgb[3]);
};

}  // namespace Vantalux_nsp
