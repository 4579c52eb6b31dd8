#include "demos/harness/demo_affinity.h"

#include <pthread.h>
#include <sched.h>

uint64_t demoAffinityMask(uint32_t demoThreadCounter, uint32_t processorCount) {
    return uint64_t(demoThreadCounter % (processorCount == 0 ? 1 : processorCount)) + 1;
}

bool pinCurrentThread(uint64_t mask) {
    cpu_set_t set;
    CPU_ZERO(&set);
    for (int cpu = 0; cpu < 64; ++cpu)
        if (mask & (uint64_t(1) << cpu)) CPU_SET(cpu, &set);
    return pthread_setaffinity_np(pthread_self(), sizeof set, &set) == 0;
}
