#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "report/online/online_hosts.h"

// tools/validation_server.py in a process of its own, on a free port of 127.0.0.1, with its own database
// and request folder; stopped when the object goes.
class ValidationServerProcess {
public:
    explicit ValidationServerProcess(const std::vector<std::string>& arguments = {}) {
        static int serial = 0;
        m_dir = std::filesystem::path(::testing::TempDir()) /
                ("validation_server_" + std::to_string(::getpid()) + "_" + std::to_string(++serial));
        std::filesystem::remove_all(m_dir);
        std::filesystem::create_directories(m_dir);
        // A proxy of the environment must not stand between the tests and their loopback server.
        ::setenv("no_proxy", "127.0.0.1,localhost", 1);
        ::setenv("NO_PROXY", "127.0.0.1,localhost", 1);

        std::vector<std::string> args = {PYTHON3_EXECUTABLE, VALIDATION_SERVER_SCRIPT, "serve",
                                         "--db", database().string(), "--capture", captureDir().string()};
        args.insert(args.end(), arguments.begin(), arguments.end());
        int out[2];
        if (::pipe(out) != 0) return;
        m_pid = ::fork();
        if (m_pid == 0) {
            ::dup2(out[1], STDOUT_FILENO);
            ::close(out[0]);
            ::close(out[1]);
            std::vector<char*> argv;
            for (std::string& a : args) argv.push_back(a.data());
            argv.push_back(nullptr);
            ::execv(argv[0], argv.data());
            ::_exit(127);
        }
        ::close(out[1]);
        m_port = readPort(out[0]);
        ::close(out[0]);
    }
    ~ValidationServerProcess() {
        if (m_pid > 0) {
            ::kill(m_pid, SIGTERM);
            int status = 0;
            ::waitpid(m_pid, &status, 0);
        }
        std::error_code ignored;
        std::filesystem::remove_all(m_dir, ignored);
    }
    ValidationServerProcess(const ValidationServerProcess&) = delete;
    ValidationServerProcess& operator=(const ValidationServerProcess&) = delete;

    bool started() const { return m_port > 0; }
    int port() const { return m_port; }
    std::string url() const { return "http://127.0.0.1:" + std::to_string(m_port); }
    online::OnlineHosts hosts() const { return *online::onlineHostsFromUrl(url()); }
    std::filesystem::path database() const { return m_dir / "gpudb.sqlite"; }
    std::filesystem::path captureDir() const { return m_dir / "requests"; }

    // The requests received so far, each exactly as its bytes came, in arrival order.
    std::vector<std::string> requests() const {
        std::vector<std::pair<int, std::string>> numbered;
        std::error_code error;
        for (const auto& entry : std::filesystem::directory_iterator(captureDir(), error)) {
            const std::string name = entry.path().filename().string();
            if (!name.starts_with("request_") || !name.ends_with(".bin")) continue;
            std::ifstream in(entry.path(), std::ios::binary);
            std::stringstream bytes;
            bytes << in.rdbuf();
            numbered.emplace_back(std::atoi(name.c_str() + 8), bytes.str());
        }
        std::sort(numbered.begin(), numbered.end());
        std::vector<std::string> list;
        for (auto& [number, bytes] : numbered) list.push_back(std::move(bytes));
        return list;
    }

    // Waits until `count` requests have arrived; false after `limit`.
    bool waitForRequests(size_t count, std::chrono::milliseconds limit = std::chrono::seconds(10)) const {
        const auto end = std::chrono::steady_clock::now() + limit;
        while (requests().size() < count) {
            if (std::chrono::steady_clock::now() > end) return false;
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return true;
    }

    // A stored submission as the server's "show" command prints it: {"id": N, "fields": {...}}.
    std::string storedSubmissionJson(int id) const {
        const std::string command = std::string(PYTHON3_EXECUTABLE) + " " + VALIDATION_SERVER_SCRIPT +
                                    " show --db '" + database().string() + "' --id " + std::to_string(id);
        std::string text;
        if (FILE* pipe = ::popen(command.c_str(), "r")) {
            char buffer[4096];
            size_t n = 0;
            while ((n = std::fread(buffer, 1, sizeof buffer, pipe)) > 0) text.append(buffer, n);
            ::pclose(pipe);
        }
        return text;
    }

private:
    // The first line the server prints is "listening on 127.0.0.1:<port>".
    static int readPort(int fd) {
        std::string line;
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (line.find('\n') == std::string::npos && std::chrono::steady_clock::now() < end) {
            pollfd p{fd, POLLIN, 0};
            if (::poll(&p, 1, 100) <= 0) continue;
            char c[256];
            const ssize_t n = ::read(fd, c, sizeof c);
            if (n <= 0) break;
            line.append(c, size_t(n));
        }
        const size_t colon = line.rfind(':');
        return colon == std::string::npos ? -1 : std::atoi(line.c_str() + colon + 1);
    }

    std::filesystem::path m_dir;
    pid_t m_pid = -1;
    int m_port = -1;
};

// A port on 127.0.0.1 where nothing listens: bound once to learn a free number, then closed.
inline int deadLoopbackPort() {
    const int fd = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    int port = -1;
    if (fd >= 0 && ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
        ::getsockname(fd, reinterpret_cast<sockaddr*>(&address), &length) == 0)
        port = ntohs(address.sin_port);
    if (fd >= 0) ::close(fd);
    return port;
}
