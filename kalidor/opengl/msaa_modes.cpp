#include "kalidor/opengl/msaa_modes.h"

namespace Kalidornm {

std::vector<MsaaMode> scanMsaaModes(const std::vector<EglConfigTraits>& configs, int colorBits, int depthBits,
                                    int stencilBits) {
    std::vector<MsaaMode> modes;
    int32_t largest = 1;
    for (const EglConfigTraits& c : configs) {
        const bool fits = c.rendersOpenGl && c.windowOrPbuffer && c.rgba && c.depthBits == depthBits &&
                          c.stencilBits == stencilBits && c.sampleBuffers == 1 && c.colorBits == colorBits;
        if (!fits || c.samples <= largest) continue;
        modes.push_back({c.configId, c.samples});
        largest = c.samples;
    }
    return modes;
}

std::vector<MsaaMode> framebufferMsaaModes(int32_t maxSamples) {
    std::vector<MsaaMode> modes;
    for (int32_t samples = 2; samples <= maxSamples; samples *= 2) modes.push_back({0, samples});
    return modes;
}

int32_t modeForSamples(const std::vector<MsaaMode>& modes, int32_t wanted) {
    if (wanted == -1) return modes.empty() ? 0 : modes.back().pixelFormat;
    for (const MsaaMode& mode : modes)
        if (mode.samples >= wanted) return mode.pixelFormat;
    return 0;
}

}  // namespace Kalidornm
