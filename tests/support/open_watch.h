#pragma once

#include <sys/inotify.h>
#include <unistd.h>

#include <string>
#include <vector>

// The files the kernel showed being opened in the folders watched: what a reader asks of a device, seen from
// outside the program.
class OpenWatch {
public:
    OpenWatch() : m_fd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}
    ~OpenWatch() {
        if (m_fd >= 0) ::close(m_fd);
    }
    OpenWatch(const OpenWatch&) = delete;
    OpenWatch& operator=(const OpenWatch&) = delete;
    bool watch(const std::string& folder) { return m_fd >= 0 && inotify_add_watch(m_fd, folder.c_str(), IN_OPEN) >= 0; }
    // The names opened since the last call.
    std::vector<std::string> opened() {
        std::vector<std::string> names;
        alignas(inotify_event) char buffer[8192];
        for (ssize_t n; (n = ::read(m_fd, buffer, sizeof buffer)) > 0;)
            for (ssize_t at = 0; at < n;) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
                names.push_back(event->len ? event->name : ".");
                at += ssize_t(sizeof(inotify_event) + event->len);
            }
        return names;
    }

private:
    int m_fd;
};
