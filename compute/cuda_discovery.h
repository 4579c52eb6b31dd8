#pragma once

// CUDA devices, found once at start-up.
namespace compute {

void discoverCuda();
void freeCudaDevices();

}  // namespace compute
