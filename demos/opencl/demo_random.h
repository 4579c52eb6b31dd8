#pragma once

#include <cstdlib>

// A number from 0 to 32767 from the C library's generator, the range the demos' formulas divide by 32768;
// glibc's own range is wider.
inline int demoRandom() { return std::rand() & 0x7FFF; }
