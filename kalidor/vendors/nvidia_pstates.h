#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kalidor/gpu_record.h"
#include "kalidor/vendors/nvml_api.h"

namespace Kalidornm {

class NvmlLibrary;

// One P-state's clock ranges as the driver gives them, MHz.
struct NvidiaPstateClocks {
    uint32_t id = 0;
    uint32_t minGpuMhz = 0, maxGpuMhz = 0;
    uint32_t minMemMhz = 0, maxMemMhz = 0;
};

// What the P-state table is made of: the states whose clock ranges the driver gave, in ascending id order,
// and the current state at its current clocks for a driver that gave none.
struct NvidiaPstateReadings {
    static constexpr uint32_t kUnknownPstate = 32;
    std::vector<NvidiaPstateClocks> states;
    uint32_t currentPstate = kUnknownPstate;
    uint32_t currentGpuMhz = 0, currentMemMhz = 0;
};

// The P-state ids of the driver's list of `count` entries, ascending and each once. Entries outside 0 to 15
// (the "unknown" that pads the list among them) are left out, wherever they stand.
std::vector<uint32_t> nvidiaPstateIds(const nvmlPstates_t* entries, size_t count);

// One level per state the driver gave clock ranges for, at the state's highest clocks with its lowest
// beside them. Without any such state, the current state alone at its current clocks, with no range; without
// a current state either, no level. Shader clock and voltage stay 0: the driver gives neither.
std::vector<PerfLevel> buildNvidiaPerfLevels(const NvidiaPstateReadings& readings);

// Asks the driver for the GPU's P-states and their clock ranges (calls that older libraries lack), and for the
// current state and clocks only when no range came back. Every answer is checked: a state past 15, a range
// whose low end is above its high end, or a clock beyond any GPU's is no answer.
NvidiaPstateReadings readNvidiaPstates(const NvmlLibrary& nvml, nvmlDevice_t device);

}  // namespace Kalidornm
