#include "kalidor/kalidor.h"

namespace Kalidornm {

bool Kalidor::isGpuSuspended(int gpu) const {
    const GpuRecord* r = record(gpu);
    const HardwareCaps* machine = caps();
    if (!r || !machine || !r->pciAddress) return false;
    // The PCI layer reads the device's runtime power state again, which the PCI core keeps without waking it.
    return !machine->pci.mayTouch(*r->pciAddress);
}

}  // namespace Kalidornm
