#pragma once

#include <string>
#include <vector>

namespace media {

// Writes linear RGB floats (top row first) as a Radiance RGBE picture with run-length encoded scanlines.
bool writeRgbe(const std::string& path, int width, int height, const std::vector<float>& rgb);

}  // namespace media
