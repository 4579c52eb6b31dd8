#pragma once

#include "display_devices.h"

namespace Kalidornm {

// The operating system's list of display adapters, one per index; false past the last.
bool enumDisplayDevice(int index, DisplaySlot* device);

}  // namespace Kalidornm
