#pragma once

#include <vector>

// One framebuffer configuration as the driver describes it.
struct FramebufferConfigTraits {
    int id = 0;
    bool rendersOpenGl = false;
    bool window = false;  // can back a window surface
    int colorBits = 0;    // all channels with alpha
    int depthBits = 0;
    int stencilBits = 0;
    int sampleBuffers = 0;
    int samples = 0;
    unsigned long visualId = 0;
};

// The multisampled configuration for a request of `samples` (above 0): among the OpenGL window configs of
// 32 colour, 24 depth and 8 stencil bits with a sample buffer (and, when `visualId` is not 0, that visual),
// the first one with exactly `samples`, else the one with the most samples, even above the request. So a
// request is met exactly when it can be. -1 (the index) when none qualifies.
int chooseMultisampleConfig(const std::vector<FramebufferConfigTraits>& configs, int samples, unsigned long visualId);

// The same rule over plain sample counts (multisampled framebuffer objects): `samples` when offered, else
// the largest offered count; 0 when nothing is offered.
int chooseSampleCount(const std::vector<int>& offered, int samples);
