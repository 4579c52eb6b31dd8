#include "app/lifecycle.h"

#include <string>

#include "app/app_log.h"
#include "app/app_state.h"
#include "app/batch_reports.h"
#include "app/command_line.h"
#include "compute/cuda_discovery.h"
#include "compute/opencl_discovery.h"
#include "app/demo_launch.h"
#include "demos/demo_context.h"
#include "demos/harness/demo_launcher.h"
#include "demos/harness/demo_window.h"
#include "app/desktop_shell.h"
#include "engine/vantalux.h"
#include "app/gpu_log_block.h"
#include "kalidor/kalidor.h"
#include "app/message_boxes.h"
#include "app/online_check.h"
#include "app/platform/interrupt.h"
#include "app/no_display_notice.h"
#include "base/version.h"

using Kalidornm::Kalidor;

namespace {

constexpr int kMaxListedDisplayDevices = 10;
constexpr int kMaxLoggedGpuStrings = 10;

void logVersionLine(const char* what) {
    appLog().write("%s %s %s", lumenscope::kDisplayName, lumenscope::kVersionText, what);
}

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

// Without a display a demo started from the command line runs headless, and the program ends with it.
void runHeadlessDemo(const AppState& state) {
    const bool demoStarted = startAutomaticDemo(state);
    appLog().write("%s startup ok.", lumenscope::kDisplayName);
    if (!demoStarted) return;
    lumenscope::platform::catchFirstInterrupt();
    waitForDemosToEnd(&lumenscope::platform::interruptRequested());
}

// The update thread is never waited for: it may hang on the network and must not hold the exit.
void letGoOfUpdateThread(AppState& state) {
    if (!state.updateThread) return;
    state.updateThreadOutlivedShutdown = state.updateThread->running();
    state.updateThread->detach();
    state.updateThread.reset();
}

// Asks every demo to stop, each waited for at most kDemoStopWaitMs; true when one is still running.
bool demoLeftRunning() {
    bool leftRunning = false;
    for (const DemoRow& demo : kDemoRows) {
        DemoContext& context = demoContext(demo.id);
        if (stopDemo(context) != DemoStop::LeftRunning) continue;
        appLog().write("The demo %s did not stop within %d ms; nothing it uses is released.",
                       demoShown(demo.id, context.settings.clDeviceType).title, kDemoStopWaitMs);
        leftRunning = true;
    }
    return leftRunning;
}

void shutdownApplication(AppState& state, Kalidor* library) {
    if (demoLeftRunning()) {
        // The demo may be inside OpenCL, the engine, the GPU library or a box of the window toolkit: nothing
        // is released under it. The log is closed on its last line, and main ends the process without
        // running exit handlers or destructors.
        state.demoThreadOutlivedShutdown = true;
        logVersionLine("shutdown...");
        letGoOfUpdateThread(state);
        appLog().writeLast("%s shutdown ok.", lumenscope::kDisplayName);
        return;
    }
    state.furArray.reset();
    state.glCapsDialog = nullptr;
    compute::releaseOpenCl();
    logVersionLine("shutdown...");
    if (library) library->shutdown();
    letGoOfUpdateThread(state);
    appLog().writeLast("%s shutdown ok.", lumenscope::kDisplayName);
    Vantalux_nsp::Vantalux::getInstance()->shutdown(nullptr);
    state.demoLock.reset();
    compute::freeOpenClPlatforms();
    compute::freeCudaDevices();
    state.report = report::ReportBuffers{};
}

}  // namespace

int runLumenscope(int argc, const char* const* argv, DesktopShell* desktop) {
    AppState& state = gApp;
    prepareDemoWindowing();
    initAppState(state);
    // Opened here rather than before main, so that nothing which ends before start-up touches the file.
    appLog().open(AppLog::kFileName);
    logVersionLine("startup...");

    const std::string commandLine = joinArguments(argc, argv);
    parseCommandLine(state, commandLine.c_str());

    logDisplayDevices();
    const bool batch = state.exportXmlReport || state.exportTxtReport || state.exportJsonReport;
    // A benchmark on a machine without a display: the demo needs no window of ours.
    const bool headlessDemo = !batch && state.automaticDemo.has_value() && !demoDisplayReachable();
    const bool windowed = !batch && !headlessDemo;
    if (windowed) {
        // Checked before the scan: without a display there is nothing to show it in.
        std::string why = "no window toolkit was built in";
        if (!desktop || !desktop->connect(&why)) {
            reportNoDisplay(why.c_str());
            return 1;
        }
        desktop->showSplash();
    }
    state.updateThread.reset();

    if (state.openclSupportEnabled) compute::discoverOpenCl();

    Kalidor* library = Kalidor::getInstance();
    if (!library || !library->startup(0, 0, 64, 64, state.glMajorVersion, state.glMinorVersion, true)) {
        if (windowed) desktop->closeSplash();
        showErrorBox("Could not initialize Kalidor. Lumenscope startup failed. Bye!");
        if (windowed) desktop->disconnect();
        return 0;
    }

    state.gpuCount = library->getGpuCount();
    logDisplayDeviceStrings(*library);
    if (state.gpuCount > 0) logDetectedGpus(*library, state.gpuCount);
    state.cpuSpeedMhz = int32_t(library->getCpuSpeedMhz());

    compute::discoverCuda();
    Vantalux_nsp::vxTraceMgr::getInstance()->disable();
    Vantalux_nsp::Vantalux::getInstance()->startup(state.glMajorVersion, state.glMinorVersion, nullptr);

    state.osIsVista = library->isVista();
    state.physxVersion = int32_t(library->getPhysxVersion());
    state.headerTextColour = 0xFFFFFF;
    state.headerBackColour = 0xAF712A;

    if (batch) {
        writeBatchReports(state, *library);
    } else if (headlessDemo) {
        connectDemoHost();
        runHeadlessDemo(state);
    } else {
        connectDemoHost();
        desktop->runMainDialog(state, *library);
    }

    shutdownApplication(state, library);
    if (windowed && !state.threadOutlivedShutdown()) desktop->disconnect();
    return 0;
}
