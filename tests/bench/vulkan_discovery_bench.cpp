// Wall time of Vulkan discovery through the system's loader (lavapipe on the build machine): the instance,
// every device and every field, with the drivers of vendors without a GPU here left out as the program
// does on a machine whose scan found only the software renderer. Run: build/tests/bench_vulkan_discovery
// (not part of ctest); tools/bench_vulkan_discovery.sh measures the whole program.
#include <benchmark/benchmark.h>

#include "vulkan/vulkan_discovery.h"

static void Discover(benchmark::State& state) {
    Kalidornm::MachineSnapshot machine;
    machine.gpus.emplace_back();  // the software renderer: no PCI vendor
    base::LogSink& log = base::programLog();  // no sink installed: the lines are dropped
    double devices = 0;
    for (auto _ : state) {
        vulkan::discoverVulkan(machine, log);
        devices = double(vulkan::vulkanInfo().devices.size());
        vulkan::freeVulkanInfo();
    }
    state.counters["devices"] = devices;
}
BENCHMARK(Discover)->Unit(benchmark::kMillisecond)->Iterations(1)->Name("first discovery in a process");
BENCHMARK(Discover)->Unit(benchmark::kMillisecond)->Iterations(20)->Name("later discoveries");

BENCHMARK_MAIN();
