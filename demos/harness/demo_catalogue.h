#pragma once

#include <cstdint>
#include <memory>

#include "demo_context.h"
#include "harness/demo_scene.h"

// The three ways a demo renders, which decide its timer, its lock and where its FPS show.
enum class DemoFamily {
    Engine,     // through the scene-graph engine: one at a time inside it, FPS drawn in the picture
    OwnOpenGl,  // through the GL utility layer, FPS in the window title
    OpenCl,     // computes with OpenCL, draws through the GL utility layer, FPS in the title
};

// How one demo record runs.
struct DemoEntry {
    DemoSlot slot;
    DemoFamily family;
    uint32_t contextKind;           // the RenderWindowGL context kind
    bool tickTimer;                 // runs on the coarse process-wide timer instead of its own
    bool setsAffinity;              // pins its thread by the demo-thread counter
    const char* windowFailureText;  // shown when the window's context cannot be made
    // Makes the demo's scene; null while the demo is not part of this build.
    std::unique_ptr<DemoScene> (*makeScene)();
    // Run on the starting thread before anything else; shows its own message and returns false to refuse
    // the start. Null: no check. `deviceType` is the OpenCL device type of the row (4 GPU, 2 CPU), else 0.
    bool (*checkBeforeStart)(const DemoSettings& settings, uint32_t deviceType);
};

const DemoEntry& demoEntry(DemoSlot slot);

// The record a table row starts, and for OpenCL rows the device type (even rows GPU, odd rows CPU; 0 for
// OpenGL rows). False for a row outside the table.
bool demoSlotForRow(DemoTable table, int row, DemoSlot* slot, uint32_t* deviceType);
// The GPU row of an OpenCL demo, or the row of an OpenGL demo; -1 for a slot outside its table.
int demoRowForSlot(DemoSlot slot, uint32_t deviceType);
