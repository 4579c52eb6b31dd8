#pragma once

#include <string>

namespace media {

// Writes a (2, 3) torus knot as a 3DS file: one object "knot" with texture coordinates, all faces of the
// material "knot_mat", one smoothing group; `along` segments along the knot, `around` around its tube.
bool writeKnot3ds(const std::string& path, int along, int around);

}  // namespace media
