#pragma once
// What the endpoint's tests need of a client: the test server started and stopped as a child, raw HTTP over a
// socket (to send what no well-behaved client would), and curl for TLS.

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <optional>
#include <regex>
#include <string>
#include <thread>
#include <vector>

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

// The test server (or any program printing "serving metrics at SCHEME://HOST:PORT/metrics" on standard error),
// with `environment` added to the inherited one, stopped with SIGTERM when the test ends. It is also sent
// SIGTERM when the test's process dies first, so a test or benchmark ended by a signal leaves no server behind.
class ServerProcess {
public:
    ServerProcess(const std::string& binary, const std::vector<std::string>& args,
                  const std::vector<std::pair<std::string, std::string>>& environment = {})
    {
        int errPipe[2];
        if (pipe(errPipe) != 0)
            return;
        pid_ = fork();
        if (pid_ == 0) {
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            for (const auto& [name, value] : environment)
                setenv(name.c_str(), value.c_str(), 1);
            dup2(errPipe[1], STDERR_FILENO);
            close(errPipe[0]);
            close(errPipe[1]);
            std::vector<char*> argv{const_cast<char*>(binary.c_str())};
            for (const std::string& arg : args)
                argv.push_back(const_cast<char*>(arg.c_str()));
            argv.push_back(nullptr);
            execv(binary.c_str(), argv.data());
            _exit(127);
        }
        close(errPipe[1]);
        errFd_ = errPipe[0];
        readUntilPort();
    }
    ~ServerProcess()
    {
        if (pid_ > 0 && !exitStatus_) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
        if (errFd_ >= 0)
            close(errFd_);
    }
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    int port() const { return port_; }
    const std::string& errorText() const { return errorText_; }

    // Sends SIGTERM and waits (up to `limit`) for the exit status; nothing when it has not ended by then.
    std::optional<int> stop(std::chrono::milliseconds limit = 5000ms)
    {
        kill(pid_, SIGTERM);
        return waitForExit(limit);
    }
    std::optional<int> waitForExit(std::chrono::milliseconds limit)
    {
        const auto deadline = SteadyClock::now() + limit;
        while (SteadyClock::now() < deadline) {
            int status = 0;
            if (waitpid(pid_, &status, WNOHANG) == pid_) {
                exitStatus_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
                drainError();
                return exitStatus_;
            }
            std::this_thread::sleep_for(10ms);
        }
        return std::nullopt;
    }

private:
    void drainError()
    {
        char chunk[4096];
        pollfd fd{errFd_, POLLIN, 0};
        while (poll(&fd, 1, 0) > 0) {
            const ssize_t n = read(errFd_, chunk, sizeof chunk);
            if (n <= 0)
                break;
            errorText_.append(chunk, size_t(n));
        }
    }
    void readUntilPort()
    {
        static const std::regex started(R"(serving metrics at https?://[^ ]*:(\d+)/metrics)");
        const auto deadline = SteadyClock::now() + 10s;
        char chunk[4096];
        while (SteadyClock::now() < deadline) {
            pollfd fd{errFd_, POLLIN, 0};
            if (poll(&fd, 1, 100) <= 0)
                continue;
            const ssize_t n = read(errFd_, chunk, sizeof chunk);
            if (n <= 0)
                return;  // ended before serving: the test reads the status and message
            errorText_.append(chunk, size_t(n));
            std::smatch match;
            if (std::regex_search(errorText_, match, started)) {
                port_ = std::stoi(match[1]);
                return;
            }
        }
    }

    pid_t pid_ = -1;
    int errFd_ = -1;
    int port_ = 0;
    std::string errorText_;
    std::optional<int> exitStatus_;
};

// A connected loopback socket, closed on destruction.
class ClientSocket {
public:
    explicit ClientSocket(int port)
    {
        fd_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<uint16_t>(port));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (connect(fd_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
            close(fd_);
            fd_ = -1;
        }
    }
    ~ClientSocket()
    {
        if (fd_ >= 0)
            close(fd_);
    }
    ClientSocket(const ClientSocket&) = delete;
    ClientSocket& operator=(const ClientSocket&) = delete;

    bool connected() const { return fd_ >= 0; }
    bool send(const std::string& bytes) const
    {
        return ::send(fd_, bytes.data(), bytes.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(bytes.size());
    }
    // Everything the server sends until it closes the connection or `limit` passes.
    std::string readUntilClosed(std::chrono::milliseconds limit = 10000ms) const
    {
        std::string text;
        const auto deadline = SteadyClock::now() + limit;
        char chunk[16384];
        while (SteadyClock::now() < deadline) {
            pollfd fd{fd_, POLLIN, 0};
            if (poll(&fd, 1, 50) <= 0)
                continue;
            const ssize_t n = recv(fd_, chunk, sizeof chunk, 0);
            if (n <= 0)
                break;
            text.append(chunk, size_t(n));
        }
        return text;
    }
    // Whether the server has closed the connection (a read gives end of file or an error) within `limit`.
    bool closedWithin(std::chrono::milliseconds limit) const
    {
        const auto deadline = SteadyClock::now() + limit;
        char chunk[4096];
        while (SteadyClock::now() < deadline) {
            pollfd fd{fd_, POLLIN, 0};
            if (poll(&fd, 1, 50) <= 0)
                continue;
            if (recv(fd_, chunk, sizeof chunk, MSG_DONTWAIT) <= 0)
                return true;
        }
        return false;
    }

private:
    int fd_ = -1;
};

// One request with "Connection: close"; the whole answer.
inline std::string exchange(int port, const std::string& request)
{
    ClientSocket client(port);
    if (!client.connected() || !client.send(request))
        return {};
    return client.readUntilClosed();
}

inline std::string get(int port, const std::string& path, const std::string& method = "GET")
{
    return ::exchange(port, method + " " + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\nConnection: close\r\n\r\n");
}

// The status code of an answer's first line; 0 when there is none.
inline int statusOf(const std::string& answer)
{
    static const std::regex statusLine(R"(^HTTP/1\.[01] (\d{3}) )");
    std::smatch match;
    return std::regex_search(answer, match, statusLine) ? std::stoi(match[1]) : 0;
}

inline std::string bodyOf(const std::string& answer)
{
    const size_t end = answer.find("\r\n\r\n");
    return end == std::string::npos ? std::string() : answer.substr(end + 4);
}

// A shell command's standard output and exit status.
struct CommandResult {
    int status = -1;
    std::string output;
};

inline CommandResult runCommand(const std::string& command)
{
    CommandResult result;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe)
        return result;
    char chunk[4096];
    size_t n;
    while ((n = fread(chunk, 1, sizeof chunk, pipe)) > 0)
        result.output.append(chunk, n);
    const int status = pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}
