#pragma once

#include <atomic>

#include "demos/harness/demo_settings.h"
#include "demos/harness/demo_table.h"

// Starts demo `id` on a thread of its own, with `settings` (the command line's values, or what the options
// dialog left). An OpenCL demo runs on a CPU device when settings.clDeviceType says so, else on a GPU device.
// The Start buttons, the options dialog and the automatic start all come here. False, with nothing shown,
// when `id` is no demo or the demo already runs; false after its message when a check before the start fails.
bool startDemo(DemoId id, const DemoSettings& settings);

// The tests startDemo makes before it starts anything, without starting: false when `id` is no demo or the demo
// already runs (nothing shown), or after its message when the demo's own check fails. A Start button asks this
// before its options dialog, so that a running demo opens no dialog.
bool demoMayStart(DemoId id, const DemoSettings& settings);

bool anyDemoRunning();

// Waits until every demo thread has ended and joins them. When `interrupted` becomes true, asks every demo
// to stop and goes on waiting.
void waitForDemosToEnd(const std::atomic<bool>* interrupted = nullptr);
