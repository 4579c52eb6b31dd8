#include <gtest/gtest.h>

#include <algorithm>

#include "integration/program_runner.h"
#include "kalidor/platform/display_device_source.h"

namespace {

namespace fs = std::filesystem;

bool hasMessage(const std::vector<std::string>& lines, const std::string& message) {
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& l) { return logMessage(l) == message; });
}

// The start-up log lists this machine's display devices as the reader sees them, and, where the machine has
// only a software rasterizer (as build machines do), its slot and GPU block.
TEST(HardwareLog, ListsThisMachinesDisplayDevicesAndGpuBlock) {
    const fs::path dir = fs::temp_directory_path() / ("hw_log_" + std::to_string(getpid()));
    fs::create_directories(dir);
    const ProgramRun run = runProgram(LUMENSCOPE_BINARY, dir, {"/exp_txt_report"});
    fs::remove_all(dir);
    ASSERT_EQ(run.exitCode, 0);

    const std::vector<Kalidornm::DisplaySlot> slots = Kalidornm::listDisplayDevices(Kalidornm::KalidorSources{});
    // As many devices as the reader sees, up to ten, and none more: a machine without any lists none.
    const auto listed = std::count_if(run.logLines.begin(), run.logLines.end(), [](const std::string& l) {
        const std::string message = logMessage(l);
        return message.rfind("- DEV ", 0) == 0 && message.find(" - DeviceID: ") != std::string::npos;
    });
    EXPECT_EQ(size_t(listed), std::min<size_t>(slots.size(), 10));
    for (size_t i = 0; i < slots.size() && i < 10; ++i) {
        const std::string prefix = "- DEV " + std::to_string(i) + " - ";
        EXPECT_TRUE(hasMessage(run.logLines, prefix + "DeviceID: " + slots[i].deviceId));
        EXPECT_TRUE(hasMessage(run.logLines, prefix + "DeviceString: " + slots[i].deviceString));
        EXPECT_TRUE(hasMessage(run.logLines, prefix + "DeviceKey: " + slots[i].deviceKey));
    }
    if (!slots.empty() && std::string(slots[0].deviceId).rfind("SWR\\", 0) == 0) {
        EXPECT_TRUE(hasMessage(run.logLines, "- Device ID string (0): SWR\\VEN_0000&DEV_0000&SUBSYS_00000000&REV_00"));
        EXPECT_TRUE(hasMessage(run.logLines, "Detected graphics cards and GPUs:"));
        EXPECT_TRUE(hasMessage(run.logLines, "- GPU 1: Mesa software rasterizer"));
        EXPECT_TRUE(hasMessage(run.logLines, "----> Device ID:    0-   0 - Subdevice ID:    0-   0"));
    }
}

}  // namespace
