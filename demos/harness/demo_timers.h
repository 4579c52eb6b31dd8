#pragma once

#include <chrono>
#include <cstdint>

// The timer each demo owns: milliseconds since its last reset. The monotonic clock is consistent across
// processors, so reads need no pinning of the thread to one of them.
class DemoHiResTimer {
public:
    void reset() { m_start = std::chrono::steady_clock::now(); }
    // Cut to 32 bits: wraps after 49 days, which the frame loop's differences survive.
    uint32_t elapsedMs() const {
        const auto since = std::chrono::steady_clock::now() - m_start;
        return uint32_t(std::chrono::duration_cast<std::chrono::milliseconds>(since).count());
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

// One process-wide start value shared by the demos that use the coarse timer: a call with `reset` stores
// now, every call returns the milliseconds since the stored value.
uint32_t demoTickTimer(bool reset);
