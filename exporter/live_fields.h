#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <span>

#include "kalidor/machine_snapshot.h"

// The single-valued live readings of a GPU, named and ordered as report.json's `live` block has them, one
// row per reading; the requested clock, which the report does not show, follows the actual one. Readings by
// name (temperatures by sensor, voltages by rail) and the throttle reasons are not rows:
// their outputs give them columns or labels of their own.
namespace exporter {

struct LiveField {
    const char* key;
    // The reading as a JSON number, null when the GPU did not give it.
    nlohmann::ordered_json (*value)(const Kalidornm::LiveSample& live);
};

std::span<const LiveField> liveFields();

// A single-precision reading as the shortest decimal that reads back to it (472.14, not 472.1400146484375),
// as report.json writes it.
double shortestDouble(float value);

inline constexpr const char* kTemperaturesKey = "temperatures_c";
inline constexpr const char* kVoltagesKey = "voltages_v";
inline constexpr const char* kThrottleReasonsKey = "throttle_reasons";

}  // namespace exporter
