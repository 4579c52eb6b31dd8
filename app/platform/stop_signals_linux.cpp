#include <poll.h>
#include <pthread.h>
#include <signal.h>

#include <cerrno>

#include "app/platform/stop_signals.h"

namespace lumenscope::platform {

namespace {

std::atomic<bool> gStop{false};
static_assert(std::atomic<bool>::is_always_lock_free, "set from a signal handler");

struct SavedState {
    sigset_t mask;
    struct sigaction interrupt, terminate, pipe;
} gSaved;

extern "C" void onStopSignal(int) { gStop.store(true); }

sigset_t stopSignalSet() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGINT);
    sigaddset(&set, SIGTERM);
    return set;
}

}  // namespace

StopSignals::StopSignals() {
    gStop.store(false);
    struct sigaction action {};
    action.sa_handler = onStopSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = 0;  // no SA_RESTART: the wait ends with EINTR
    sigaction(SIGINT, &action, &gSaved.interrupt);
    sigaction(SIGTERM, &action, &gSaved.terminate);
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    sigemptyset(&ignore.sa_mask);
    sigaction(SIGPIPE, &ignore, &gSaved.pipe);
    const sigset_t set = stopSignalSet();
    pthread_sigmask(SIG_BLOCK, &set, &gSaved.mask);
}

StopSignals::~StopSignals() {
    pthread_sigmask(SIG_SETMASK, &gSaved.mask, nullptr);
    sigaction(SIGINT, &gSaved.interrupt, nullptr);
    sigaction(SIGTERM, &gSaved.terminate, nullptr);
    sigaction(SIGPIPE, &gSaved.pipe, nullptr);
}

const std::atomic<bool>& StopSignals::stopRequested() const { return gStop; }

bool StopSignals::waitUntil(std::chrono::steady_clock::time_point deadline) const {
    // ppoll lets the held-back signals through only while it waits, so none slips in between the check of
    // the flag and the wait.
    sigset_t whileWaiting = gSaved.mask;
    sigdelset(&whileWaiting, SIGINT);
    sigdelset(&whileWaiting, SIGTERM);
    while (!gStop.load()) {
        const auto left = deadline - std::chrono::steady_clock::now();
        if (left <= std::chrono::steady_clock::duration::zero()) break;
        const auto ns = std::chrono::duration_cast<std::chrono::nanoseconds>(left).count();
        const timespec timeout{time_t(ns / 1000000000), long(ns % 1000000000)};
        if (ppoll(nullptr, 0, &timeout, &whileWaiting) == 0) break;
    }
    return gStop.load();
}

void StopSignals::unblock() const {
    const sigset_t set = stopSignalSet();
    pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
}

}  // namespace lumenscope::platform
