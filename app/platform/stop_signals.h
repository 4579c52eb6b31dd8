#pragma once

#include <atomic>
#include <chrono>

namespace lumenscope::platform {

// For the runs that go on until stopped (the monitor, the metrics endpoint): while one lives, SIGINT and
// SIGTERM set a flag instead of ending the process, and are held back except while waiting, so a signal that
// comes during a read ends the next wait at once. SIGPIPE is ignored: a closed standard output shows as
// EPIPE on the write.
class StopSignals {
public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals&) = delete;
    StopSignals& operator=(const StopSignals&) = delete;

    const std::atomic<bool>& stopRequested() const;
    // Waits until `deadline` or a stop signal, whichever comes first; true when a stop was asked.
    bool waitUntil(std::chrono::steady_clock::time_point deadline) const;
    // Lets the signals through while the caller blocks elsewhere (a server's own loop polling the flag).
    void unblock() const;
};

}  // namespace lumenscope::platform
