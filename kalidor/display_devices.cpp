#include "hardware_caps.h"

namespace Kalidornm {

// Display-device discovery lands with the PCI reader; until then the machine shows no display device.
void HardwareCaps::_readDisplayDeviceData() {}

void HardwareCaps::_createOtherAdapterRecords(GpuList&) {}

uint32_t hexQuad(char c0, char c1, char c2, char c3) {
    uint32_t value = 0;
    for (char c : {c0, c1, c2, c3}) {
        const char upper = (c >= 'a' && c <= 'z') ? char(c - 32) : c;
        value = value * 16 + uint32_t(upper >= '0' && upper <= '9' ? upper - '0' : upper - 55);
    }
    return value;
}

uint32_t HardwareCaps::findDisplaySlot(uint32_t, uint32_t, uint32_t, uint32_t, uint32_t) const {
    return kNoDisplaySlot;
}

bool HardwareCaps::readGpuDriverRegistry(GpuRecord&) { return false; }

}  // namespace Kalidornm
