#pragma once

#include <atomic>

// One running demo: its thread and the flag that asks it to stop.
struct DemoContext {
    const char* name = "";
    std::atomic<bool> stopRequested{false};
    bool running = false;
};

// The fifteen demo records, in the order shutdown stops them.
enum DemoSlot {
    kDemoGl4Tessellation,
    kDemoClParticles,
    kDemoClPostFx,
    kDemoClSurfaceDeformer,
    kDemoGl3Torus,
    kDemoGl3Triangle,
    kDemoFurryCube,
    kDemoToonShading,
    kDemoVertexDisplacement,
    kDemoSimpleMesh,
    kDemoSoftShadows,
    kDemoPointSprites,
    kDemoHdrDof,
    kDemoGeometryInstancing,
    kDemoClJulia,
    kDemoSlotCount
};

DemoContext& demoContext(DemoSlot slot);

// Asks a running demo to stop and waits for it at most 100 ms; does nothing for a demo that does not run.
void stopDemo(DemoContext& context);
