#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// Runs a program in a working directory and keeps what it printed. Standard output and error go to files in a
// folder of their own, so the working directory shows only what the program itself wrote there.
struct CapturedRun {
    int exitCode = -1;
    std::string out;
    std::string err;
};

inline std::string readWholeFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

inline CapturedRun runCaptured(const std::string& program, const std::filesystem::path& workDir,
                               const std::vector<std::string>& args, const std::filesystem::path& captureDir) {
    std::filesystem::create_directories(captureDir);
    const std::filesystem::path outPath = captureDir / "stdout", errPath = captureDir / "stderr";
    CapturedRun run;
    const pid_t child = fork();
    if (child == 0) {
        const int outFd = open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        const int errFd = open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (outFd < 0 || errFd < 0 || dup2(outFd, 1) < 0 || dup2(errFd, 2) < 0) _exit(125);
        if (chdir(workDir.c_str()) != 0) _exit(126);
        std::vector<char*> argv{const_cast<char*>(program.c_str())};
        for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
        argv.push_back(nullptr);
        execvp(program.c_str(), argv.data());
        _exit(127);
    }
    int status = 0;
    if (child > 0 && waitpid(child, &status, 0) == child)
        run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    run.out = readWholeFile(outPath);
    run.err = readWholeFile(errPath);
    return run;
}
