// Wall time of OpenCL discovery through the system's loader (pocl on the build machine): platforms, devices
// and every device field, then the release. Run: build/tests/bench_opencl_discovery (not part of ctest).
#include <benchmark/benchmark.h>

#include "compute/opencl_discovery.h"

static void DiscoverAndRelease(benchmark::State& state) {
    // No sink is installed: discovery's log lines are dropped, as they cost nothing worth measuring.
    base::LogSink& log = base::programLog();
    compute::discoverOpenCl(log);  // pays for loading the driver once
    compute::releaseOpenCl();
    compute::freeOpenClPlatforms();
    double platforms = 0;
    for (auto _ : state) {
        compute::discoverOpenCl(log);
        platforms = compute::getClPlatformCount();
        compute::releaseOpenCl();
        compute::freeOpenClPlatforms();
    }
    state.counters["platforms"] = platforms;
}
BENCHMARK(DiscoverAndRelease)->Unit(benchmark::kMillisecond)->Iterations(20);

BENCHMARK_MAIN();
