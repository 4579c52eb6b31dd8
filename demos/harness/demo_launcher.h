#pragma once

#include <atomic>

#include "demo_settings.h"
#include "demo_tables.h"

// Starts the demo of `row` in `table` on a thread of its own, with `settings` (the command line's values,
// or what the options dialog left). The Start buttons, the options dialog and the automatic start all come
// here. False, with nothing shown, when the row is not a demo of this build or the demo already runs; false
// after its message when a check before the start fails.
bool startDemo(DemoTable table, int row, const DemoSettings& settings);

// The tests startDemo makes before it starts anything, without starting: false when the row is not a demo of
// this build or the demo already runs (nothing shown), or after its message when the demo's own check fails.
// A Start button asks this before its options dialog, so that a running demo opens no dialog.
bool demoMayStart(DemoTable table, int row, const DemoSettings& settings);

// The row and table of the demo started last; demo windows take their titles from them.
int currentDemoIndex();
DemoTable currentDemoTable();

bool anyDemoRunning();

// Waits until every demo thread has ended and joins them. When `interrupted` becomes true, asks every demo
// to stop and goes on waiting.
void waitForDemosToEnd(const std::atomic<bool>* interrupted = nullptr);
