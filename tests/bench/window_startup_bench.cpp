// How long the real program takes from process start until its main window is visible, and how its resident
// memory moves while the window stands idle. Needs an X server: tools/bench_window.sh runs it under xvfb-run.
//   bench_window_startup LUMENSCOPE_BINARY [RUNS] [IDLE_SECONDS]
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "integration/x11_window_driver.h"

namespace {

using namespace std::chrono_literals;
constexpr const char* kTitle = "Orbiscale Lumenscope 1.26.0.0";

long residentKb(pid_t pid) {
    std::ifstream status("/proc/" + std::to_string(pid) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0) return std::stol(line.substr(6));
    return -1;
}

pid_t launch(const char* binary, const std::string& dir) {
    const pid_t child = fork();
    if (child == 0) {
        if (chdir(dir.c_str()) != 0) _exit(126);
        execl(binary, binary, "/no_online_check", static_cast<char*>(nullptr));
        _exit(127);
    }
    return child;
}

void finish(X11WindowDriver& x, Window window, pid_t child) {
    if (window) x.pressKey(window, XK_Escape);
    for (int i = 0; i < 500; ++i) {
        if (waitpid(child, nullptr, WNOHANG) == child) return;
        std::this_thread::sleep_for(20ms);
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s LUMENSCOPE_BINARY [RUNS] [IDLE_SECONDS]\n", argv[0]);
        return 2;
    }
    setvbuf(stdout, nullptr, _IOLBF, 0);
    const int runs = argc > 2 ? std::atoi(argv[2]) : 5;
    const int idleSeconds = argc > 3 ? std::atoi(argv[3]) : 0;
    X11WindowDriver x;
    if (!x.connected()) {
        std::fprintf(stderr, "no X display\n");
        return 1;
    }
    char binary[PATH_MAX];
    if (!realpath(argv[1], binary)) {
        std::fprintf(stderr, "%s: not found\n", argv[1]);
        return 1;
    }
    char dirTemplate[] = "/tmp/bench_window_XXXXXX";
    const std::string dir = mkdtemp(dirTemplate) ? dirTemplate : "/tmp";

    std::vector<double> visibleMs;
    for (int run = 0; run < runs; ++run) {
        const auto start = std::chrono::steady_clock::now();
        const pid_t child = launch(binary, dir);
        const Window window = x.waitForWindow(kTitle, 60s, 1ms);
        const double ms = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
        if (window) visibleMs.push_back(ms);
        std::printf("run %d: window visible after %.0f ms\n", run + 1, window ? ms : -1.0);
        if (run + 1 == runs && idleSeconds > 0 && window) {
            std::vector<std::pair<int, long>> samples;
            for (int second = 0; second <= idleSeconds; ++second) {
                if (second % 10 == 0) samples.emplace_back(second, residentKb(child));
                std::this_thread::sleep_for(1s);
            }
            for (auto [second, kb] : samples) std::printf("idle %3d s: resident %ld KB\n", second, kb);
        }
        finish(x, window, child);
    }
    std::filesystem::remove_all(dir);
    if (!visibleMs.empty()) {
        std::sort(visibleMs.begin(), visibleMs.end());
        std::printf("window visible: median %.0f ms, fastest %.0f ms, slowest %.0f ms over %zu runs\n",
                    visibleMs[visibleMs.size() / 2], visibleMs.front(), visibleMs.back(), visibleMs.size());
    }
    return 0;
}
