#include "kalidor/platform/cpu_x86.h"

#include <sched.h>
#include <stdint.h>
#include <time.h>

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#include <x86intrin.h>
#define KALIDOR_HAS_CPUID 1
#endif

namespace Kalidornm {

bool readCpuid(uint32_t leaf, uint32_t subleaf, CpuidRegs* regs) {
#ifdef KALIDOR_HAS_CPUID
    if (!regs) return false;
    unsigned int a = 0, b = 0, c = 0, d = 0;
    __cpuid_count(leaf, subleaf, a, b, c, d);
    *regs = CpuidRegs{a, b, c, d};
    return true;
#else
    (void)leaf, (void)subleaf, (void)regs;
    return false;
#endif
}

#ifdef KALIDOR_HAS_CPUID
namespace {

struct CounterAtTime {
    uint64_t ticks = 0;
    int64_t ns = 0;
};

int64_t rawMonotonicNs() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_RAW, &now);
    return int64_t(now.tv_sec) * 1000000000LL + now.tv_nsec;
}

// The counter read between two clock reads, from the tightest of a few tries: a pair taken across an
// interruption would be off by the length of the interruption.
CounterAtTime readCounterAtTime() {
    CounterAtTime best;
    int64_t narrowest = INT64_MAX;
    for (int attempt = 0; attempt < 5; ++attempt) {
        const int64_t before = rawMonotonicNs();
        const uint64_t ticks = __rdtsc();
        const int64_t after = rawMonotonicNs();
        if (after - before < narrowest) {
            narrowest = after - before;
            best = {ticks, before + (after - before) / 2};
        }
    }
    return best;
}

}  // namespace
#endif

PinnedToFirstProcessor::PinnedToFirstProcessor()
    : m_pinned(sched_getaffinity(0, sizeof m_previous, &m_previous) == 0) {
    if (!m_pinned) return;
    cpu_set_t first;
    CPU_ZERO(&first);
    CPU_SET(0, &first);
    sched_setaffinity(0, sizeof first, &first);
}

PinnedToFirstProcessor::~PinnedToFirstProcessor() {
    if (m_pinned) sched_setaffinity(0, sizeof m_previous, &m_previous);
}

TscReading readTscAtTime() {
#ifdef KALIDOR_HAS_CPUID
    const PinnedToFirstProcessor pinned;
    const CounterAtTime reading = readCounterAtTime();
    return {reading.ticks, reading.ns};
#else
    return {};
#endif
}

uint32_t tscMhzSince(const TscReading& start, uint32_t windowMs) {
#ifdef KALIDOR_HAS_CPUID
    if (start.ns == 0) return 0;
    const int64_t leftNs = int64_t(windowMs) * 1000000LL - (rawMonotonicNs() - start.ns);
    if (leftNs > 0) {
        const timespec rest{time_t(leftNs / 1000000000LL), long(leftNs % 1000000000LL)};
        nanosleep(&rest, nullptr);
    }
    const TscReading end = readTscAtTime();
    if (end.ns <= start.ns || end.ticks <= start.ticks) return 0;
    // Ticks per nanosecond are GHz; truncated to whole MHz as the one-second count was.
    return uint32_t(double(end.ticks - start.ticks) * 1000.0 / double(end.ns - start.ns));
#else
    (void)start, (void)windowMs;
    return 0;
#endif
}

uint32_t measureTscMhz(uint32_t windowMs) { return tscMhzSince(readTscAtTime(), windowMs); }

}  // namespace Kalidornm
