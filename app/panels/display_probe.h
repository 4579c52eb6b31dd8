#pragma once

#include <string>

namespace panels {

struct DisplayProbe {
    bool found = false;
    std::string platform;  // the window toolkit's platform to ask for ("xcb", "wayland"); empty: its own choice
    std::string why;       // when not found: what was missing or refused
};

// Looks for a display the window can open on, from the environment and by connecting to it, so that a missing
// or refusing display is told apart before the window toolkit gives up on it. A platform the environment names
// that is neither X nor Wayland (offscreen, vnc) is trusted as it is.
DisplayProbe probeDisplay();

}  // namespace panels
