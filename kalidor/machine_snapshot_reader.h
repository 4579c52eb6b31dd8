#pragma once

#include "kalidor/machine_snapshot.h"

namespace Kalidornm {

class Kalidor;
struct GpuRecord;

// Everything but the live samples, read once from the started library (or from a library whose start-up
// found no display device: then only the system facts are known).
MachineSnapshot readMachineSnapshot(Kalidor& library);

// A GPU's PCI identity (ids, address) as its scan record holds it, and nothing else.
GpuSnapshot gpuIdentity(const GpuRecord& record);

// One GPU's readings of this moment; a GPU that sleeps is marked and not asked.
LiveSample readLiveSample(Kalidor& library, int gpu);

}  // namespace Kalidornm
