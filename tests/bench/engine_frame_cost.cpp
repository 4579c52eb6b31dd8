// What the engine itself costs a frame, apart from OpenGL. Each engine demo is set up on a headless
// context of this machine's driver and drawn for a while: the wall time per frame, with the frame finished
// as the harness finishes it. Then the context is taken away from the thread and the same frames run again:
// every OpenGL call is then a no-op of the dispatch layer, so the thread's CPU time per frame is the
// engine's and the demo's own work (scene advance, draw order, matrices, particles, instance data).
// Prints one line per demo: name, triangles of its figures, ms a frame, engine us a frame, share.
//
// Usage: bench_engine_frame_cost [SECONDS_PER_DEMO]   (default 3)
#include <EGL/egl.h>
#include <time.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "demos/demo_context.h"
#include "demos/engine_scenes/engine_demo.h"
#include "demos/gl_utility/render_window_gl.h"
#include "demos/harness/demo_table.h"

namespace {

struct Demo {
    const char* name;
    std::unique_ptr<DemoScene> (*make)();
};

constexpr Demo kDemos[] = {
    {"GL_Furry_Cube", makeFurryCubeDemo},         {"GL_HDR_DoF", makeHdrDofDemo},
    {"GL_GeometryInstancing", makeGeometryInstancingDemo}, {"GL_SoftShadows", makeSoftShadowsDemo},
    {"GL_PointSprite", makePointSpriteDemo},       {"GL_VertexTextureFetch", makeVertexDisplacementDemo},
    {"GL_ToonShading", makeCelShadingDemo},        {"GL_SimpleTorus", makeSimpleMeshDemo},
};

double threadSeconds() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

double wallSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// Frames until `seconds` have passed (at least three); returns the seconds a frame on `clock`.
template <typename Clock>
double perFrame(DemoScene& scene, DemoContext& context, RenderWindowGL& window, double seconds, Clock clock,
                bool present) {
    const double wallEnd = wallSeconds() + seconds;
    const double start = clock();
    int frames = 0;
    while (frames < 3 || wallSeconds() < wallEnd) {
        context.stats.elapsedMs += 16;  // the figures move on as in a run
        scene.drawFrame(context, window, 0.016f);
        if (present) window.present();
        ++frames;
    }
    return (clock() - start) / frames;
}

}  // namespace

int main(int argc, char** argv) {
    const double seconds = argc > 1 ? std::atof(argv[1]) : 3.0;
    Vantalux_nsp::vxTraceMgr::getInstance()->disable();
    Vantalux_nsp::Vantalux::getInstance()->startup(2, 0, nullptr);
    std::printf("%-24s %10s %10s %14s %8s\n", "demo", "triangles", "ms/frame", "engine us/frame", "share");
    for (const Demo& demo : kDemos) {
        RenderWindowGL window;
        if (!window.create(NativeWindow{}, 600, 600, 0, RenderWindowGL::kGl20)) {
            std::fprintf(stderr, "no headless context\n");
            return 1;
        }
        static DemoContext context;
        context.objectId = Vantalux_nsp::vxKma::genId();
        context.clientWidth = context.clientHeight = 600;
        context.stats = FrameStats{};
        context.firstFrame = true;
        std::unique_ptr<DemoScene> scene = demo.make();
        if (!scene->setUp(context, window)) {
            std::printf("%-24s set-up failed\n", demo.name);
            scene->release(context);
            continue;
        }
        const auto* engineDemo = dynamic_cast<const EngineDemo*>(scene.get());
        const double frame = perFrame(*scene, context, window, seconds, wallSeconds, true);

        // The same frames with no context on the thread: OpenGL calls do nothing.
        EGLDisplay display = eglGetCurrentDisplay();
        EGLContext glContext = eglGetCurrentContext();
        EGLSurface draw = eglGetCurrentSurface(EGL_DRAW), read = eglGetCurrentSurface(EGL_READ);
        eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        const double engine = perFrame(*scene, context, window, seconds / 3, threadSeconds, false);
        eglMakeCurrent(display, draw, read, glContext);

        std::printf("%-24s %10u %10.1f %14.1f %7.2f%%\n", demo.name, engineDemo ? engineDemo->triangleCount() : 0u,
                    frame * 1e3, engine * 1e6, engine / frame * 100.0);
        std::fflush(stdout);
        scene->release(context);
        window.release();
    }
    Vantalux_nsp::Vantalux::getInstance()->shutdown(nullptr);
    return 0;
}
