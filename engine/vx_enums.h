#pragma once

// The engine's state numbers. Callers pass these rather than OpenGL's names, so that the engine's headers stay
// free of GL.
namespace Vantalux_nsp {

enum VX_STATE {
    VX_DEPTH_TEST,
    VX_DEPTH_WRITE,
    VX_BLENDING,
    VX_CULLING,
    VX_LIGHTING,
    VX_TEXTURING,  // 2D texturing of the fixed-function path on the active unit
    VX_COLOR_WRITE,
    VX_MULTISAMPLE,
};

enum VX_BLEND_FACTOR {
    VX_BLEND_ZERO = 0,
    VX_BLEND_ONE = 1,
    VX_BLEND_SRC_COLOR = 2,
    VX_BLEND_ONE_MINUS_SRC_COLOR = 3,
    VX_BLEND_DST_COLOR = 4,
    VX_BLEND_ONE_MINUS_DST_COLOR = 5,
    VX_BLEND_DST_ALPHA = 6,
    VX_BLEND_ONE_MINUS_DST_ALPHA = 7,
    VX_BLEND_SRC_ALPHA = 8,
    VX_BLEND_ONE_MINUS_SRC_ALPHA = 9,
};

enum VX_DEPTH_FUNC {
    VX_DEPTH_NEVER = 0,
    VX_DEPTH_LESS = 1,
    VX_DEPTH_LEQUAL = 2,  // passes that write depth
    VX_DEPTH_GREATER = 3,
    VX_DEPTH_GEQUAL = 4,
    VX_DEPTH_EQUAL = 5,  // additive passes over depth an earlier pass left
    VX_DEPTH_NOTEQUAL = 6,
    VX_DEPTH_ALWAYS = 7,
};

enum VX_CULL_MODE {
    VX_CULL_BACK = 0,
    VX_CULL_FRONT_AND_BACK = 1,
    VX_CULL_FRONT = 2,  // shadow maps: the far side of a caster keeps its shadow off its own lit face
};

enum VX_POLYGON_MODE {
    VX_POLYGON_FILL = 0,
    VX_POLYGON_LINE = 1,
    VX_POLYGON_POINT = 2,
};

enum VX_PIXEL_FORMAT {
    VX_PIXEL_FORMAT_RGB = 2,
    VX_PIXEL_FORMAT_RGBA = 4,
};

enum VX_INTERNAL_FORMAT {
    VX_INTERNAL_FORMAT_BYTE = 0,   // 8 bits a channel
    VX_INTERNAL_FORMAT_FLOAT = 5,  // 16-bit floats a channel: HDR colours
};

enum VX_FILTER {
    VX_FILTER_NEAREST = 0,
    VX_FILTER_LINEAR = 1,
    VX_FILTER_MIPMAP = 2,  // trilinear over generated mipmaps
};

enum VX_ADDRESSING {
    VX_ADDRESS_REPEAT = 0,
    VX_ADDRESS_CLAMP = 1,
};

enum VX_GPU_VENDOR {
    VX_GPU_VENDOR_OTHER = 0,
    VX_GPU_VENDOR_NVIDIA = 1,
    VX_GPU_VENDOR_AMD = 2,
};

// Capabilities getGPUCap answers, numbered as the hardware library's capability flags.
enum VX_GPU_CAP {
    VX_CAP_FRAMEBUFFER_OBJECT = 20,
    VX_CAP_POINT_SPRITE = 24,
    VX_CAP_OPENGL_2_0 = 25,
    VX_CAP_DRAW_INSTANCED = 29,
};

}  // namespace Vantalux_nsp
