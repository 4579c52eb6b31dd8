#pragma once

#include <functional>
#include <string>

namespace media {

struct Rgb {
    float r = 0, g = 0, b = 0;
};

// Writes a picture of width x height whose pixel (x, y), y down from the top, is shade(u, v) with u and v
// the pixel centre in 0 to 1. The format follows the extension (.jpg, .png). False when it cannot be written.
bool writePicture(const std::string& path, int width, int height, const std::function<Rgb(float u, float v)>& shade);

}  // namespace media
