#pragma once

#include <string>

struct DemoContext;
class RenderWindowGL;

// A demo is its scene: set-up, one frame and release. The harness owns everything else: the thread, the window
// and context, the frame loop, the FPS figures, the result row and the frame capture. Every call runs on the
// demo thread with the window's context current.
class DemoScene {
public:
    virtual ~DemoScene() = default;

    // What the run adds behind the demo's result name (demo_table.h) in the result row and the name of the
    // captured frame, such as the grid of the mesh deformer; empty for most.
    virtual const char* resultDetail() const { return ""; }

    // Runs on the demo thread before the window's context is made: tests of what the demo needs beyond
    // OpenGL. On failure the scene has shown its message; no context is made and no result row written.
    virtual bool checkBeforeContext(DemoContext&) { return true; }

    // Builds the scene. On failure the scene has shown its message; the harness then calls release() and
    // closes the window, and no result row is written.
    virtual bool setUp(DemoContext& context, RenderWindowGL& window) = 0;

    // Draws one frame into window.framebuffer(); the harness presents it. `dt` is the seconds since the
    // previous round.
    virtual void drawFrame(DemoContext& context, RenderWindowGL& window, float dt) = 0;

    // Frees what set-up made, whether or not it completed.
    virtual void release(DemoContext& context) = 0;

    // The window title after each FPS sample; empty keeps the title (demos that show FPS in the picture).
    virtual std::string fpsTitle(const DemoContext&, RenderWindowGL&) const { return {}; }

    // Whether a failed set-up also closes the program's window when the run was to close it at the end.
    virtual bool failureEndsProgram() const { return false; }
};
