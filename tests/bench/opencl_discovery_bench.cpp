// Wall time of OpenCL discovery through the system's loader (pocl on the build machine): platforms, devices
// and every device field, then the release. Run: build/tests/bench_opencl_discovery (not part of ctest).
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "app/app_log.h"
#include "compute/opencl_discovery.h"

static void DiscoverAndRelease(benchmark::State& state) {
    const std::filesystem::path logPath =
        std::filesystem::temp_directory_path() / ("opencl_bench_" + std::to_string(getpid()) + ".txt");
    AppLog log(logPath.c_str());
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
    std::filesystem::remove(logPath);
}
BENCHMARK(DiscoverAndRelease)->Unit(benchmark::kMillisecond)->Iterations(20);

BENCHMARK_MAIN();
