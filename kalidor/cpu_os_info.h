#pragma once

namespace Kalidornm {

// Processor, memory and operating-system facts of the machine.
struct CpuOsInfo {};

}  // namespace Kalidornm
