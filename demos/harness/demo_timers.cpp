#include "demos/harness/demo_timers.h"

#include <atomic>

namespace {

int64_t nowMs() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

std::atomic<int64_t> gTickStart{nowMs()};

}  // namespace

uint32_t demoTickTimer(bool reset) {
    const int64_t now = nowMs();
    if (reset) gTickStart = now;
    return uint32_t(now - gTickStart);
}
