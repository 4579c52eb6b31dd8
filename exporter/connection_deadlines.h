#pragma once
// Our own deadline for a request to arrive whole. libmicrohttpd's connection time-out counts idle time only, so a
// client sending a byte a second would hold a connection for ever; this table knows when each connection began
// waiting for a request and shuts down the socket of one that has waited too long, which the library then
// sees as a closed connection and cleans up.

#include <chrono>
#include <mutex>
#include <unordered_map>

namespace exporter {

class ConnectionDeadlines {
public:
    using Clock = std::chrono::steady_clock;

    explicit ConnectionDeadlines(Clock::duration limit) : limit_(limit) {}

    // A connection opened (its socket) or closed; called from the server's threads.
    void opened(const void* connection, int socket);
    void closed(const void* connection);
    // The request's headers are in: the connection no longer waits. A finished request starts a new wait.
    void requestArrived(const void* connection);
    void requestFinished(const void* connection);

    // Shuts down every socket that has waited longer than the limit; how many.
    int dropOverdue(Clock::time_point now);

private:
    struct Waiting {
        int socket;
        bool waiting;
        Clock::time_point since;
    };

    Clock::duration limit_;
    std::mutex mutex_;
    std::unordered_map<const void*, Waiting> connections_;
};

}  // namespace exporter
