#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "demos/harness/demo_requirements.h"
#include "demos/harness/demo_settings.h"
#include "demos/harness/demo_table.h"

struct AppState;

namespace compute {
struct ClPlatformRecord;
}

// Where the application meets the demo harness.

// Hands the harness the message boxes, the demo throttle and the closing of the main window.
void connectDemoHost();

// What closes the main window when a benchmark run ends with /close_app_end_of_demo; null closes nothing
// (no main window yet).
void setMainWindowCloser(void (*closeMainWindow)());

// The automatic start: the demo of state.automaticDemo (the command line's choice), started with the command
// line's settings and without the Start button's capability tests. False when none is asked for or the start
// failed.
bool startAutomaticDemo(const AppState& state);

// What a Start button asks of the window before it starts a demo: the options dialog of `row` in `picker`,
// modal. False unless it ended with Go!; then the window size it left is in *width and *height, and it has set
// demo.msaaSamples.
using DemoOptionsPrompt = std::function<bool(DemoPicker picker, int row, int32_t* width, int32_t* height)>;

// The OpenGL Start button: the selected row's capability test (its message when it fails), then the options
// dialog, then the start with the dialog's window size. A demo that already runs opens no dialog and shows
// nothing. The state is read again after the dialog, which changes demo.msaaSamples.
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

// Whether an OpenCL start of `row` of the OpenCL picker must warn that GL interop is off: only the rows of the
// demos that would share with OpenGL (Julia and particles), only when interop is asked for, and only when
// platform 0 has a device of the row's type that cannot share with OpenGL (no sharing entry points, or no
// cl_khr_gl_sharing). The first version of ATI's GPU stack is
// taken on trust. `glSharingLoads` is asked only when such a device exists.
bool glInteropWarningDue(int row, const DemoSettings& settings, const std::vector<compute::ClPlatformRecord>& platforms,
                         bool (*glSharingLoads)());
