#pragma once

namespace Kalidornm {
class Kalidor;
}

// Writes "Detected graphics cards and GPUs:" and one block per GPU to the log.
void logDetectedGpus(Kalidornm::Kalidor& library, unsigned gpuCount);
