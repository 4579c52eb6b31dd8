#include "render_window.h"

namespace Kalidornm {

// The headless OpenGL probe lands here; until then no context is made and the OpenGL values stay at their
// defaults.
bool RenderWindow::_createProbeContext() { return false; }

void RenderWindow::_destroyProbeContext() {}

}  // namespace Kalidornm
