#include "hardware_caps.h"

namespace Kalidornm {

// The NVIDIA driver reader lands here; until then it finds no GPU.
void HardwareCaps::NVAPI_Init(GpuList&) {}

}  // namespace Kalidornm
