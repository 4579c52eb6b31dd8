#pragma once

#include <array>
#include <vector>

#include "engine/vx_math.h"
#include "engine/vx_rgbe_reader.h"

namespace Vantalux_nsp {

// A cube map unfolded as a vertical cross, three faces wide and four high, seen from inside the cube by a
// viewer facing the front (-Z) with +Y up:
//
//            [ up    ]
//   [ left ] [ front ] [ right ]
//            [ down  ]
//            [ back  ]     (upside down: it continues the column below the floor)
//
// Each tile is a square of side width / 3; the height must be four of them.
namespace vxCubeCross {

// The six faces in OpenGL's order (+X, -X, +Y, -Y, +Z, -Z), each size x size RGB floats with OpenGL's
// first row (t = 0) first.
struct Faces {
    int size = 0;
    std::array<std::vector<float>, 6> rgb;
};

// False when the picture is not a vertical cross.
bool split(const vxRgbeImage& cross, Faces& faces);

// The direction OpenGL samples for texel coordinates (s, t) in 0 to 1 of a face (0 to 5, OpenGL's order).
vxVec3 faceDirection(int face, float s, float t);

// The pixel of a cross of tiles `tileSize` pixels wide that shows a direction.
void pixelForDirection(const vxVec3& direction, int tileSize, int& x, int& y);

// The direction a pixel of the cross shows; false for a pixel outside the six tiles.
bool directionForPixel(int x, int y, int tileSize, vxVec3& direction);

}  // namespace vxCubeCross

}  // namespace Vantalux_nsp
