#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "demos/demo_context.h"
#include "demos/harness/demo_table.h"

// The routine of every demo thread: window and context, the scene's set-up, the frame loop, the frame
// capture and result row, release, and the end. Clears context.threadAlive as its last step.
void runDemoThread(DemoContext& context, const DemoRow& demo, std::unique_ptr<DemoScene> scene);

// The lock engine demos hold while they set up, draw a frame and release: one thread at a time inside the
// engine.
std::mutex& demoLock();

// The name of a run's result row and captured frame: the demo's result name, then `detail`.
std::string demoResultName(const DemoContext& context, const char* detail);

// Appends the demo's row to "./bench_result.csv" when its settings ask for result logging.
void writeBenchResult(const DemoContext& context, const char* testName, int msaaSamples);
