#include "hardware_caps.h"

namespace Kalidornm {

// Processor and OS detection lands with its reader.
void HardwareCaps::_queryCPUInfo() {}

}  // namespace Kalidornm
