#pragma once

#include <GL/glew.h>

#include "engine/vx_enums.h"

namespace Vantalux_nsp {

// The OpenGL names of the engine's state numbers.
GLenum toGlBlendFactor(VX_BLEND_FACTOR factor);
GLenum toGlDepthFunc(VX_DEPTH_FUNC function);
GLenum toGlCullFace(VX_CULL_MODE mode);
GLenum toGlPolygonMode(VX_POLYGON_MODE mode);

}  // namespace Vantalux_nsp
