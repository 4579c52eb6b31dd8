#include "app/run_steps.h"

#include <cstdlib>
#include <string>
#include <vector>

#include "app/app_log.h"
#include "app/app_state.h"
#include "app/command_line.h"
#include "app/environment_variables.h"
#include "app/gpu_log_block.h"
#include "base/log_sink.h"
#include "base/version.h"
#include "compute/cuda_discovery.h"
#include "compute/opencl_discovery.h"
#include "kalidor/kalidor.h"
#include "vulkan/vulkan_discovery.h"
#include "vulkan/vulkan_sleep_filter.h"

using Kalidornm::Kalidor;

namespace {

constexpr int kMaxListedDisplayDevices = 10;
constexpr int kMaxLoggedGpuStrings = 10;

void logDisplayDevices() {
    const std::vector<Kalidornm::DisplaySlot> devices = Kalidor::listDisplayDevices();
    for (int i = 0; i < kMaxListedDisplayDevices && size_t(i) < devices.size(); ++i) {
        const Kalidornm::DisplaySlot& device = devices[size_t(i)];
        appLog().write("- DEV %d - DeviceID: %s", i, device.deviceId);
        appLog().write("- DEV %d - DeviceName: %s", i, device.deviceName);
        appLog().write("- DEV %d - DeviceString: %s", i, device.deviceString);
        appLog().write("- DEV %d - DeviceKey: %s", i, device.deviceKey);
    }
}

void logDisplayDeviceStrings(Kalidor& library) {
    for (int i = 0; i < kMaxLoggedGpuStrings; ++i) {
        const char* id = library.getGpuDisplayDeviceId(i);
        const char* text = library.getGpuDisplayDeviceString(i);
        if (!id || !*id || !text || !*text) break;
        appLog().write("- Device ID string (%d): %s", i, id);
        appLog().write("- Display device string (%d): %s", i, text);
    }
}

// LUMENSCOPE_VULKAN_LOADER names another loader file; the tests and the benchmark use it to serve a fake
// loader or none.
void discoverVulkanDevices(Kalidor& library, base::LogSink& log) {
    const char* loader = std::getenv(kVulkanLoaderVariable);
    vulkan::discoverVulkan(vulkan::sleepView(library), log, loader && *loader ? loader : vulkan::kVulkanLoaderName);
}

}  // namespace

void logVersionLine(const char* what) {
    appLog().write("%s %s %s", lumenscope::kDisplayName, lumenscope::kVersionText, what);
}

void openRun(AppState& state, int argc, const char* const* argv) {
    initAppState(state);
    // Opened here rather than before main, so that nothing which ends before start-up touches the file.
    appLog().open(AppLog::kFileName);
    logVersionLine("startup...");
    const std::string commandLine = joinArguments(argc, argv);
    parseCommandLine(state, commandLine.c_str());
    logDisplayDevices();
}

Kalidor* startMachineProbes(AppState& state) {
    if (state.openclSupportEnabled) compute::discoverOpenCl();

    Kalidor* library = Kalidor::getInstance();
    if (!library || !library->startup(0, 0, 64, 64, state.glMajorVersion, state.glMinorVersion, true)) {
        return nullptr;
    }
    // Vulkan goes first, while the CPU clock's measuring window (which the first snapshot waits out) is
    // still open; its lines keep their place in the log, after CUDA's.
    base::HeldLines vulkanLines;
    discoverVulkanDevices(*library, vulkanLines);
    state.gpuCount = library->getGpuCount();
    logDisplayDeviceStrings(*library);
    if (state.gpuCount > 0) logDetectedGpus(*library, state.gpuCount);
    state.cpuSpeedMhz = int32_t(library->getCpuSpeedMhz());
    compute::discoverCuda();
    vulkanLines.passTo(base::programLog());

    state.osIsVista = library->isVista();
    state.physxVersion = int32_t(library->getPhysxVersion());
    state.headerTextColour = 0xFFFFFF;
    state.headerBackColour = 0xAF712A;
    return library;
}

void closeRun(AppState& state, Kalidor* library, void (*beforeLastLine)(AppState& state)) {
    state.furArray.reset();
    state.glCapsDialog = nullptr;
    compute::releaseOpenCl();
    logVersionLine("shutdown...");
    if (library) library->shutdown();
    if (beforeLastLine) beforeLastLine(state);
    appLog().writeLast("%s shutdown ok.", lumenscope::kDisplayName);
}

void freeRunRecords(AppState& state) {
    state.demoLock.reset();
    compute::freeOpenClPlatforms();
    compute::freeCudaDevices();
    vulkan::freeVulkanInfo();
    state.report = report::ReportBuffers{};
}
