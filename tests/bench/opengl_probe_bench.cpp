// Wall time of the headless OpenGL probe on this machine's EGL driver, after the driver's first load.
// Run: build/tests/bench_opengl_probe (not part of ctest).
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "kalidor/render_window.h"

using namespace Kalidornm;

static void ProbeContextAndCatalogue(benchmark::State& state) {
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    RenderWindow window;
    GpuList gpus;
    window.create(64, 64, 32, 24, 8, 0, 4, 5, true, gpus);  // pays for loading the driver once
    for (auto _ : state) {
        window.destroyContext();
        gpus.clear();
        window.create(64, 64, 32, 24, 8, 0, 4, 5, true, gpus);
    }
    state.counters["catalogue_entries"] = double(window.caps()->gl.caps.size());
}
BENCHMARK(ProbeContextAndCatalogue)->Unit(benchmark::kMillisecond)->Iterations(20);

BENCHMARK_MAIN();
