#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Kalidornm {

// Every read of a sysfs, /proc or /etc file goes through these. A file is opened without blocking and read
// only if it is a regular file, so that a FIFO or device node where a value file should be (a replayed tree,
// a hostile one) can neither hang the caller nor be mistaken for a value.

inline constexpr size_t kSmallFileLimit = 1 << 20;  // bytes; /proc/cpuinfo of a large machine fits

// The whole content, at most kSmallFileLimit bytes; nullopt when it cannot be opened or is no regular file.
std::optional<std::string> readSmallFile(const std::string& path);

// The first line of a file with surrounding blanks removed; nullopt when unreadable.
std::optional<std::string> readFirstLine(const std::string& path);

// A "0x1234"-style sysfs number no greater than `high`; nullopt when unreadable or not such a number.
std::optional<unsigned long> readHexNumber(const std::string& path, unsigned long high = 0xFFFFFFFFul);

// The last path element of what a symbolic link points at ("amdgpu" for .../drivers/amdgpu); "" if none.
std::string linkTargetName(const std::string& path);

// The names in a directory, sorted, without "." and ".."; empty when it cannot be read.
std::vector<std::string> directoryEntries(const std::string& path);

// Whether a path names an existing directory (links followed).
bool isDirectory(const std::string& path);

}  // namespace Kalidornm
