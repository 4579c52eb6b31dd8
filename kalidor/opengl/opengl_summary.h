#pragma once

#include "kalidor/hardware_caps.h"
#include "kalidor/library_globals.h"

namespace Kalidornm {

// The scan's last step: OpenGL numbers, version strings, extension names and counts into the summary.
void copyOpenGlSummary(const HardwareCaps& caps, GpuSummary& summary);

}  // namespace Kalidornm
