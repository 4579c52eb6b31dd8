#pragma once

#include <cstdint>

// The processor mask an engine demo thread is pinned to: the demo-thread count modulo the processor count,
// plus one, taken as a mask value rather than a processor number (so the third thread gets processors 0
// and 1). A processor count of 0 counts as 1.
uint64_t demoAffinityMask(uint32_t demoThreadCounter, uint32_t processorCount);

// Pins the calling thread to the processors whose bits are set; false when the system refuses.
bool pinCurrentThread(uint64_t mask);
