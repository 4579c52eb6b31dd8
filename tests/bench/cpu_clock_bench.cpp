// The time stamp counter's rate as the library measures it (a 50 ms sleep against the raw monotonic clock)
// beside the one-second busy count it replaced, on the machine at hand: both figures in MHz, how far apart
// they are, and what each costs. Not a test: run build-test/tests/bench_cpu_clock [rounds].
#include <time.h>
#include <x86intrin.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "kalidor/platform/cpu_x86.h"

namespace {

// The former measurement: pinned to processor 0, the counter over one second of spinning on the clock.
uint32_t oneSecondSpinMhz() {
    const Kalidornm::PinnedToFirstProcessor pinned;
    timespec start{}, now{};
    clock_gettime(CLOCK_MONOTONIC, &start);
    const uint64_t tscStart = __rdtsc();
    do {
        clock_gettime(CLOCK_MONOTONIC, &now);
    } while ((now.tv_sec - start.tv_sec) * 1000000000LL + (now.tv_nsec - start.tv_nsec) < 1000000000LL);
    const uint64_t tscEnd = __rdtsc();
    return uint32_t((tscEnd - tscStart) / 1000000u);
}

template <typename Measure>
std::vector<uint32_t> rounds(int count, Measure measure, double* secondsEach) {
    std::vector<uint32_t> mhz;
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < count; ++i) mhz.push_back(measure());
    *secondsEach = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() / count;
    return mhz;
}

double median(std::vector<uint32_t> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace

int main(int argc, char** argv) {
    const int count = argc > 1 ? std::max(1, std::atoi(argv[1])) : 5;
    double spinSeconds = 0, sleepSeconds = 0;
    // Interleaved in two halves, so that both see the same machine load.
    std::vector<uint32_t> spin = rounds((count + 1) / 2, oneSecondSpinMhz, &spinSeconds);
    std::vector<uint32_t> sleep = rounds(count * 2, [] { return Kalidornm::measureTscMhz(); }, &sleepSeconds);
    double moreSpin = 0, moreSleep = 0;
    for (uint32_t v : rounds(count / 2 + 1, oneSecondSpinMhz, &moreSpin)) spin.push_back(v);
    for (uint32_t v : rounds(count * 2, [] { return Kalidornm::measureTscMhz(); }, &moreSleep)) sleep.push_back(v);

    const double reference = median(spin);
    double worst = 0;
    for (uint32_t v : sleep) worst = std::max(worst, std::abs(v - reference) / reference);
    std::printf("one-second spin: median %.0f MHz over %zu rounds, %.3f s each\n", reference, spin.size(),
                (spinSeconds + moreSpin) / 2);
    std::printf("%u ms sleep:     median %.0f MHz over %zu rounds, %.3f s each\n", Kalidornm::kTscWindowMs,
                median(sleep), sleep.size(), (sleepSeconds + moreSleep) / 2);
    std::printf("sleep / spin: MHz ratio %.5f (worst round %.3f %% off), time ratio %.3f\n", median(sleep) / reference,
                worst * 100, (sleepSeconds + moreSleep) / (spinSeconds + moreSpin));
    return 0;
}
