#pragma once

#include <cstdint>

#include "demos/gl_utility/textured_quad.h"

// A picture that an OpenCL demo computes, shown over the whole window: a texture (RGBA, nearest filtering)
// drawn by the same textured quad as the corner logo.
class WindowImage {
public:
    WindowImage() = default;
    WindowImage(const WindowImage&) = delete;
    WindowImage& operator=(const WindowImage&) = delete;

    // A width x height texture with undefined contents. `versionLine` starts the shaders. False when the
    // program cannot be built; the reason is in errorText().
    bool create(const char* versionLine, int width, int height);
    uint32_t texture() const { return m_texture; }
    // Over the whole client area with depth testing and depth writes off, which it turns back on.
    void draw(int clientWidth, int clientHeight);
    void release();
    const char* errorText() const { return m_quad.errorText(); }

private:
    TexturedQuad m_quad;
    uint32_t m_texture = 0;
};
