#include "app/platform/interrupt.h"

#include <csignal>

namespace lumenscope::platform {

namespace {

std::atomic<bool> gInterrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free, "set from a signal handler");

void onSignal(int) { gInterrupted = true; }

}  // namespace

void catchFirstInterrupt() {
    struct sigaction action {};
    action.sa_handler = onSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESETHAND;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

const std::atomic<bool>& interruptRequested() { return gInterrupted; }

}  // namespace lumenscope::platform
