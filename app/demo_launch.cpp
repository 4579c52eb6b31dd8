#include "demo_launch.h"

#include <algorithm>
#include <array>
#include <atomic>

#include "app_state.h"
#include "compute/opencl_discovery.h"
#include "compute/opencl_entry_points.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_launcher.h"
#include "message_boxes.h"

namespace {

std::atomic<void (*)()> gMainWindowCloser{nullptr};

struct AutomaticStart {
    bool AppState::*flag;
    DemoTable table;
    int row;  // for OpenCL demos the GPU row; the CPU row is the next one
};

constexpr auto kAutomaticStarts = std::to_array<AutomaticStart>({
    {&AppState::startDemoClDeformer, DemoTable::OpenCl, 4},
    {&AppState::startDemoClPostfx, DemoTable::OpenCl, 6},
    {&AppState::startDemoClParticles, DemoTable::OpenCl, 2},
    {&AppState::startDemoClJulia, DemoTable::OpenCl, 0},
    {&AppState::startDemoGl3Torus, DemoTable::OpenGl, 1},
    {&AppState::startDemoGl3Triangle, DemoTable::OpenGl, 2},
    {&AppState::startDemoGl2FurryCube, DemoTable::OpenGl, 3},
    {&AppState::startDemoGl2HdrDof, DemoTable::OpenGl, 4},
    {&AppState::startDemoGl2Gi, DemoTable::OpenGl, 5},
    {&AppState::startDemoGl2SoftShadows, DemoTable::OpenGl, 6},
    {&AppState::startDemoGl2PointSprite, DemoTable::OpenGl, 7},
    {&AppState::startDemoGl2Vtf, DemoTable::OpenGl, 8},
    {&AppState::startDemoGl2Toon, DemoTable::OpenGl, 9},
    {&AppState::startDemoGl2SimpleTorus, DemoTable::OpenGl, 10},
    {&AppState::startDemoGl4Tessellation, DemoTable::OpenGl, 0},
});
static_assert(kAutomaticStarts.size() == 15, "one automatic start per start option");

constexpr uint32_t kClDeviceTypeCpu = 2;
constexpr uint32_t kClDeviceTypeGpu = 4;

constexpr const char* kGlInteropOffText =
    "This OpenCL demo has the GL interop option enabled.\n\rYour GPU/CPU doesn't support GL interop.\n\rGL interop "
    "is disabled.";

// The options dialog, then the start with the size it left; nothing when the demo may not start now.
bool startAfterOptions(const AppState& state, DemoTable table, int row, DemoSettings settings,
                       const DemoOptionsPrompt& prompt) {
    if (!demoMayStart(table, row, settings) || !prompt) return false;
    int32_t width = settings.winWidth, height = settings.winHeight;
    if (!prompt(table, row, &width, &height)) return false;
    settings.msaaSamples = state.demoMsaa;
    settings.winWidth = width;
    settings.winHeight = height;
    if (table == DemoTable::OpenCl &&
        glInteropWarningDue(row, settings, compute::clPlatforms(), &compute::loadClGlEntryPoints))
        showWarningBox("%s", kGlInteropOffText);
    return startDemo(table, row, settings);
}

}  // namespace

