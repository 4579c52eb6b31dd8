#include "hardware_caps.h"

namespace Kalidornm {

// The AMD driver reader lands here; until then it finds no GPU.
void HardwareCaps::ATI_Init(GpuList&) {}

}  // namespace Kalidornm
