#include "exporter/connection_deadlines.h"

#include <sys/socket.h>

namespace exporter {

void ConnectionDeadlines::opened(const void* connection, int socket)
{
    std::lock_guard lock(mutex_);
    connections_[connection] = {socket, true, Clock::now()};
}

// The library reports the close before it closes the socket, and dropOverdue holds the same lock, so a socket
// number is never shut down after it was handed to another connection.
void ConnectionDeadlines::closed(const void* connection)
{
    std::lock_guard lock(mutex_);
    connections_.erase(connection);
}

void ConnectionDeadlines::requestArrived(const void* connection)
{
    std::lock_guard lock(mutex_);
    if (auto found = connections_.find(connection); found != connections_.end())
        found->second.waiting = false;
}

void ConnectionDeadlines::requestFinished(const void* connection)
{
    std::lock_guard lock(mutex_);
    if (auto found = connections_.find(connection); found != connections_.end())
        found->second = {found->second.socket, true, Clock::now()};
}

int ConnectionDeadlines::dropOverdue(Clock::time_point now)
{
    int dropped = 0;
    std::lock_guard lock(mutex_);
    for (auto& [connection, state] : connections_) {
        if (state.waiting && now - state.since > limit_) {
            shutdown(state.socket, SHUT_RDWR);
            state.waiting = false;  // once is enough; the library closes it
            ++dropped;
        }
    }
    return dropped;
}

}  // namespace exporter
