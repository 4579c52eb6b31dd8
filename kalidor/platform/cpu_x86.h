#pragma once

#include <sched.h>

#include <cstdint>

#include "kalidor/cpu_os_info.h"

namespace Kalidornm {

// 50 ms give the same MHz as a one-second measurement to well under 0.1 % (bench_cpu_clock).
constexpr uint32_t kTscWindowMs = 50;

// Pins the calling thread to processor 0 while it lives and gives back the affinity the thread had.
class PinnedToFirstProcessor {
public:
    PinnedToFirstProcessor();
    ~PinnedToFirstProcessor();
    PinnedToFirstProcessor(const PinnedToFirstProcessor&) = delete;
    PinnedToFirstProcessor& operator=(const PinnedToFirstProcessor&) = delete;

private:
    cpu_set_t m_previous;
    bool m_pinned = false;
};

// The CPUID instruction; false on processors without it (every non-x86 machine).
bool readCpuid(uint32_t leaf, uint32_t subleaf, CpuidRegs* regs);

// The time stamp counter read against the kernel's raw monotonic clock (the calling thread pinned to
// processor 0 for the read). All zero where there is no time stamp counter.
struct TscReading {
    uint64_t ticks = 0;
    int64_t ns = 0;
};
TscReading readTscAtTime();

// The counter's rate in MHz between `start` and now, sleeping first for what is left of `windowMs` since
// `start`: a measurement begun early costs no wait when the caller has had other work since. Sleeps rather
// than spins: the counter runs at a fixed rate whatever the core does. 0 without a time stamp counter.
uint32_t tscMhzSince(const TscReading& start, uint32_t windowMs = kTscWindowMs);

// The same over a window that starts now.
uint32_t measureTscMhz(uint32_t windowMs = kTscWindowMs);

}  // namespace Kalidornm
