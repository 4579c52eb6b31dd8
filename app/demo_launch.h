#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "demos/harness/demo_requirements.h"
#include "demos/harness/demo_settings.h"
#include "demos/harness/demo_tables.h"

struct AppState;

namespace compute {
struct ClPlatformRecord;
}

// Where the application meets the demo harness.

// The demo settings of the current options: the command line's window size and MSAA, the benchmark
// switches and the demos' own options.
DemoSettings demoSettingsFrom(const AppState& state);

// Hands the harness the message boxes, the demo throttle and the closing of the main window.
void connectDemoHost();

// What closes the main window when a benchmark run ends with /close_app_end_of_demo; null closes nothing
// (no main window yet).
void setMainWindowCloser(void (*closeMainWindow)());

// The automatic start: at most one demo, the first whose /start_demo_... option is given, in the order
// deformer, post FX, particles, Julia, torus, triangle, the eight engine demos, tessellation. Started with
// the command line's settings and without the Start button's capability tests. False when no option is
// given or the start failed.
bool startAutomaticDemo(const AppState& state);

// Whether the command line asks for an automatic start.
bool automaticDemoRequested(const AppState& state);

// What a Start button asks of the window before it starts a demo: the options dialog of `row` in `table`,
// modal. False unless it ended with Go!; then the window size it left is in *width and *height, and it has set
// demoMsaa.
using DemoOptionsPrompt = std::function<bool(DemoTable table, int row, int32_t* width, int32_t* height)>;

// The OpenGL Start button: the selected row's capability test (its message when it fails), then the options
// dialog, then the start with the dialog's window size. A demo that already runs opens no dialog and shows
// nothing. The state is read again after the dialog, which changes demoMsaa.
bool startOpenGlDemoFromButton(const AppState& state, const DemoCapabilities& caps, const DemoOptionsPrompt& prompt);

// The platform and the two devices the OpenCL panel has chosen for the demos. The device numbers count only
// the platform's devices of exactly that type.
struct OpenClDemoChoice {
    uint32_t platform = 0;
    int32_t gpuDevice = 0;
    int32_t cpuDevice = 0;
};

// The OpenCL Start button: the selected row on the chosen platform and device, the demo's test of the
// platform (its message when it fails), the options dialog, the GL interop warning, then the start.
bool startOpenClDemoFromButton(const AppState& state, const OpenClDemoChoice& choice, const DemoOptionsPrompt& prompt);

// Whether an OpenCL start of `row` must warn that GL interop is off: only the Julia and particle rows, only
// when interop is asked for, and only when platform 0 has a device of the row's type that cannot share
// with OpenGL (no sharing entry points, or no cl_khr_gl_sharing). The first version of ATI's GPU stack is
// taken on trust. `glSharingLoads` is asked only when such a device exists.
bool glInteropWarningDue(int row, const DemoSettings& settings, const std::vector<compute::ClPlatformRecord>& platforms,
                         bool (*glSharingLoads)());
