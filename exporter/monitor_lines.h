#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "kalidor/machine_snapshot.h"

// The monitor's lines: one per GPU per tick, as comma-separated values under one header or as JSON Lines.
namespace exporter {

// The columns of readings by name, fixed at the first tick: every sensor and rail some GPU of the machine
// gave then, in the order of kSensorNames and kRailNames (names outside those lists after them).
struct MonitorColumns {
    std::vector<std::string> sensors, rails;
};
MonitorColumns monitorColumns(const Kalidornm::MachineSnapshot& machine);

// "timestamp,gpu,name,suspended,core_temperature_c,...,temperatures_c.edge,...,voltages_v.vddgfx,...,
// throttle_reasons" and a line feed.
std::string csvHeader(const MonitorColumns& columns);
// One GPU's line: an unknown reading, and every reading of a sleeping GPU, is an empty cell; throttle reasons
// are joined by ';'.
std::string csvLine(const MonitorColumns& columns, const Kalidornm::GpuSnapshot& gpu, const std::string& timestamp);
// One GPU's JSON object on one line: every reading, null when unknown; a sleeping GPU has "suspended": true
// and nulls.
std::string jsonLine(const Kalidornm::GpuSnapshot& gpu, const std::string& timestamp);

// "2026-11-25T05:39:10.123Z": UTC, milliseconds.
std::string isoTimestamp(std::chrono::system_clock::time_point moment);

}  // namespace exporter
