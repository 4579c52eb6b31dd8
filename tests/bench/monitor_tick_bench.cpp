// The monitor's CPU time per tick on the eight-card fixture machine beside the bare cost of the same files:
// one tick reads every card (the library's live read) and renders its CSV lines; the bare loop opens, reads
// and closes each file that tick opened, found by watching the machine's folders. The time to the first
// data line after start-up is printed too. Not a test: run build-test/tests/bench_monitor_tick [ticks]
// [--with-nvml] (the fake NVIDIA driver's calls are not file reads, so by default its cards go unserved).
#include <fcntl.h>
#include <sys/inotify.h>
#include <time.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "exporter/monitor_lines.h"
#include "kalidor/kalidor.h"
#include "support/fixture_library.h"

namespace {

namespace fs = std::filesystem;

double cpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

// Every file opened under `root` while `work` runs, by path, as the kernel reports the opens.
template <typename Work>
std::vector<std::string> filesOpenedBy(const std::string& root, Work work) {
    const int fd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    std::map<int, std::string> folders;
    folders[inotify_add_watch(fd, root.c_str(), IN_OPEN)] = root;
    for (const auto& entry : fs::recursive_directory_iterator(root))
        if (entry.is_directory() && !entry.is_symlink())
            folders[inotify_add_watch(fd, entry.path().c_str(), IN_OPEN)] = entry.path().string();
    alignas(inotify_event) char buffer[65536];
    while (read(fd, buffer, sizeof buffer) > 0) {
    }
    work();
    std::vector<std::string> files;
    for (ssize_t got; (got = read(fd, buffer, sizeof buffer)) > 0;)
        for (ssize_t at = 0; at < got;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
            if ((event->mask & IN_OPEN) && !(event->mask & IN_ISDIR) && event->len > 0)
                files.push_back(folders[event->wd] + "/" + event->name);
            at += ssize_t(sizeof(inotify_event) + event->len);
        }
    close(fd);
    return files;
}

}  // namespace

int main(int argc, char** argv) {
    const int ticks = argc > 1 && std::atoi(argv[1]) > 0 ? std::atoi(argv[1]) : 2000;
    const bool withNvml = argc > 2 && std::strcmp(argv[2], "--with-nvml") == 0;
    const FixtureMachineSources machine{"eight-gpus", withNvml ? std::string(NVML_FIXTURES) + "/eight-gpus.conf" : "",
                                        false};
    if (withNvml) setenv("FAKE_NVML_CONFIG", machine.nvmlSettings.c_str(), 1);
    const Kalidornm::KalidorSources sources = FixtureLibrary::sourcesFor(machine);
    Kalidornm::Kalidor::setSources(sources);

    const auto start = std::chrono::steady_clock::now();
    Kalidornm::Kalidor* library = Kalidornm::Kalidor::getInstance();
    if (!library || !library->startupLiveOnly()) {
        std::fprintf(stderr, "the library did not start on %s\n", sources.rootDir.c_str());
        return 1;
    }
    library->refreshLiveSample();
    const exporter::MonitorColumns columns = exporter::monitorColumns(library->snapshot());
    std::string firstLines = exporter::csvHeader(columns);
    for (const auto& gpu : library->snapshot().gpus) firstLines += exporter::csvLine(columns, gpu, "T");
    const double firstLineMs =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();

    size_t bytes = 0;
    const auto tick = [&] {
        library->refreshLiveSample();
        const std::string timestamp = exporter::isoTimestamp(std::chrono::system_clock::now());
        for (const auto& gpu : library->snapshot().gpus) bytes += exporter::csvLine(columns, gpu, timestamp).size();
    };
    const std::vector<std::string> files = filesOpenedBy(sources.rootDir + "/sys", tick);

    // Interleaved halves, so that both loops see the same machine load.
    double monitorCpu = 0, bareCpu = 0;
    char buffer[4096];
    for (int half = 0; half < 2; ++half) {
        double before = cpuSeconds();
        for (int i = 0; i < ticks / 2; ++i) tick();
        monitorCpu += cpuSeconds() - before;
        before = cpuSeconds();
        for (int i = 0; i < ticks / 2; ++i)
            for (const std::string& path : files) {
                const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
                if (fd < 0) continue;
                bytes += size_t(std::max<ssize_t>(0, read(fd, buffer, sizeof buffer)));
                close(fd);
            }
        bareCpu += cpuSeconds() - before;
    }
    const int measured = (ticks / 2) * 2;
    std::printf("machine: eight-gpus (%zu cards, NVIDIA driver %s), %d ticks, %zu files a tick\n",
                library->snapshot().gpus.size(), withNvml ? "served" : "absent", measured, files.size());
    std::printf("first data line after start:   %8.2f ms\n", firstLineMs);
    std::printf("monitor CPU time per tick:     %8.1f us\n", monitorCpu / measured * 1e6);
    std::printf("bare open/read/close per tick: %8.1f us\n", bareCpu / measured * 1e6);
    std::printf("ratio monitor / bare:          %8.2f\n", monitorCpu / bareCpu);
    std::fprintf(stderr, "(%zu bytes)\n", bytes);
    library->shutdown();
    return 0;
}
