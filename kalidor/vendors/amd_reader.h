#pragma once

namespace Kalidornm {

// What the AMD reader keeps about the driver and its GPUs.
struct AmdState {};

}  // namespace Kalidornm
