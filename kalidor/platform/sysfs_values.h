#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace Kalidornm {

// The checked parsers of what the kernel writes into sysfs and /proc files. Anything that is not exactly
// what the kernel writes (empty, garbage, out of range) gives nullopt, never a guess.

// The text without surrounding blanks and line ends.
std::string_view trimmedText(std::string_view text);

// The first line, trimmed.
std::string_view firstLineOf(std::string_view text);

// One decimal integer, optionally signed, with surrounding blanks and a trailing newline allowed.
std::optional<int64_t> parseSysfsInteger(std::string_view text);

// Same, but the value must lie within [low, high].
std::optional<int64_t> parseSysfsInteger(std::string_view text, int64_t low, int64_t high);

// An unsigned decimal no greater than `high` ("17163091968" for mem_info_vram_total); a sign is refused.
std::optional<uint64_t> parseSysfsUnsigned(std::string_view text, uint64_t high);

// A hex number as the PCI attributes write it ("0x10de", the "0x" optional), no greater than `high`.
std::optional<uint32_t> parseSysfsHex(std::string_view text, uint32_t high);

// The value of "KEY=value" in a uevent text; "" when the key is missing.
std::string ueventValue(std::string_view uevent, std::string_view key);

}  // namespace Kalidornm
