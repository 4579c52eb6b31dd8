#pragma once

#include "demos/harness/demo_settings.h"

struct AppState;

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
