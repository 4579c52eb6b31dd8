#include "kalidor/vendors/amd_hwmon_labels.h"

#include <iterator>
#include <optional>
#include <string_view>

#include "kalidor/platform/sysfs_files.h"

namespace Kalidornm {

namespace {

// A driver's label and the name the program gives the input.
struct LabelName {
    std::string_view label;
    const char* name;
};

constexpr LabelName kTemperatureLabels[] = {{"edge", "edge"}, {"junction", "junction"}, {"mem", "memory"}};
constexpr LabelName kVoltageLabels[] = {{"vddgfx", "vddgfx"}, {"vddnb", "vddnb"}};
constexpr LabelName kClockLabels[] = {{"sclk", "sclk"}, {"mclk", "mclk"}};
static_assert(std::size(kTemperatureLabels) == 3 && std::size(kVoltageLabels) == 2 && std::size(kClockLabels) == 2);

// The drivers number temperatures and clocks from 1 and voltages from 0, and use a few channels at most.
constexpr int kChannelsLooked = 8;

template <size_t N>
const char* nameOfLabel(const std::optional<std::string>& label, const LabelName (&table)[N]) {
    if (!label) return nullptr;
    for (const LabelName& row : table)
        if (*label == row.label) return row.name;
    return nullptr;
}

// Every channel `<kind>N` (first..first+kChannelsLooked-1) whose label is in the table, in channel order.
template <size_t N>
std::vector<AmdLabelledInput> labelledInputs(const std::string& hwmonDir, const char* kind, int first,
                                             const LabelName (&table)[N]) {
    std::vector<AmdLabelledInput> inputs;
    for (int channel = first; channel < first + kChannelsLooked; ++channel) {
        const std::string stem = hwmonDir + "/" + kind + std::to_string(channel);
        if (const char* name = nameOfLabel(readFirstLine(stem + "_label"), table))
            inputs.push_back({name, stem + "_input"});
    }
    return inputs;
}

}  // namespace

AmdHwmonInputs resolveAmdHwmonInputs(const std::string& hwmonDir) {
    AmdHwmonInputs inputs;
    if (hwmonDir.empty()) return inputs;
    inputs.temperatures = labelledInputs(hwmonDir, "temp", 1, kTemperatureLabels);
    // radeon labels nothing: its one temperature is the chip's.
    if (inputs.temperatures.empty() && readFirstLine(hwmonDir + "/temp1_input"))
        inputs.temperatures.push_back({"edge", hwmonDir + "/temp1_input"});
    inputs.voltages = labelledInputs(hwmonDir, "in", 0, kVoltageLabels);
    for (const AmdLabelledInput& clock : labelledInputs(hwmonDir, "freq", 1, kClockLabels))
        (clock.name == std::string_view("sclk") ? inputs.engineClockHz : inputs.memoryClockHz) = clock.path;
    return inputs;
}

}  // namespace Kalidornm