DemoSettings demoSettingsFrom(const AppState& s) {
    DemoSettings d;
    d.winWidth = s.demoWinWidth;
    d.winHeight = s.demoWinHeight;
    d.msaaSamples = s.demoMsaa;
    d.benchLogResults = s.benchLogResults;
    d.benchDurationMs = s.benchDuration;
    d.closeAppEndOfDemo = s.closeAppEndOfDemo;
    d.captureLastFrame = s.demoCaptureLastFrame;
    d.selectedGpu = s.selectedGpu;
    d.processorCount = s.processorCount;
    d.gl3TorusRadeonFix = s.gl3TorusRadeonFix;
    d.gl4TessLevelOuter = s.gl4TessLevelOuter;
    d.gl4TessLevelInner = s.gl4TessLevelInner;
    d.gl4TessLevelAnim = s.gl4TessLevelAnim;
    d.clDeviceType = s.clDeviceType;
    d.clDeviceIndex = s.clDeviceIndex;
    d.clDeviceIndexForced = s.clDeviceIndexForced;
    d.glRenderInClDemos = s.glRenderInClDemos;
    d.clGlInterop = s.clGlInterop;
    d.clNativeSin = s.clNativeSin;
    d.clExplicitWorkgroupSize = s.clExplicitWorkgroupSize;
    d.clUseLocalMem = s.clUseLocalMem;
    d.clSurfaceSegsX = s.clSurfaceSegsX;
    d.clSurfaceSegsZ = s.clSurfaceSegsZ;
    d.clKernelWorkload = s.clKernelWorkload;
    d.clKernelWorkloadMad = s.clKernelWorkloadMad;
    d.clKernelWorkloadDoCheck = s.clKernelWorkloadDoCheck;
    d.clParticlesGpu = s.clParticlesGpu;
    d.clParticlesCpu = s.clParticlesCpu;
    d.clParticlesSin = s.clParticlesSin;
    d.clJuliaAnimated = s.clJuliaAnimated;
    d.clJuliaRttSize = s.clJuliaRttSize;
    return d;
}

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

bool automaticDemoRequested(const AppState& state) {
    for (const AutomaticStart& start : kAutomaticStarts)
        if (state.*start.flag) return true;
    return false;
}

bool startAutomaticDemo(const AppState& state) {
    for (const AutomaticStart& start : kAutomaticStarts) {
        if (!(state.*start.flag)) continue;
        const bool cpuTwin = start.table == DemoTable::OpenCl && state.clDeviceType == kClDeviceTypeCpu;
        DemoSettings settings = demoSettingsFrom(state);
        settings.startedFromCommandLine = true;
        return startDemo(start.table, start.row + (cpuTwin ? 1 : 0), settings);
    }
    return false;
}

bool startOpenGlDemoFromButton(const AppState& state, const DemoCapabilities& caps, const DemoOptionsPrompt& prompt) {
    const int row = openGlStartRow(state.selectedGlDemo);
    if (const char* failure = openGlDemoRequirementFailure(row, caps)) {
        showErrorBox("%s", failure);
        return false;
    }
    return startAfterOptions(state, DemoTable::OpenGl, row, demoSettingsFrom(state), prompt);
}

bool startOpenClDemoFromButton(const AppState& state, const OpenClDemoChoice& choice, const DemoOptionsPrompt& prompt) {
    DemoSettings settings = demoSettingsFrom(state);
    settings.clPlatformIndex = choice.platform;
    settings.clGpuDeviceIndex = choice.gpuDevice;
    settings.clCpuDeviceIndex = choice.cpuDevice;
    return startAfterOptions(state, DemoTable::OpenCl, openClStartRow(state.selectedClDemo), settings, prompt);
}

bool glInteropWarningDue(int row, const DemoSettings& settings, const std::vector<compute::ClPlatformRecord>& platforms,
                         bool (*glSharingLoads)()) {
    const bool juliaOrParticles = row >= 0 && row <= 3;
    if (!juliaOrParticles || !settings.clGlInterop || platforms.empty()) return false;
    const uint32_t deviceType = row % 2 == 0 ? kClDeviceTypeGpu : kClDeviceTypeCpu;
    const compute::ClPlatformRecord& platform = platforms.front();
    if (deviceType == kClDeviceTypeGpu && platform.version.find("ATI-Stream-v2.0.0") != std::string::npos) return false;
    const auto device = std::find_if(platform.devices.begin(), platform.devices.end(),
                                     [&](const compute::ClDeviceRecord& d) { return d.type == deviceType; });
    if (device == platform.devices.end()) return false;
    const bool sharing = std::find(device->extensions.begin(), device->extensions.end(), "cl_khr_gl_sharing") !=
                         device->extensions.end();
    return !(glSharingLoads && glSharingLoads()) || !sharing;
}
