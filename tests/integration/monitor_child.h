#pragma once

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

// The built program running beside the test with its standard output on a pipe the test reads line by line
// and may close; standard error goes to a file. Killed at the end if it is still running.
class MonitorChild {
public:
    MonitorChild(const std::string& binary, const std::string& workDir, const std::vector<std::string>& args,
                 const std::vector<std::pair<std::string, std::string>>& env, const std::string& errorsPath) {
        int out[2];
        if (pipe(out) != 0) return;
        m_pid = fork();
        if (m_pid == 0) {
            dup2(out[1], STDOUT_FILENO);
            close(out[0]);
            close(out[1]);
            const int errors = open(errorsPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            if (errors < 0 || dup2(errors, STDERR_FILENO) < 0 || chdir(workDir.c_str()) != 0) _exit(126);
            for (const auto& [name, value] : env) setenv(name.c_str(), value.c_str(), 1);
            std::vector<char*> argv{const_cast<char*>(binary.c_str())};
            for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
            argv.push_back(nullptr);
            execv(binary.c_str(), argv.data());
            _exit(127);
        }
        close(out[1]);
        m_out = out[0];
    }
    ~MonitorChild() {
        closeOutput();
        if (m_pid > 0 && !m_status) {
            kill(m_pid, SIGKILL);
            waitpid(m_pid, nullptr, 0);
        }
    }
    MonitorChild(const MonitorChild&) = delete;
    MonitorChild& operator=(const MonitorChild&) = delete;

    pid_t pid() const { return m_pid; }

    // The next whole line without its line feed; none when the output ended or `timeout` passed.
    std::optional<std::string> nextLine(std::chrono::milliseconds timeout) {
        const auto deadline = std::chrono::steady_clock::now() + timeout;
        while (true) {
            const size_t end = m_buffer.find('\n');
            if (end != std::string::npos) {
                std::string line = m_buffer.substr(0, end);
                m_buffer.erase(0, end + 1);
                return line;
            }
            const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline -
                                                                                    std::chrono::steady_clock::now());
            if (m_out < 0 || left.count() <= 0) return std::nullopt;
            pollfd fd{m_out, POLLIN, 0};
            if (poll(&fd, 1, int(left.count())) <= 0) continue;
            char chunk[4096];
            const ssize_t n = read(m_out, chunk, sizeof chunk);
            if (n <= 0) {
                closeOutput();
                continue;
            }
            m_buffer.append(chunk, size_t(n));
        }
    }

    void closeOutput() {
        if (m_out >= 0) close(m_out);
        m_out = -1;
    }

    // The exit status (128 + signal for a signal), or none when it is still running at the deadline.
    std::optional<int> waitForExit(std::chrono::milliseconds timeout) {
        const auto deadline = std::chrono::steady_clock::now() + timeout;
        while (!m_status && std::chrono::steady_clock::now() < deadline) {
            int status = 0;
            if (waitpid(m_pid, &status, WNOHANG) == m_pid)
                m_status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            else
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        return m_status;
    }

private:
    pid_t m_pid = -1;
    int m_out = -1;
    std::string m_buffer;
    std::optional<int> m_status;
};
