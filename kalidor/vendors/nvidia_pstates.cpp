#include "kalidor/vendors/nvidia_pstates.h"

#include <algorithm>
#include <bitset>
#include <iterator>
#include <optional>

#include "kalidor/vendors/nvidia_limits.h"
#include "kalidor/vendors/nvml_library.h"

namespace Kalidornm {

namespace {

using namespace nvidia_limits;

constexpr uint32_t kPstateCount = 16;  // P0 to P15

bool saneRange(unsigned int low, unsigned int high) { return low <= high && high <= kMaxClockMhz; }

std::optional<NvidiaPstateClocks> readPstateClocks(const NvmlLibrary& nvml, nvmlDevice_t d, uint32_t id) {
    NvidiaPstateClocks clocks;
    clocks.id = id;
    const auto pstate = nvmlPstates_t(id);
    if (nvml.deviceGetMinMaxClockOfPState(d, NVML_CLOCK_GRAPHICS, pstate, &clocks.minGpuMhz, &clocks.maxGpuMhz) !=
            NVML_SUCCESS ||
        !saneRange(clocks.minGpuMhz, clocks.maxGpuMhz))
        return std::nullopt;
    if (nvml.deviceGetMinMaxClockOfPState(d, NVML_CLOCK_MEM, pstate, &clocks.minMemMhz, &clocks.maxMemMhz) !=
            NVML_SUCCESS ||
        !saneRange(clocks.minMemMhz, clocks.maxMemMhz))
        return std::nullopt;
    return clocks;
}

void readCurrentState(const NvmlLibrary& nvml, nvmlDevice_t d, NvidiaPstateReadings& readings) {
    nvmlPstates_t pstate = NVML_PSTATE_UNKNOWN;
    if (nvml.deviceGetPerformanceState && nvml.deviceGetPerformanceState(d, &pstate) == NVML_SUCCESS &&
        pstate >= 0 && uint32_t(pstate) < kPstateCount)
        readings.currentPstate = uint32_t(pstate);
    if (!nvml.deviceGetClockInfo) return;
    unsigned int mhz = 0;
    if (nvml.deviceGetClockInfo(d, NVML_CLOCK_GRAPHICS, &mhz) == NVML_SUCCESS && mhz <= kMaxClockMhz)
        readings.currentGpuMhz = mhz;
    if (nvml.deviceGetClockInfo(d, NVML_CLOCK_MEM, &mhz) == NVML_SUCCESS && mhz <= kMaxClockMhz)
        readings.currentMemMhz = mhz;
}

}  // namespace

std::vector<uint32_t> nvidiaPstateIds(const nvmlPstates_t* entries, size_t count) {
    std::bitset<kPstateCount> listed;
    for (size_t i = 0; entries && i < count; ++i)
        if (entries[i] >= 0 && uint32_t(entries[i]) < kPstateCount) listed.set(size_t(entries[i]));
    std::vector<uint32_t> ids;
    for (uint32_t id = 0; id < kPstateCount; ++id)
        if (listed.test(id)) ids.push_back(id);
    return ids;
}

std::vector<PerfLevel> buildNvidiaPerfLevels(const NvidiaPstateReadings& readings) {
    std::vector<PerfLevel> levels;
    for (const NvidiaPstateClocks& state : readings.states) {
        PerfLevel level;
        level.id = state.id;
        level.gpuClockMhz = float(state.maxGpuMhz);
        level.memClockMhz = float(state.maxMemMhz);
        level.minGpuClockMhz = float(state.minGpuMhz);
        level.minMemClockMhz = float(state.minMemMhz);
        levels.push_back(level);
    }
    if (levels.empty() && readings.currentPstate < kPstateCount) {
        PerfLevel level;
        level.id = readings.currentPstate;
        level.gpuClockMhz = float(readings.currentGpuMhz);
        level.memClockMhz = float(readings.currentMemMhz);
        levels.push_back(level);
    }
    return levels;
}

NvidiaPstateReadings readNvidiaPstates(const NvmlLibrary& nvml, nvmlDevice_t device) {
    NvidiaPstateReadings readings;
    if (nvml.deviceGetSupportedPerformanceStates && nvml.deviceGetMinMaxClockOfPState) {
        // Room for every P-state there is; a driver that says its list does not fit is not believed.
        nvmlPstates_t listed[NVML_MAX_GPU_PERF_PSTATES];
        std::fill(std::begin(listed), std::end(listed), NVML_PSTATE_UNKNOWN);
        if (nvml.deviceGetSupportedPerformanceStates(device, listed, unsigned(sizeof listed)) == NVML_SUCCESS)
            for (uint32_t id : nvidiaPstateIds(listed, std::size(listed)))
                if (const auto clocks = readPstateClocks(nvml, device, id)) readings.states.push_back(*clocks);
    }
    if (readings.states.empty()) readCurrentState(nvml, device, readings);
    return readings;
}

}  // namespace Kalidornm
