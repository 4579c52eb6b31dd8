#include "exporter/monitor_lines.h"

#include <algorithm>
#include <ctime>
#include <nlohmann/json.hpp>

#include "exporter/live_fields.h"

namespace exporter {

namespace {

using Json = nlohmann::ordered_json;
using Kalidornm::GpuSnapshot;
using Kalidornm::NamedReading;

// `known` names in their list's order, then the others in the order first met.
template <size_t N>
std::vector<std::string> inListOrder(const std::vector<std::string>& met, const char* const (&known)[N]) {
    std::vector<std::string> ordered;
    for (const char* name : known)
        if (std::find(met.begin(), met.end(), name) != met.end()) ordered.emplace_back(name);
    for (const std::string& name : met)
        if (std::find(ordered.begin(), ordered.end(), name) == ordered.end()) ordered.push_back(name);
    return ordered;
}

void collectNames(const std::vector<NamedReading>& readings, std::vector<std::string>& names) {
    for (const NamedReading& reading : readings)
        if (std::find(names.begin(), names.end(), reading.name) == names.end()) names.push_back(reading.name);
}

const NamedReading* findReading(const std::vector<NamedReading>& readings, const std::string& name) {
    for (const NamedReading& reading : readings)
        if (reading.name == name) return &reading;
    return nullptr;
}

// RFC 4180: a cell holding a comma, a quote or a line break is quoted, its quotes doubled.
std::string csvCell(const std::string& text) {
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (char c : text) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

std::string cellOf(const Json& value) { return value.is_null() ? std::string() : value.dump(); }

std::string joinedReasons(const std::vector<std::string>& reasons) {
    std::string text;
    for (const std::string& reason : reasons) text += (text.empty() ? "" : ";") + reason;
    return text;
}

Json readingsObject(const std::vector<NamedReading>& readings) {
    Json object = Json::object();
    for (const NamedReading& reading : readings) object[reading.name] = shortestDouble(reading.value);
    return object;
}

}  // namespace

MonitorColumns monitorColumns(const Kalidornm::MachineSnapshot& machine) {
    std::vector<std::string> sensors, rails;
    for (const GpuSnapshot& gpu : machine.gpus) {
        collectNames(gpu.live.temperaturesC, sensors);
        collectNames(gpu.live.voltagesV, rails);
    }
    return {inListOrder(sensors, Kalidornm::kSensorNames), inListOrder(rails, Kalidornm::kRailNames)};
}

std::string csvHeader(const MonitorColumns& columns) {
    std::string header = "timestamp,gpu,name,suspended";
    for (const LiveField& field : liveFields()) header += std::string(",") + field.key;
    for (const std::string& sensor : columns.sensors) header += std::string(",") + kTemperaturesKey + "." + sensor;
    for (const std::string& rail : columns.rails) header += std::string(",") + kVoltagesKey + "." + rail;
    return header + "," + kThrottleReasonsKey + "\n";
}

std::string csvLine(const MonitorColumns& columns, const GpuSnapshot& gpu, const std::string& timestamp) {
    const Kalidornm::LiveSample& live = gpu.live;
    std::string line = timestamp + "," + csvCell(gpu.pciAddress.value_or("")) + "," +
                       csvCell(gpu.name.value_or("")) + "," + (live.suspended ? "1" : "0");
    for (const LiveField& field : liveFields()) line += "," + (live.suspended ? "" : cellOf(field.value(live)));
    for (const std::string& sensor : columns.sensors) {
        const NamedReading* reading = findReading(live.temperaturesC, sensor);
        line += "," + (reading ? Json(shortestDouble(reading->value)).dump() : std::string());
    }
    for (const std::string& rail : columns.rails) {
        const NamedReading* reading = findReading(live.voltagesV, rail);
        line += "," + (reading ? Json(shortestDouble(reading->value)).dump() : std::string());
    }
    return line + "," + csvCell(joinedReasons(live.throttleReasons)) + "\n";
}

std::string jsonLine(const GpuSnapshot& gpu, const std::string& timestamp) {
    const Kalidornm::LiveSample& live = gpu.live;
    Json object = {
        {"timestamp", timestamp},
        {"gpu", gpu.pciAddress ? Json(*gpu.pciAddress) : Json(nullptr)},
        {"name", gpu.name ? Json(*gpu.name) : Json(nullptr)},
        {"suspended", live.suspended},
    };
    for (const LiveField& field : liveFields()) object[field.key] = live.suspended ? Json(nullptr) : field.value(live);
    // As report.json writes them: an empty object or list only where the driver was read and named nothing.
    const bool read = !live.suspended;
    object[kTemperaturesKey] = read && (live.moreRead || !live.temperaturesC.empty())
                                   ? readingsObject(live.temperaturesC) : Json(nullptr);
    object[kVoltagesKey] =
        read && (live.moreRead || !live.voltagesV.empty()) ? readingsObject(live.voltagesV) : Json(nullptr);
    object[kThrottleReasonsKey] = read && (live.throttleRead || !live.throttleReasons.empty())
                                      ? Json(live.throttleReasons) : Json(nullptr);
    // Bytes that are not UTF-8 (a driver's name text) are replaced rather than failing the line.
    return object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string isoTimestamp(std::chrono::system_clock::time_point moment) {
    using namespace std::chrono;
    const auto sinceEpoch = duration_cast<milliseconds>(moment.time_since_epoch());
    const std::time_t seconds = std::time_t(sinceEpoch.count() / 1000);
    std::tm utc{};
    gmtime_r(&seconds, &utc);
    char text[40];
    const size_t length = std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &utc);
    std::snprintf(text + length, sizeof text - length, ".%03dZ", int(sinceEpoch.count() % 1000));
    return text;
}

}  // namespace exporter
