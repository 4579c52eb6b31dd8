#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "integration/program_runner.h"

namespace {

namespace fs = std::filesystem;

// Two NVIDIA GPUs: a GTX 680 with every clock, power and fan read answering, and a board the GPU database
// does not know whose default clocks, power limit and fan cannot be read.
constexpr const char* kTwoNvidiaGpus =
    "driver 550.54.15\n"
    "gpu 0 pci_device 0x118010DE\n"
    "gpu 0 pci_subsystem 0x096910DE\n"
    "gpu 0 bus 3\n"
    "gpu 0 name NVIDIA GeForce GTX 680\n"
    "gpu 0 memory_mb 2048\n"
    "gpu 0 temp 45\n"
    "gpu 0 fan 35\n"
    "gpu 0 rpm 1500\n"
    "gpu 0 clock_gfx 405\n"
    "gpu 0 clock_mem 810\n"
    "gpu 0 max_gfx 1110\n"
    "gpu 0 max_mem 3004\n"
    "gpu 0 app_gfx 1006\n"
    "gpu 0 app_mem 3004\n"
    "gpu 0 pstate 8\n"
    "gpu 0 pstates 0,8\n"
    "gpu 0 pstate_clocks 0 324 1110 3004 3004\n"
    "gpu 0 pstate_clocks 8 324 705 324 810\n"
    "gpu 0 limit 200000\n"
    "gpu 0 default_limit 250000\n"
    "gpu 0 min_limit 100000\n"
    "gpu 0 max_limit 350000\n"
    "gpu 1 pci_device 0x7FFF10DE\n"
    "gpu 1 bus 5\n"
    "gpu 1 name NVIDIA Prototype\n"
    "gpu 1 max_gfx 1500\n"
    "gpu 1 max_mem 5000\n"
    "gpu 1 clock_gfx 1500\n"
    "gpu 1 clock_mem 5000\n"
    "gpu 1 pstate 0\n"
    "gpu 1 fail DeviceGetDefaultApplicationsClock\n"
    "gpu 1 fail DeviceGetClock\n"
    "gpu 1 fail DeviceGetPowerManagementLimit\n"
    "gpu 1 fail DeviceGetFanSpeedRPM\n"
    "gpu 1 fail DeviceGetFanSpeed\n";

// The messages of the GPU block: from "Detected graphics cards and GPUs:" to the first line that is not a GPU
// line.
std::vector<std::string> gpuBlock(const std::vector<std::string>& lines) {
    std::vector<std::string> block;
    bool inBlock = false;
    for (const std::string& line : lines) {
        const std::string message = logMessage(line);
        if (message == "Detected graphics cards and GPUs:") {
            inBlock = true;
            continue;
        }
        if (!inBlock) continue;
        if (message.rfind("- GPU ", 0) != 0 && message.rfind("----> ", 0) != 0) break;
        block.push_back(message);
    }
    return block;
}

// The lines of GPU `number` (counting from 1) within the block.
std::vector<std::string> linesOfGpu(const std::vector<std::string>& block, int number) {
    const std::string head = "- GPU " + std::to_string(number) + ": ";
    auto at = std::find_if(block.begin(), block.end(), [&](const std::string& m) { return m.rfind(head, 0) == 0; });
    std::vector<std::string> lines;
    if (at == block.end()) return lines;
    lines.push_back(*at);
    for (++at; at != block.end() && at->rfind("----> ", 0) == 0; ++at) lines.push_back(*at);
    return lines;
}

bool has(const std::vector<std::string>& lines, const std::string& message) {
    return std::find(lines.begin(), lines.end(), message) != lines.end();
}

bool hasPrefix(const std::vector<std::string>& lines, const std::string& prefix) {
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& m) { return m.rfind(prefix, 0) == 0; });
}

TEST(NvidiaLog, GpuBlockShowsTheDriversClocksPowerStatesAndFan) {
    const fs::path dir = fs::temp_directory_path() / ("nvidia_log_" + std::to_string(getpid()));
    fs::create_directories(dir);
    const fs::path config = dir / "fake_nvml.conf";
    if (FILE* file = std::fopen(config.c_str(), "w")) {
        std::fputs(kTwoNvidiaGpus, file);
        std::fclose(file);
    }
    const char* inherited = std::getenv("LD_LIBRARY_PATH");
    std::string libraryPath = FAKE_NVML_LIBRARY_DIR;
    if (inherited && *inherited) libraryPath += std::string(":") + inherited;

    const ProgramRun run = runProgram(LUMENSCOPE_BINARY, dir, {"/exp_txt_report"},
                                      {{"LD_LIBRARY_PATH", libraryPath}, {"FAKE_NVML_CONFIG", config.string()}});
    fs::remove_all(dir);
    ASSERT_EQ(run.exitCode, 0);

    const std::vector<std::string> block = gpuBlock(run.logLines);
    for (const std::string& message : block) std::printf("%s\n", message.c_str());

    // NVIDIA records come first, in the driver's order.
    const std::vector<std::string> first = linesOfGpu(block, 1);
    ASSERT_FALSE(first.empty());
    EXPECT_EQ(first[0], "- GPU 1: NVIDIA GeForce GTX 680");
    EXPECT_TRUE(has(first, "----> Device ID: 10DE-1180 - Subdevice ID: 10DE- 969"));
    EXPECT_TRUE(has(first, "----> GPU temperature: 45.000\u00B0C"));
    EXPECT_TRUE(has(first, "----> GPU base clock: 1006 MHz, boost clock: 1110 MHz, memory: 3004 Mhz"));
    EXPECT_TRUE(has(first, "----> GPU power target: 80 % TDP, min: 40 % TDP, max: 140 % TDP"));
    EXPECT_TRUE(has(first, "----> PState 0, GPU clock 1110 MHz, memory clock: 3004 MHz, VDDC: 0.000V:"));
    // Each P-state of the driver's list at its highest clocks.
    EXPECT_TRUE(has(first, "----> PState 8, GPU clock 705 MHz, memory clock: 810 MHz, VDDC: 0.000V:"));
    EXPECT_TRUE(has(first, "----> Fan speed: 35% / 1500 RPM"));

    // Without default clocks and power limit the two NVIDIA lines are left out; the fan line too.
    const std::vector<std::string> second = linesOfGpu(block, 2);
    ASSERT_FALSE(second.empty());
    EXPECT_EQ(second[0], "- GPU 2: NVIDIA Prototype");
    EXPECT_TRUE(has(second, "----> Device ID: 10DE-7FFF - Subdevice ID:    0-   0"));
    EXPECT_FALSE(hasPrefix(second, "----> GPU base clock:"));
    EXPECT_FALSE(hasPrefix(second, "----> GPU power target:"));
    EXPECT_FALSE(hasPrefix(second, "----> Fan speed:"));
    // No P-state list: the current state alone, at its current clocks.
    EXPECT_TRUE(has(second, "----> PState 0, GPU clock 1500 MHz, memory clock: 5000 MHz, VDDC: 0.000V:"));
    EXPECT_EQ(std::count_if(second.begin(), second.end(),
                            [](const std::string& m) { return m.rfind("----> PState ", 0) == 0; }),
              1);

    // A display device that is not NVIDIA's follows and gets none of the NVIDIA lines.
    for (int number = 3; !linesOfGpu(block, number).empty(); ++number) {
        const std::vector<std::string> other = linesOfGpu(block, number);
        EXPECT_FALSE(hasPrefix(other, "----> GPU base clock:")) << other[0];
        EXPECT_FALSE(hasPrefix(other, "----> GPU power target:")) << other[0];
    }
}

}  // namespace
