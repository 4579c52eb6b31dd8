#include "app/lifecycle.h"

#include <string>

#include "app/app_log.h"
#include "app/app_state.h"
#include "app/demo_launch.h"
#include "demos/demo_context.h"
#include "demos/harness/demo_launcher.h"
#include "demos/harness/demo_window.h"
#include "app/desktop_shell.h"
#include "engine/vantalux.h"
#include "app/run_steps.h"
#include "kalidor/kalidor.h"
#include "app/message_boxes.h"
#include "app/online_check.h"
#include "app/platform/interrupt.h"
#include "app/no_display_notice.h"
#include "base/version.h"

using Kalidornm::Kalidor;

namespace {

void traceMessageBox(int level, const char* text) {
    Vantalux_nsp::vxTraceMgr::getInstance()->logTrace(level, "%s", text);
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
    closeRun(state, library, letGoOfUpdateThread);
    Vantalux_nsp::Vantalux::getInstance()->shutdown(nullptr);
    freeRunRecords(state);
}

}  // namespace

int runLumenscope(int argc, const char* const* argv, DesktopShell* desktop) {
    AppState& state = gApp;
    setMessageBoxTrace(traceMessageBox);
    prepareDemoWindowing();
    openRun(state, argc, argv);

    // A benchmark on a machine without a display: the demo needs no window of ours.
    const bool headlessDemo = state.automaticDemo.has_value() && !demoDisplayReachable();
    const bool windowed = !headlessDemo;
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

    Kalidor* library = startMachineProbes(state);
    if (!library) {
        if (windowed) desktop->closeSplash();
        showErrorBox("%s", kLibraryStartFailed);
        if (windowed) desktop->disconnect();
        return 0;
    }
    Vantalux_nsp::vxTraceMgr::getInstance()->disable();
    Vantalux_nsp::Vantalux::getInstance()->startup(state.glMajorVersion, state.glMinorVersion, nullptr);

    if (headlessDemo) {
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
