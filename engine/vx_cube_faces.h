#pragma once

#include "engine/vx_math.h"

namespace Vantalux_nsp {

// How a picture of one side of a box of sky stands, seen from inside the box by a viewer facing the front
// (-Z) with +Y up: the side's direction from the centre, and the directions of the picture's right and
// upward edges. The top picture's lower edge meets the front's upper edge; the bottom picture's upper edge
// meets the front's lower edge.
struct vxCubeFaceFrame {
    vxVec3 axis;
    vxVec3 right;
    vxVec3 up;
};

// In the order of vxSkybox::Face and of OpenGL's cube faces: +X, -X, +Y, -Y, and the front (-Z) before
// the back (+Z).
inline constexpr vxCubeFaceFrame kVxSkyboxFaceFrames[6] = {
    {{1, 0, 0}, {0, 0, 1}, {0, 1, 0}},    // right
    {{-1, 0, 0}, {0, 0, -1}, {0, 1, 0}},  // left
    {{0, 1, 0}, {1, 0, 0}, {0, 0, 1}},    // top
    {{0, -1, 0}, {1, 0, 0}, {0, 0, -1}},  // bottom
    {{0, 0, -1}, {1, 0, 0}, {0, 1, 0}},   // front
    {{0, 0, 1}, {-1, 0, 0}, {0, 1, 0}},   // back
};

}  // namespace Vantalux_nsp
