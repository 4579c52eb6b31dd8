#pragma once

#include "demos/gl_utility/image_file.h"
#include "demos/gl_utility/textured_quad.h"

// The 128x128 logo every GL 3/4 and OpenCL demo lays over the lower right corner of its frame, added to
// the picture (blending one, one) so that its black ground leaves the scene as it is.
class CornerLogo {
public:
    static constexpr int kSize = 128;

    // `versionLine` starts the shaders ("#version 140", "#version 150 core", "#version 400 core"). A logo
    // that cannot be built is not drawn; the demo goes on without it.
    bool create(const char* versionLine);
    // Draws over the frame in a window of `clientWidth` pixels, then restores depth testing and writes.
    void draw(int clientWidth);
    // The image first, then the quad.
    void release();

private:
    ImageFile m_image;
    TexturedQuad m_quad;
    bool m_ready = false;
};
