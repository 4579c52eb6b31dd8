// The amdgpu driver's binary gpu_metrics table, from any bytes: whatever the header claims, the parser reads
// only the bytes it is given, and what it returns holds only values a table can give.
#include <cmath>
#include <cstdlib>
#include <vector>

#include "kalidor/vendors/amd_gpu_metrics.h"

using namespace Kalidornm;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // A copy of exactly `size` bytes on the heap, so that a read past it shows under AddressSanitizer.
    const std::vector<uint8_t> bytes(data, data + size);
    const auto metrics = parseAmdGpuMetrics(bytes.data(), bytes.size());
    if (!metrics) return 0;
    if (size < 4) std::abort();
    const std::optional<float> values[] = {metrics->edgeC,  metrics->hotspotC, metrics->memoryC,
                                           metrics->vrGfxC, metrics->vrSocC,   metrics->vrMemC,
                                           metrics->gfxC,   metrics->socC,     metrics->socketPowerWatts,
                                           metrics->fanRpm};
    for (const std::optional<float>& value : values)
        if (value && !(std::isfinite(*value) && *value >= 0.0f && *value < 4294967296.0f)) std::abort();
    if (metrics->throttleStatus) {
        const auto names = amdThrottleReasonNames(*metrics->throttleStatus);
        if (names.size() > 64) std::abort();
    }
    return 0;
}
