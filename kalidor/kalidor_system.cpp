#include "kalidor.h"
#include "library_globals.h"

namespace Kalidornm {

// Measured by the processor reader once it lands; 0 means not measured.
uint32_t Kalidor::getCpuSpeedMhz() { return 0; }

}  // namespace Kalidornm
