#pragma once

// The orthographic projection of the unit square (0..1 in x and y, depth -1..1) onto the whole viewport, in
// OpenGL's column order: where the corner logo and the OpenCL window image lay their quad.
constexpr float kUnitSquareToClip[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, -1, 0, -1, -1, -0.0f, 1};
