#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Kalidornm {

// The values taken from the amdgpu driver's `gpu_metrics` file, a binary table the firmware refreshes. It
// begins with a header (u16 structure size, u8 format revision, u8 content revision); format 1 is the table
// of discrete cards, 2 and 3 those of APUs. A field of all ones is one the firmware does not fill. Each value
// is in its unit; absent where the layout has no such field, the firmware gave none or the bytes end first.
struct AmdGpuMetrics {
    uint8_t formatRevision = 0, contentRevision = 0;
    std::optional<float> edgeC, hotspotC, memoryC;  // discrete cards
    std::optional<float> vrGfxC, vrSocC, vrMemC;     // the voltage regulators' sensors
    std::optional<float> gfxC, socC;                 // APUs
    std::optional<float> socketPowerWatts;
    std::optional<float> fanRpm;
    // The driver's chip-independent throttle bits, where the layout carries them.
    std::optional<uint64_t> throttleStatus;
};

// Parses a whole gpu_metrics file. nullopt when the header is short or names a layout this reader does not
// know; a structure size larger than the bytes given only leaves the fields past the end absent.
std::optional<AmdGpuMetrics> parseAmdGpuMetrics(const uint8_t* data, size_t size);

// The names of the set bits of a chip-independent throttle status, lowest bit first ("ppt0", "temp_hotspot").
// Bits without a name are left out.
std::vector<std::string> amdThrottleReasonNames(uint64_t status);

}  // namespace Kalidornm
