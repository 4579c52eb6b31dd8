#include "demos/gl_utility/sample_choice.h"

#include <cstddef>

int chooseMultisampleConfig(const std::vector<FramebufferConfigTraits>& configs, int samples,
                            unsigned long visualId) {
    int best = -1;
    for (size_t i = 0; i < configs.size(); ++i) {
        const FramebufferConfigTraits& c = configs[i];
        if (!c.rendersOpenGl || !c.window || c.colorBits != 32 || c.depthBits != 24 || c.stencilBits != 8) continue;
        if (visualId != 0 && c.visualId != visualId) continue;
        if (c.sampleBuffers != 1) continue;
        if (best < 0 || c.samples > configs[size_t(best)].samples) best = int(i);
        if (c.samples == samples) return int(i);
    }
    return best;
}

int chooseSampleCount(const std::vector<int>& offered, int samples) {
    int best = 0;
    for (int count : offered) {
        if (count == samples) return count;
        if (count > best) best = count;
    }
    return best;
}
