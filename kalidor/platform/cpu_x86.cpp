#include "cpu_x86.h"

#include <sched.h>
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

uint32_t measureTscMhz() {
#ifdef KALIDOR_HAS_CPUID
    cpu_set_t previous;
    const bool pinned = sched_getaffinity(0, sizeof previous, &previous) == 0;
    if (pinned) {
        cpu_set_t first;
        CPU_ZERO(&first);
        CPU_SET(0, &first);
        sched_setaffinity(0, sizeof first, &first);
    }
    timespec start{};
    clock_gettime(CLOCK_MONOTONIC, &start);
    const uint64_t tscStart = __rdtsc();
    // Spin rather than sleep: the wait must not give the processor away.
    timespec now{};
    do {
        clock_gettime(CLOCK_MONOTONIC, &now);
    } while ((now.tv_sec - start.tv_sec) * 1000000000LL + (now.tv_nsec - start.tv_nsec) < 1000000000LL);
    const uint64_t tscEnd = __rdtsc();
    if (pinned) sched_setaffinity(0, sizeof previous, &previous);
    return uint32_t((tscEnd - tscStart) / 1000000u);
#else
    return 0;
#endif
}

}  // namespace Kalidornm
