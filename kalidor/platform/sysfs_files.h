#pragma once

#include <optional>
#include <string>

namespace Kalidornm {

// The whole content of a small text file (sysfs attribute, /proc entry), or nullopt when it cannot be read.
std::optional<std::string> readSmallFile(const std::string& path);

// The first line of a file with surrounding blanks removed; nullopt when unreadable.
std::optional<std::string> readFirstLine(const std::string& path);

// A "0x1234"-style sysfs number; nullopt when unreadable or not a number.
std::optional<unsigned long> readHexNumber(const std::string& path);

// The last path element of what a symbolic link points at ("amdgpu" for .../drivers/amdgpu); "" if none.
std::string linkTargetName(const std::string& path);

}  // namespace Kalidornm
