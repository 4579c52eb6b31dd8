#pragma once

namespace Kalidornm {

// What the NVIDIA reader keeps about the driver and its GPUs.
struct NvidiaState {};

}  // namespace Kalidornm
