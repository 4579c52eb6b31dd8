#include "exporter/metrics_text.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <optional>
#include <vector>

#include "exporter/live_fields.h"

namespace exporter {

namespace {

using Kalidornm::GpuSnapshot;
using Kalidornm::NamedReading;

constexpr double kBytesPerMb = 1024.0 * 1024.0;  // the drivers' megabytes are mebibytes
constexpr double kHertzPerMhz = 1e6;

// A sample value as the shortest decimal that reads back to it.
std::string sampleValue(double value) {
    if (std::isnan(value)) return "NaN";
    if (std::isinf(value)) return value > 0 ? "+Inf" : "-Inf";
    return nlohmann::json(value).dump();
}

std::optional<double> scaled(const std::optional<float>& value, double factor) {
    return value ? std::optional<double>(shortestDouble(*value) * factor) : std::nullopt;
}

// Percent to ratio by division: 35 / 100 is the double nearest 0.35, 35 * 0.01 is not.
std::optional<double> ratio(const std::optional<float>& percent) {
    return percent ? std::optional<double>(shortestDouble(*percent) / 100.0) : std::nullopt;
}

// The series of one family, its labels already written ("gpu=\"...\",sensor=\"edge\"").
struct Series {
    std::string labels;
    double value;
};

struct Family {
    const char* name;
    const char* type;
    const char* help;
    // Whether a sleeping GPU gives this family's series too; it gives none of its readings.
    bool sleepingToo;
    // Appends the series of one GPU; `gpu` is its escaped gpu label, already in label form.
    void (*collect)(const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out);
};

void addIfKnown(std::vector<Series>& out, const std::string& labels, const std::optional<double>& value) {
    if (value) out.push_back({labels, *value});
}

void addNamed(std::vector<Series>& out, const std::string& gpu, const char* labelName,
              const std::vector<NamedReading>& readings) {
    for (const NamedReading& reading : readings)
        out.push_back({gpu + "," + labelName + "=\"" + escapedLabelValue(reading.name) + "\"",
                       shortestDouble(reading.value)});
}

const char* vendorName(const GpuSnapshot& gpu) {
    if (!gpu.hasPciIds) return "none";
    switch (gpu.vendorId) {
        case 0x10DE: return "nvidia";
        case 0x1002: return "amd";
        case 0x8086: return "intel";
        default: return "other";
    }
}

std::string label(const char* name, const std::optional<std::string>& value) {
    return std::string(name) + "=\"" + escapedLabelValue(value.value_or("")) + "\"";
}

constexpr auto kFamilies = std::to_array<Family>({
    {"lumenscope_gpu_info", "gauge", "The GPU's identity; always 1.", true,
     [](const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out) {
         out.push_back({gpu + ",vendor=\"" + vendorName(card) + "\"," + label("name", card.name) + "," +
                            label("driver", card.driverVersion) + "," + label("vbios", card.biosVersion),
                        1.0});
     }},
    {"lumenscope_gpu_suspended", "gauge",
     "1 while the GPU sleeps; a sleeping GPU is not read, so it has no other readings.", true,
     [](const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out) {
         out.push_back({gpu, card.live.suspended ? 1.0 : 0.0});
     }},
    {"lumenscope_gpu_temperature_celsius", "gauge", "GPU temperature by sensor, in degrees Celsius.", false,
     [](const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out) {
         addNamed(out, gpu, "sensor", card.live.temperaturesC);
     }},
    {"lumenscope_gpu_fan_speed_rpm", "gauge", "GPU fan speed, in revolutions per minute.", false,
     [](const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out) {
         addIfKnown(out, gpu, scaled(card.live.fanRpm, 1.0));
     }},
    {"lumenscope_gpu_fan_speed_ratio", "gauge", "GPU fan speed as a ratio of its full speed (0 to 1).", false,
     [](const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out) {
         addIfKnown(out, gpu, ratio(card.live.fanPercent));
     }},
    {"lumenscope_gpu_utilization_ratio", "gauge", "Share of time the GPU was busy (0 to 1).", false,
     [](const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out) {
         addIfKnown(out, gpu, ratio(card.live.gpuLoadPercent));
     }},
    {"lumenscope_gpu_clock_hertz", "gauge", "GPU clock by domain, in hertz.", false,
     [](const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out) {
         addIfKnown(out, gpu + ",clock=\"graphics\"", scaled(card.live.currentGpuClockMhz, kHertzPerMhz));
         addIfKnown(out, gpu + ",clock=\"graphics_requested\"", scaled(card.live.requestedGpuClockMhz, kHertzPerMhz));
         addIfKnown(out, gpu + ",clock=\"memory\"", scaled(card.live.currentMemClockMhz, kHertzPerMhz));
     }},
    {"lumenscope_gpu_voltage_volts", "gauge", "GPU voltage by rail, in volts.", false,
     [](const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out) {
         addNamed(out, gpu, "rail", card.live.voltagesV);
     }},
    {"lumenscope_gpu_power_watts", "gauge", "Power the GPU draws, in watts.", false,
     [](const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out) {
         addIfKnown(out, gpu, scaled(card.live.powerWatts, 1.0));
     }},
    {"lumenscope_gpu_power_limit_watts", "gauge", "Power limit the driver enforces, in watts.", false,
     [](const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out) {
         addIfKnown(out, gpu, scaled(card.live.powerLimitWatts, 1.0));
     }},
    {"lumenscope_gpu_energy_joules_total", "counter",
     "Energy the GPU has used since the driver started, in joules.", false,
     [](const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out) {
         addIfKnown(out, gpu, card.live.energyJoules);
     }},
    {"lumenscope_gpu_memory_used_bytes", "gauge", "GPU memory in use, in bytes.", false,
     [](const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out) {
         if (card.live.memoryUsedMb) out.push_back({gpu, double(*card.live.memoryUsedMb) * kBytesPerMb});
     }},
    {"lumenscope_gpu_memory_total_bytes", "gauge", "GPU memory in all, in bytes.", false,
     [](const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out) {
         if (card.live.memoryTotalMb) out.push_back({gpu, double(*card.live.memoryTotalMb) * kBytesPerMb});
     }},
    {"lumenscope_gpu_throttled", "gauge", "1 for each reason the driver gives for holding the clocks down now.",
     false,
     [](const GpuSnapshot& card, const std::string& gpu, std::vector<Series>& out) {
         for (const std::string& reason : card.live.throttleReasons)
             out.push_back({gpu + ",reason=\"" + escapedLabelValue(reason) + "\"", 1.0});
     }},
});
static_assert(kFamilies.size() == 14, "the info and sleep families and twelve of live readings");

// HELP text escapes backslash and line feed only.
void appendHeader(std::string& text, const char* name, const char* type, const char* help) {
    text += std::string("# HELP ") + name + " " + help + "\n# TYPE " + name + " " + type + "\n";
}

void appendFamily(std::string& text, const char* name, const char* type, const char* help,
                  const std::vector<Series>& series) {
    if (series.empty()) return;
    appendHeader(text, name, type, help);
    for (const Series& s : series) text += std::string(name) + "{" + s.labels + "} " + sampleValue(s.value) + "\n";
}

}  // namespace

std::string escapedLabelValue(const std::string& value) {
    std::string escaped;
    escaped.reserve(value.size());
    for (char c : value) {
        if (c == '\\') escaped += "\\\\";
        else if (c == '"') escaped += "\\\"";
        else if (c == '\n') escaped += "\\n";
        else escaped += c;
    }
    return escaped;
}

std::string gpuLabel(const GpuSnapshot& gpu, size_t index) {
    return gpu.pciAddress ? *gpu.pciAddress : "index:" + std::to_string(index);
}

std::string renderMetricsText(const Kalidornm::MachineSnapshot& machine, double readSeconds) {
    std::vector<std::string> gpuLabels;
    for (size_t i = 0; i < machine.gpus.size(); ++i)
        gpuLabels.push_back("gpu=\"" + escapedLabelValue(gpuLabel(machine.gpus[i], i)) + "\"");

    std::string text;
    std::vector<Series> series;
    for (const Family& family : kFamilies) {
        series.clear();
        for (size_t i = 0; i < machine.gpus.size(); ++i)
            if (family.sleepingToo || !machine.gpus[i].live.suspended)
                family.collect(machine.gpus[i], gpuLabels[i], series);
        appendFamily(text, family.name, family.type, family.help, series);
    }
    appendHeader(text, "lumenscope_scrape_duration_seconds", "gauge",
                 "Time the newest reading of every GPU took, in seconds.");
    text += "lumenscope_scrape_duration_seconds " + sampleValue(readSeconds) + "\n";
    return text;
}

}  // namespace exporter
