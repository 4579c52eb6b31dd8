#include "engine/vx_gl_states.h"

#include <cstddef>

namespace Vantalux_nsp {

namespace {

constexpr GLenum kBlendFactors[] = {GL_ZERO,      GL_ONE,           GL_SRC_COLOR,          GL_ONE_MINUS_SRC_COLOR,
                                    GL_DST_COLOR, GL_ONE_MINUS_DST_COLOR, GL_DST_ALPHA,     GL_ONE_MINUS_DST_ALPHA,
                                    GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA};
static_assert(sizeof kBlendFactors / sizeof kBlendFactors[0] == VX_BLEND_ONE_MINUS_SRC_ALPHA + 1);

constexpr GLenum kDepthFunctions[] = {GL_NEVER,  GL_LESS,  GL_LEQUAL,   GL_GREATER,
                                      GL_GEQUAL, GL_EQUAL, GL_NOTEQUAL, GL_ALWAYS};
static_assert(sizeof kDepthFunctions / sizeof kDepthFunctions[0] == VX_DEPTH_ALWAYS + 1);

template <size_t N>
GLenum pick(const GLenum (&table)[N], int index, GLenum fallback) {
    return index >= 0 && size_t(index) < N ? table[index] : fallback;
}

}  // namespace

GLenum toGlBlendFactor(VX_BLEND_FACTOR factor) { return pick(kBlendFactors, factor, GL_ONE); }

GLenum toGlDepthFunc(VX_DEPTH_FUNC function) { return pick(kDepthFunctions, function, GL_LEQUAL); }

GLenum toGlCullFace(VX_CULL_MODE mode) {
    switch (mode) {
        case VX_CULL_FRONT: return GL_FRONT;
        case VX_CULL_FRONT_AND_BACK: return GL_FRONT_AND_BACK;
        default: return GL_BACK;
    }
}

GLenum toGlPolygonMode(VX_POLYGON_MODE mode) {
    switch (mode) {
        case VX_POLYGON_LINE: return GL_LINE;
        case VX_POLYGON_POINT: return GL_POINT;
        default: return GL_FILL;
    }
}

}  // namespace Vantalux_nsp
