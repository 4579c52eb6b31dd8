#pragma once

#include "kalidor/machine_snapshot.h"

namespace Kalidornm {

class Kalidor;

// Everything but the live samples, read once from the started library (or from a library whose start-up
// found no display device: then only the system facts are known).
MachineSnapshot readMachineSnapshot(Kalidor& library);

// One GPU's readings of this moment; a GPU that sleeps is marked and not asked.
LiveSample readLiveSample(Kalidor& library, int gpu);

}  // namespace Kalidornm
