#pragma once

#include <cstdint>
#include <vector>

#include "kalidor/opengl/opengl_state.h"

namespace Kalidornm {

// The attributes of one EGL config that decide whether it offers a multisample mode.
struct EglConfigTraits {
    int32_t configId = 0;
    bool rendersOpenGl = false;   // EGL_RENDERABLE_TYPE holds EGL_OPENGL_BIT
    bool windowOrPbuffer = false; // EGL_SURFACE_TYPE holds a window or pbuffer bit
    bool rgba = false;            // EGL_COLOR_BUFFER_TYPE is EGL_RGB_BUFFER
    int32_t colorBits = 0;        // EGL_BUFFER_SIZE
    int32_t depthBits = 0;
    int32_t stencilBits = 0;
    int32_t sampleBuffers = 0;
    int32_t samples = 0;
};

// Walks the configs in order and keeps a config only when it passes every test and has more samples than any
// kept before (starting from 1): the first config of each count wins, and a smaller count met later is dropped.
std::vector<MsaaMode> scanMsaaModes(const std::vector<EglConfigTraits>& configs, int colorBits, int depthBits,
                                    int stencilBits);

// The counts 2, 4, 8, ... up to GL_MAX_SAMPLES, for a display that offers no multisample config: headless
// demos render into multisampled framebuffers instead.
std::vector<MsaaMode> framebufferMsaaModes(int32_t maxSamples);

// The config for a sample count: -1 asks for the largest; otherwise the first mode with at least `wanted`.
// 0 when none fits.
int32_t modeForSamples(const std::vector<MsaaMode>& modes, int32_t wanted);

}  // namespace Kalidornm
