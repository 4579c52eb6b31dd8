#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Vantalux_nsp {

// A decoded picture: 8-bit RGBA, bottom row first, as OpenGL takes texture rows.
struct vxImage {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgba;
};

// Decodes any format the image library reads (JPEG, PNG, ...); false for an unknown or damaged file, or one
// above kVxMaxImageSide a side.
constexpr int kVxMaxImageSide = 16384;
bool vxDecodeImageFile(const char* path, vxImage& image);
bool vxDecodeImageMemory(const uint8_t* data, size_t size, vxImage& image);

}  // namespace Vantalux_nsp
