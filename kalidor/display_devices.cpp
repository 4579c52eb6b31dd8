#include "hardware_caps.h"

namespace Kalidornm {

// Display-device discovery lands with the PCI reader; until then the machine shows no display device.
void HardwareCaps::_readDisplayDeviceData() {}

void HardwareCaps::_createOtherAdapterRecords(GpuList&) {}

}  // namespace Kalidornm
