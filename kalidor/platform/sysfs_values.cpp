#include "kalidor/platform/sysfs_values.h"

#include <limits>

namespace Kalidornm {

namespace {

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }

// Digits only, no sign; nullopt on overflow or no digit.
std::optional<uint64_t> parseDigits(std::string_view digits) {
    if (digits.empty()) return std::nullopt;
    uint64_t value = 0;
    for (char c : digits) {
        if (c < '0' || c > '9') return std::nullopt;
        const uint64_t digit = uint64_t(c - '0');
        if (value > (std::numeric_limits<uint64_t>::max() - digit) / 10) return std::nullopt;
        value = value * 10 + digit;
    }
    return value;
}

}  // namespace

std::string_view trimmedText(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::string_view firstLineOf(std::string_view text) {
    const size_t end = text.find_first_of("\r\n");
    return trimmedText(end == std::string_view::npos ? text : text.substr(0, end));
}

std::optional<int64_t> parseSysfsInteger(std::string_view text) {
    text = trimmedText(text);
    bool negative = false;
    if (!text.empty() && (text.front() == '-' || text.front() == '+')) {
        negative = text.front() == '-';
        text.remove_prefix(1);
    }
    const std::optional<uint64_t> magnitude = parseDigits(text);
    if (!magnitude || *magnitude > uint64_t(std::numeric_limits<int64_t>::max())) return std::nullopt;
    return negative ? -int64_t(*magnitude) : int64_t(*magnitude);
}

std::optional<int64_t> parseSysfsInteger(std::string_view text, int64_t low, int64_t high) {
    const std::optional<int64_t> value = parseSysfsInteger(text);
    if (!value || *value < low || *value > high) return std::nullopt;
    return value;
}

std::optional<uint64_t> parseSysfsUnsigned(std::string_view text, uint64_t high) {
    const std::optional<uint64_t> value = parseDigits(trimmedText(text));
    if (!value || *value > high) return std::nullopt;
    return value;
}

std::optional<uint32_t> parseSysfsHex(std::string_view text, uint32_t high) {
    text = trimmedText(text);
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) text.remove_prefix(2);
    if (text.empty() || text.size() > 8) return std::nullopt;
    uint32_t value = 0;
    for (char c : text) {
        uint32_t digit = 0;
        if (c >= '0' && c <= '9') digit = uint32_t(c - '0');
        else if (c >= 'a' && c <= 'f') digit = uint32_t(c - 'a' + 10);
        else if (c >= 'A' && c <= 'F') digit = uint32_t(c - 'A' + 10);
        else return std::nullopt;
        value = value * 16 + digit;
    }
    if (value > high) return std::nullopt;
    return value;
}

std::string ueventValue(std::string_view uevent, std::string_view key) {
    while (!uevent.empty()) {
        const size_t end = uevent.find('\n');
        const std::string_view line = uevent.substr(0, end);
        uevent.remove_prefix(end == std::string_view::npos ? uevent.size() : end + 1);
        if (line.size() > key.size() && line.substr(0, key.size()) == key && line[key.size()] == '=')
            return std::string(trimmedText(line.substr(key.size() + 1)));
    }
    return {};
}

}  // namespace Kalidornm
