#include "hardware_caps.h"

namespace Kalidornm {

// Display-device discovery lands with the PCI reader; until then the machine shows no display device.
void HardwareCaps::_readDisplayDeviceData() {}

void HardwareCaps::_createOtherAdapterRecords(GpuList&) {}

uint32_t hexQuad(char, char, char, char) { return 0; }

uint32_t HardwareCaps::findDisplaySlot(uint32_t, uint32_t, uint32_t, uint32_t, uint32_t) const {
    return kNoDisplaySlot;
}

bool HardwareCaps::readGpuDriverRegistry(GpuRecord&) { return false; }

}  // namespace Kalidornm
