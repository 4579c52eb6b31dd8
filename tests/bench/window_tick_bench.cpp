// What one tick of the main window's refresh timer costs on the main thread, the repaint of what changed
// included, with the fake NVIDIA management library and with a fixture AMD machine, and whether the idle window's memory grows over 600 ticks.
// Run: build/tests/bench_window_tick (not part of ctest).
#include <time.h>

#include <QApplication>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/panels/main_dialog.h"
#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"
#include "kalidor/vendors/amd_reader.h"

namespace {

double threadMicroseconds() {
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return double(now.tv_sec) * 1e6 + double(now.tv_nsec) / 1e3;
}

long residentKb() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.rfind("VmRSS:", 0) == 0) return std::stol(line.substr(6));
    return -1;
}

const char* kNvidiaSettings =
    "driver 550.54.15\n"
    "gpu 0 pci_device 0x220410DE\n"
    "gpu 0 pci_subsystem 0x403B1458\n"
    "gpu 0 bus 1\n"
    "gpu 0 name NVIDIA GeForce RTX 3090\n"
    "gpu 0 memory_mb 24576\n"
    "gpu 0 temp 52\n"
    "gpu 0 fan 41\n"
    "gpu 0 rpm 1700\n"
    "gpu 0 util_gpu 17\n"
    "gpu 0 clock_gfx 1395\n"
    "gpu 0 clock_mem 9751\n"
    "gpu 0 max_gfx 2100\n"
    "gpu 0 max_mem 9751\n"
    "gpu 0 app_gfx 1395\n"
    "gpu 0 app_mem 9751\n"
    "gpu 0 pstate 2\n"
    "gpu 0 power 175000\n"
    "gpu 0 enforced 350000\n"
    "gpu 0 limit 350000\n"
    "gpu 0 default_limit 350000\n";

// Sensor files of a fixture copy that the benchmark changes between ticks, so that fields repaint as they do
// on a working machine; empty for machines whose values come from a library.
struct ChangingSensors {
    std::filesystem::path temperature, busy;
    void change(int tick) const {
        if (!temperature.empty()) std::ofstream(temperature) << 40000 + (tick % 20) * 1000 << "\n";
        if (!busy.empty()) std::ofstream(busy) << tick % 100 << "\n";
    }
};

ChangingSensors copyWithChangingSensors(const std::string& machine, std::string* root) {
    namespace fs = std::filesystem;
    const fs::path copy = fs::temp_directory_path() / ("bench_window_tick_" + machine);
    fs::remove_all(copy);
    fs::copy(std::string(SYSFS_FIXTURES) + "/" + machine, copy, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    ChangingSensors sensors;
    for (const auto& entry : fs::recursive_directory_iterator(copy)) {
        if (entry.path().filename() == "temp1_input") sensors.temperature = entry.path();
        if (entry.path().filename() == "gpu_busy_percent") sensors.busy = entry.path();
    }
    *root = copy.string();
    return sensors;
}

void measure(const char* name, const std::string& machine, bool nvidia) {
    const std::string config = "/tmp/bench_window_tick_nvml.txt";
    if (nvidia) {
        std::ofstream(config) << kNvidiaSettings;
        setenv("FAKE_NVML_CONFIG", config.c_str(), 1);
    }
    std::string root = std::string(SYSFS_FIXTURES) + "/" + machine;
    const ChangingSensors sensors = nvidia ? ChangingSensors{} : copyWithChangingSensors(machine, &root);
    Kalidornm::KalidorSources sources;
    sources.rootDir = root;
    sources.pciIdsFile = std::string(SYSFS_FIXTURES) + "/pci.ids";
    sources.eglLibrary = "";
    sources.nvmlLibrary = nvidia ? FAKE_NVML_LIBRARY : "";
    Kalidornm::Kalidor::setSources(sources);
    Kalidornm::Kalidor* library = Kalidornm::Kalidor::getInstance();
    if (!library || !library->startup(0, 0, 64, 64, 0, 0, true)) {
        std::printf("%s: the library did not start\n", name);
        return;
    }
    AppState state;
    initAppState(state);
    state.gpuCount = library->getGpuCount();
    {
        panels::MainDialog dialog(state, *library);
        dialog.start(nullptr);
        dialog.show();
        for (int i = 0; i < 20; ++i) {
            dialog.refreshTick();
            QApplication::processEvents();
        }

        std::vector<double> cpu, wall;
        for (int i = 0; i < 1000; ++i) {
            sensors.change(i);
            timespec before{}, after{};
            clock_gettime(CLOCK_MONOTONIC, &before);
            const double start = threadMicroseconds();
            dialog.refreshTick();
            QApplication::processEvents();  // the fields that changed repaint here
            cpu.push_back(threadMicroseconds() - start);
            clock_gettime(CLOCK_MONOTONIC, &after);
            wall.push_back(double(after.tv_sec - before.tv_sec) * 1e6 + double(after.tv_nsec - before.tv_nsec) / 1e3);
        }
        std::sort(cpu.begin(), cpu.end());
        std::sort(wall.begin(), wall.end());
        std::printf("%-28s GPUs %u  tick with repaint, main-thread CPU: median %.1f us, p99 %.1f us  (wall: median %.1f us, p99 %.1f us)\n",
                    name, state.gpuCount, cpu[500], cpu[989], wall[500], wall[989]);

        QApplication::processEvents();
        const long before = residentKb();
        for (int i = 0; i < 600; ++i) {
            sensors.change(i);
            dialog.refreshTick();
            QApplication::processEvents();
        }
        const long after = residentKb();
        std::printf("%-28s resident memory over 600 ticks: %ld KB -> %ld KB (%+ld KB)\n", name, before, after,
                    after - before);
    }
    library->shutdown();
    Kalidornm::gGlobals.summary = Kalidornm::GpuSummary{};
    Kalidornm::gGlobals.gpu_db_index = -1;
    Kalidornm::gGlobals.hasDisplayDevice = false;
    unsetenv("FAKE_NVML_CONFIG");
    if (!nvidia) std::filesystem::remove_all(root);
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    measure("NVIDIA (fake NVML)", "nvidia-desktop", true);
    measure("AMD (amdgpu-rx6800 fixture)", "amdgpu-rx6800", false);
    return 0;
}
