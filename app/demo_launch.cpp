#include "app/demo_launch.h"

#include <algorithm>
#include <atomic>
#include <optional>

#include "app/app_state.h"
#include "compute/opencl_discovery.h"
#include "compute/opencl_entry_points.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_launcher.h"
#include "app/message_boxes.h"

namespace {

std::atomic<void (*)()> gMainWindowCloser{nullptr};

constexpr const char* kGlInteropOffText =
    "This OpenCL demo has the GL interop option enabled.\n\rYour GPU/CPU doesn't support GL interop.\n\rGL interop "
    "is disabled.";

// What a start begins from: the demo settings, and the GPU shown on the GPU panel, whose driver the result
// row names.
DemoSettings demoSettingsFrom(const AppState& state) {
    DemoSettings settings = state.demo;
    settings.selectedGpu = state.selectedGpu;
    return settings;
}

// The options dialog, then the start with the size it left; nothing when the demo may not start now.
bool startAfterOptions(const AppState& state, DemoPicker picker, int row, DemoSettings settings,
                       const DemoOptionsPrompt& prompt) {
    const std::optional<DemoPick> pick = demoAtPickerRow(picker, row);
    if (!pick) return false;
    if (pick->clDeviceType) settings.clDeviceType = pick->clDeviceType;
    if (!demoMayStart(pick->id, settings) || !prompt) return false;
    int32_t width = settings.winWidth, height = settings.winHeight;
    if (!prompt(picker, row, &width, &height)) return false;
    settings.msaaSamples = state.demo.msaaSamples;
    settings.winWidth = width;
    settings.winHeight = height;
    if (picker == DemoPicker::OpenCl &&
        glInteropWarningDue(row, settings, compute::clPlatforms(), &compute::loadClGlEntryPoints))
        showWarningBox("%s", kGlInteropOffText);
    return startDemo(pick->id, settings);
}

}  // namespace

void connectDemoHost() {
    DemoHost host;
    host.showError = [](const char* text) { showErrorBox("%s", text); };
    host.showWarning = [](const char* text) { showWarningBox("%s", text); };
    host.closeMainWindow = [] {
        if (void (*close)() = gMainWindowCloser.load()) close();
    };
    // A single word the main window writes while demos run; read relaxed, as it only paces frames.
    host.throttleMs = [] { return __atomic_load_n(&gApp.demoThrottleMs, __ATOMIC_RELAXED); };
    setDemoHost(host);
}

void setMainWindowCloser(void (*closeMainWindow)()) { gMainWindowCloser = closeMainWindow; }

bool startAutomaticDemo(const AppState& state) {
    if (!state.automaticDemo) return false;
    DemoSettings settings = demoSettingsFrom(state);
    settings.startedFromCommandLine = true;
    return startDemo(*state.automaticDemo, settings);
}

bool startOpenGlDemoFromButton(const AppState& state, const DemoCapabilities& caps, const DemoOptionsPrompt& prompt) {
    const int row = openGlStartRow(state.selectedGlDemo);
    if (const char* failure = openGlDemoRequirementFailure(row, caps)) {
        showErrorBox("%s", failure);
        return false;
    }
    return startAfterOptions(state, DemoPicker::OpenGl, row, demoSettingsFrom(state), prompt);
}

bool startOpenClDemoFromButton(const AppState& state, const OpenClDemoChoice& choice, const DemoOptionsPrompt& prompt) {
    DemoSettings settings = demoSettingsFrom(state);
    settings.clPlatformIndex = choice.platform;
    settings.clGpuDeviceIndex = choice.gpuDevice;
    settings.clCpuDeviceIndex = choice.cpuDevice;
    return startAfterOptions(state, DemoPicker::OpenCl, openClStartRow(state.selectedClDemo), settings, prompt);
}

bool glInteropWarningDue(int row, const DemoSettings& settings, const std::vector<compute::ClPlatformRecord>& platforms,
                         bool (*glSharingLoads)()) {
    const std::optional<DemoPick> pick = demoAtPickerRow(DemoPicker::OpenCl, row);
    if (!pick || !demoRow(pick->id).warnsWithoutGlInterop || !settings.clGlInterop || platforms.empty()) return false;
    const uint32_t deviceType = pick->clDeviceType;
    const compute::ClPlatformRecord& platform = platforms.front();
    if (deviceType == kClDeviceTypeGpu && platform.version.find("ATI-Stream-v2.0.0") != std::string::npos) return false;
    const auto device = std::find_if(platform.devices.begin(), platform.devices.end(),
                                     [&](const compute::ClDeviceRecord& d) { return d.type == deviceType; });
    if (device == platform.devices.end()) return false;
    const bool sharing = std::find(device->extensions.begin(), device->extensions.end(), "cl_khr_gl_sharing") !=
                         device->extensions.end();
    return !(glSharingLoads && glSharingLoads()) || !sharing;
}
