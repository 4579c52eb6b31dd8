#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

#include "demos/harness/demo_settings.h"
#include "demos/harness/demo_table.h"
#include "demos/harness/demo_timers.h"
#include "demos/harness/frame_stats.h"

class DemoWindow;
class RenderWindowGL;

// One demo: its thread and what the thread shares with the rest of the program. A start resets the record;
// only one thread runs per record. Fields below the thread's are written by the demo thread once it runs.
struct DemoContext {
    DemoHiResTimer timer;
    std::thread thread;                // not joinable: the demo does not run
    std::atomic<uint32_t> threadId{0};  // the kernel's id of the demo thread
    uint32_t objectId = 0;             // fresh per start; engine object names carry it
    std::atomic<bool> stopRequested{false};
    std::atomic<bool> finished{false};  // set on a normal end
    std::atomic<bool> ready{false};     // the window's rendering exists

    DemoId id = {};            // the demo of the record, set at start
    DemoSettings settings;     // copied at start; for an OpenCL demo its device type is the start's
    uint32_t msaaSamples = 0;  // asked for at start
    bool firstFrame = true;    // engine demos: the first frame runs their one-time set-up

    DemoWindow* window = nullptr;  // null when the demo runs headless
    RenderWindowGL* renderWindow = nullptr;
    int32_t clientWidth = 0;
    int32_t clientHeight = 0;
    FrameStats stats;

    // Set while the demo thread exists, cleared by the thread as its very last step.
    bool threadAlive = false;
    std::mutex aliveLock;
    std::condition_variable aliveChanged;
};

// The record of a demo, one per row of the demo table; the GPU and CPU rows of an OpenCL demo share one. Records
// live for the whole process, so a thread left running at exit never sees its record destroyed.
DemoContext& demoContext(DemoId id);

// What stopDemo found: no thread, a thread that ended within the wait, or one that was still running and
// was left to finish its frame and end by itself.
enum class DemoStop { NotRunning, Ended, LeftRunning };

constexpr int kDemoStopWaitMs = 100;

// Asks a running demo to stop and waits for its thread at most kDemoStopWaitMs. A thread that does not end in that
// time is detached: whatever it uses must stay alive until the process ends.
DemoStop stopDemo(DemoContext& context);

// Pointer position over the most recent demo window, in client coordinates.
int32_t demoMouseX();
int32_t demoMouseY();
void setDemoMouse(int32_t x, int32_t y);
