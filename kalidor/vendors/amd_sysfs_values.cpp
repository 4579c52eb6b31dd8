#include "kalidor/vendors/amd_sysfs_values.h"

#include <cctype>
#include <limits>

#include "kalidor/platform/sysfs_values.h"

namespace Kalidornm {

namespace {

// Digits only, no sign; nullopt on overflow or no digit.
std::optional<uint64_t> parseDigits(std::string_view digits) {
    if (digits.empty()) return std::nullopt;
    uint64_t value = 0;
    for (char c : digits) {
        if (!std::isdigit(static_cast<unsigned char>(c))) return std::nullopt;
        const uint64_t digit = uint64_t(c - '0');
        if (value > (std::numeric_limits<uint64_t>::max() - digit) / 10) return std::nullopt;
        value = value * 10 + digit;
    }
    return value;
}

}  // namespace

std::optional<std::vector<DpmLevel>> parseDpmTable(std::string_view text) {
    std::vector<DpmLevel> table;
    while (!text.empty()) {
        const size_t end = text.find('\n');
        std::string_view line = trimmedText(text.substr(0, end));
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (line.empty()) continue;

        const size_t colon = line.find(':');
        if (colon == std::string_view::npos) return std::nullopt;
        if (!parseDigits(trimmedText(line.substr(0, colon)))) continue;  // "S: 19Mhz": not a level

        std::string_view rest = trimmedText(line.substr(colon + 1));
        DpmLevel level;
        if (!rest.empty() && rest.back() == '*') {
            level.current = true;
            rest = trimmedText(rest.substr(0, rest.size() - 1));
        }
        // The driver writes "Mhz"; accept any case of it.
        if (rest.size() < 4) return std::nullopt;
        const std::string_view unit = rest.substr(rest.size() - 3);
        if (std::tolower(static_cast<unsigned char>(unit[0])) != 'm' ||
            std::tolower(static_cast<unsigned char>(unit[1])) != 'h' ||
            std::tolower(static_cast<unsigned char>(unit[2])) != 'z')
            return std::nullopt;
        const std::optional<uint64_t> mhz = parseDigits(rest.substr(0, rest.size() - 3));
        if (!mhz || *mhz > 100000) return std::nullopt;
        level.mhz = float(*mhz);
        table.push_back(level);
    }
    if (table.empty()) return std::nullopt;
    return table;
}

std::optional<uint32_t> currentDpmLevel(const std::vector<DpmLevel>& table) {
    for (size_t i = 0; i < table.size(); ++i)
        if (table[i].current) return uint32_t(i);
    return std::nullopt;
}

}  // namespace Kalidornm
