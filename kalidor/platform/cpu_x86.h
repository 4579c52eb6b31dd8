#pragma once

#include <cstdint>

#include "cpu_os_info.h"

namespace Kalidornm {

// The CPUID instruction; false on processors without it (every non-x86 machine).
bool readCpuid(uint32_t leaf, uint32_t subleaf, CpuidRegs* regs);

// The time stamp counter's rate over one second, in MHz, measured with the calling thread pinned to
// processor 0. Busy-waits for that second. 0 where there is no time stamp counter.
uint32_t measureTscMhz();

}  // namespace Kalidornm
