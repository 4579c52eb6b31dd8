#pragma once

#include <string>

namespace Kalidornm {
class Kalidor;
}

// The GPU's name as the hardware library gives it; empty before the library started.
std::string demoRendererText(const Kalidornm::Kalidor& library);

// The driver text of GPU `gpu` as the GPU panel shows it: NVIDIA's release and branch with the driver's own
// version and date, AMD's Catalyst or Crimson version before the driver's, else the driver version alone;
// the primary device's driver text when there is no such GPU record.
std::string demoDriverText(const Kalidornm::Kalidor& library, int gpu);
