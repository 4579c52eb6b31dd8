#pragma once

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

// Runs the built program (or a tool) in a given working directory and collects its exit status, what it
// printed and the log it wrote.
struct ProgramRun {
    int exitCode = -1;
    std::vector<std::string> logLines;
    std::string outputText;  // stdout
    std::string errorText;   // stderr
};

inline std::vector<std::string> readFileLines(const std::filesystem::path& path) {
    std::ifstream in(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

// Reads both pipes to their end together, so that a child filling one of them never blocks.
inline void drainPipes(int outFd, std::string& out, int errFd, std::string& err) {
    pollfd fds[2] = {{outFd, POLLIN, 0}, {errFd, POLLIN, 0}};
    std::string* targets[2] = {&out, &err};
    int open = 2;
    while (open > 0) {
        if (poll(fds, 2, -1) < 0) break;
        for (int i = 0; i < 2; ++i) {
            if (fds[i].fd < 0 || !(fds[i].revents & (POLLIN | POLLHUP | POLLERR))) continue;
            char chunk[4096];
            const ssize_t n = read(fds[i].fd, chunk, sizeof chunk);
            if (n > 0) {
                targets[i]->append(chunk, size_t(n));
            } else {
                close(fds[i].fd);
                fds[i].fd = -1;
                --open;
            }
        }
    }
}

// `inChild` runs in the child just before the program starts (to set a resource limit, for example);
// `unsetEnv` names variables the program must not see, whatever the test's own environment holds.
inline ProgramRun runProgram(const std::string& binary, const std::filesystem::path& workDir,
                             const std::vector<std::string>& args,
                             const std::vector<std::pair<std::string, std::string>>& env = {},
                             const std::function<void()>& inChild = {},
                             const std::vector<std::string>& unsetEnv = {}) {
    ProgramRun run;
    int outPipe[2], errPipe[2];
    if (pipe(outPipe) != 0) return run;
    if (pipe(errPipe) != 0) {
        close(outPipe[0]);
        close(outPipe[1]);
        return run;
    }
    const pid_t child = fork();
    if (child == 0) {
        dup2(outPipe[1], STDOUT_FILENO);
        dup2(errPipe[1], STDERR_FILENO);
        for (int fd : {outPipe[0], outPipe[1], errPipe[0], errPipe[1]}) close(fd);
        if (chdir(workDir.c_str()) != 0) _exit(126);
        for (const auto& name : unsetEnv) unsetenv(name.c_str());
        for (const auto& [name, value] : env) setenv(name.c_str(), value.c_str(), 1);
        if (inChild) inChild();
        std::vector<char*> argv;
        argv.push_back(const_cast<char*>(binary.c_str()));
        for (const auto& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
        argv.push_back(nullptr);
        execv(binary.c_str(), argv.data());
        _exit(127);
    }
    close(outPipe[1]);
    close(errPipe[1]);
    if (child < 0) {
        close(outPipe[0]);
        close(errPipe[0]);
        return run;
    }
    drainPipes(outPipe[0], run.outputText, errPipe[0], run.errorText);
    int status = 0;
    waitpid(child, &status, 0);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    run.logLines = readFileLines(workDir / "Lumenscope_log.txt");
    return run;
}

// The message part of a log line, behind the date prefix.
inline std::string logMessage(const std::string& line) {
    const size_t at = line.find(" >> ");
    return at == std::string::npos ? line : line.substr(at + 4);
}
