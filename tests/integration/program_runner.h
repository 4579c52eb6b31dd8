#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

// Runs the built program in a given working directory and collects its exit status and the log it wrote.
struct ProgramRun {
    int exitCode = -1;
    std::vector<std::string> logLines;
    std::string standardError;
};

inline std::vector<std::string> readFileLines(const std::filesystem::path& path) {
    std::ifstream in(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

// `unsetEnv` names variables the program must not see, whatever the test's own environment holds.
inline ProgramRun runProgram(const std::string& binary, const std::filesystem::path& workDir,
                             const std::vector<std::string>& args,
                             const std::vector<std::pair<std::string, std::string>>& env = {},
                             const std::vector<std::string>& unsetEnv = {}) {
    ProgramRun run;
    int errorPipe[2] = {-1, -1};
    if (pipe(errorPipe) != 0) return run;
    const pid_t child = fork();
    if (child == 0) {
        close(errorPipe[0]);
        dup2(errorPipe[1], STDERR_FILENO);
        close(errorPipe[1]);
        if (chdir(workDir.c_str()) != 0) _exit(126);
        for (const auto& name : unsetEnv) unsetenv(name.c_str());
        for (const auto& [name, value] : env) setenv(name.c_str(), value.c_str(), 1);
        std::vector<char*> argv;
        argv.push_back(const_cast<char*>(binary.c_str()));
        for (const auto& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
        argv.push_back(nullptr);
        execv(binary.c_str(), argv.data());
        _exit(127);
    }
    close(errorPipe[1]);
    char buffer[4096];
    for (ssize_t got; (got = read(errorPipe[0], buffer, sizeof buffer)) > 0;) run.standardError.append(buffer, size_t(got));
    close(errorPipe[0]);
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
