#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace Kalidornm {

// Parsers for the tables the amdgpu driver writes into its sysfs attributes; plain numbers go through the
// platform's sysfs parsers. Anything that is not exactly what the driver writes gives nullopt, never a guess.

// One line of a DPM table ("1: 2475Mhz *").
struct DpmLevel {
    float mhz = 0.0f;
    bool current = false;
};

// The lines of pp_dpm_sclk or pp_dpm_mclk in file order. Lines without a numeric level index (the "S:"
// sleep line of some chips) are left out. nullopt if no line parses or a numbered line is malformed.
std::optional<std::vector<DpmLevel>> parseDpmTable(std::string_view text);

// Position of the line marked '*' in a parsed table, nullopt when none is marked.
std::optional<uint32_t> currentDpmLevel(const std::vector<DpmLevel>& table);

}  // namespace Kalidornm
