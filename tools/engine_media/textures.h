#pragma once

#include <string>

namespace media {

// The demos' textures under <media>/textures, and the pictures the program holds as bytes under
// <heldDir>; false when one cannot be written.
bool writeTextures(const std::string& mediaDir, const std::string& heldDir);

}  // namespace media
