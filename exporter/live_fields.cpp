#include "exporter/live_fields.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <nlohmann/json.hpp>

namespace exporter {

namespace {

using Json = nlohmann::ordered_json;
using Kalidornm::LiveSample;

Json number(const std::optional<float>& value) { return value ? Json(shortestDouble(*value)) : Json(nullptr); }
Json number(const std::optional<double>& value) { return value ? Json(*value) : Json(nullptr); }
template <typename Integer>
Json whole(const std::optional<Integer>& value) {
    return value ? Json(*value) : Json(nullptr);
}

constexpr auto kLiveFields = std::to_array<LiveField>({
    {"core_temperature_c", [](const LiveSample& l) { return number(l.coreTemperatureC); }},
    {"board_temperature_c", [](const LiveSample& l) { return number(l.boardTemperatureC); }},
    {"memory_temperature_c", [](const LiveSample& l) { return number(l.memoryTemperatureC); }},
    {"vrm_temperature_c", [](const LiveSample& l) { return number(l.vrmTemperatureC); }},
    {"fan_percent", [](const LiveSample& l) { return number(l.fanPercent); }},
    {"fan_rpm", [](const LiveSample& l) { return number(l.fanRpm); }},
    {"gpu_load_percent", [](const LiveSample& l) { return number(l.gpuLoadPercent); }},
    {"frame_buffer_load_percent", [](const LiveSample& l) { return number(l.frameBufferLoadPercent); }},
    {"current_pstate", [](const LiveSample& l) { return whole(l.currentPstate); }},
    {"current_gpu_clock_mhz", [](const LiveSample& l) { return number(l.currentGpuClockMhz); }},
    {"requested_gpu_clock_mhz", [](const LiveSample& l) { return number(l.requestedGpuClockMhz); }},
    {"current_memory_clock_mhz", [](const LiveSample& l) { return number(l.currentMemClockMhz); }},
    {"current_shader_clock_mhz", [](const LiveSample& l) { return number(l.currentShaderClockMhz); }},
    {"current_volts", [](const LiveSample& l) { return number(l.currentVolts); }},
    {"hotspot_temperature_c", [](const LiveSample& l) { return number(l.hotspotTemperatureC); }},
    {"power_watts", [](const LiveSample& l) { return number(l.powerWatts); }},
    {"power_limit_watts", [](const LiveSample& l) { return number(l.powerLimitWatts); }},
    {"energy_joules", [](const LiveSample& l) { return number(l.energyJoules); }},
    {"memory_used_mb", [](const LiveSample& l) { return whole(l.memoryUsedMb); }},
    {"memory_total_mb", [](const LiveSample& l) { return whole(l.memoryTotalMb); }},
});
static_assert(kLiveFields.size() == 20, "twenty single-valued live readings");

}  // namespace

std::span<const LiveField> liveFields() { return kLiveFields; }

double shortestDouble(float value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.7g", double(value));
    return std::strtod(text, nullptr);
}

}  // namespace exporter
