#pragma once

#include <cstdint>

namespace Kalidornm {

struct DisplayMode {
    uint32_t width = 0, height = 0, refreshHz = 0, bitsPerPixel = 0;
};

// The current mode of the default X screen; all 0 when no X display can be reached (headless machines).
DisplayMode readCurrentDisplayMode();

}  // namespace Kalidornm
