#pragma once

#include <FreeImage.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

// Runs the built program as a demo benchmark would: in a working directory of its own, optionally without a
// display, and collects what it leaves there.
namespace demo_program {

namespace fs = std::filesystem;

struct ProgramResult {
    int exitCode = -1;
    std::string standardError;
    std::string log;
    std::vector<std::string> csvLines;
};

inline std::string readText(const fs::path& path) {
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

inline std::vector<std::string> readLines(const fs::path& path) {
    std::ifstream in(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

inline std::vector<std::string> csvColumns(const std::string& row) {
    std::vector<std::string> out(1);
    for (char c : row) {
        if (c == ',')
            out.emplace_back();
        else
            out.back() += c;
    }
    return out;
}

#ifdef LUMENSCOPE_BINARY
// Starts the program; `headless` takes DISPLAY away so that demos run on a headless context.
inline pid_t start(const fs::path& dir, const std::vector<std::string>& args, bool headless,
                   const std::vector<std::pair<std::string, std::string>>& env = {}) {
    const pid_t child = fork();
    if (child == 0) {
        if (chdir(dir.c_str()) != 0) _exit(126);
        if (headless) unsetenv("DISPLAY");
        for (const auto& [name, value] : env) setenv(name.c_str(), value.c_str(), 1);
        if (!freopen("stderr.txt", "w", stderr)) _exit(125);
        std::vector<char*> argv;
        std::string binary = LUMENSCOPE_BINARY;
        argv.push_back(binary.data());
        for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
        argv.push_back(nullptr);
        execv(binary.c_str(), argv.data());
        _exit(127);
    }
    return child;
}

// Waits at most `limit` for the program; kills it after that (exit code 137).
inline ProgramResult finish(pid_t child, const fs::path& dir, std::chrono::seconds limit = std::chrono::seconds(120)) {
    ProgramResult run;
    int status = 0;
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (waitpid(child, &status, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() > deadline) {
            kill(child, SIGKILL);
            waitpid(child, &status, 0);
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    run.standardError = readText(dir / "stderr.txt");
    run.log = readText(dir / "Lumenscope_log.txt");
    run.csvLines = readLines(dir / "bench_result.csv");
    return run;
}

inline ProgramResult runHeadless(const fs::path& dir, const std::vector<std::string>& args,
                       const std::vector<std::pair<std::string, std::string>>& env = {}) {
    return finish(start(dir, args, true, env), dir);
}
#endif

// A fresh, empty working directory named for its run; removed at the end of a test that passed, kept for
// a look at what a failing one left.
class ScratchDirectory {
public:
    explicit ScratchDirectory(const std::string& name)
        : m_path(fs::temp_directory_path() / ("lumenscope_" + name + "_" + std::to_string(getpid()))) {
        fs::remove_all(m_path);
        fs::create_directories(m_path);
    }
    ~ScratchDirectory() {
        if (!::testing::Test::HasFailure()) fs::remove_all(m_path);
    }
    ScratchDirectory(const ScratchDirectory&) = delete;
    ScratchDirectory& operator=(const ScratchDirectory&) = delete;

    operator const fs::path&() const { return m_path; }
    fs::path operator/(const std::string& name) const { return m_path / name; }

private:
    fs::path m_path;
};

// A captured frame, read back with its pixels addressed from the top left as a viewer shows them.
class Picture {
public:
    explicit Picture(const fs::path& path) {
        FIBITMAP* loaded = FreeImage_Load(FIF_PNG, path.c_str(), 0);
        if (loaded) m_image = FreeImage_ConvertTo24Bits(loaded);
        if (loaded) FreeImage_Unload(loaded);
    }
    ~Picture() {
        if (m_image) FreeImage_Unload(m_image);
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    bool valid() const { return m_image != nullptr; }
    int width() const { return m_image ? int(FreeImage_GetWidth(m_image)) : 0; }
    int height() const { return m_image ? int(FreeImage_GetHeight(m_image)) : 0; }

    struct Rgb {
        int r, g, b;
        int brightest() const { return std::max(r, std::max(g, b)); }
    };
    Rgb at(int x, int yFromTop) const {
        const BYTE* row = FreeImage_GetScanLine(m_image, height() - 1 - yFromTop);
        const BYTE* p = row + size_t(x) * 3;
        return {p[FI_RGBA_RED], p[FI_RGBA_GREEN], p[FI_RGBA_BLUE]};
    }

private:
    FIBITMAP* m_image = nullptr;
};

}  // namespace demo_program
