#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Kalidornm {

// What /proc, /sys and /etc tell about the processor, memory and operating system.
struct LinuxSystemFacts {
    std::string cpuModelName;  // first "model name" of /proc/cpuinfo, "" when absent
    uint64_t memTotalKb = 0;
    uint64_t installedMemoryBytes = 0;  // online memory blocks times their size; 0 when not offered
    int32_t onlineCpus = 0;
    std::string prettyName;     // PRETTY_NAME of os-release
    std::string kernelRelease;  // "6.1.0-18-amd64"
    std::string machine;        // "x86_64"
};

LinuxSystemFacts readLinuxSystemFacts(const std::string& rootDir);

// Used memory in percent of the total, from MemTotal and MemAvailable; 0 when unreadable.
uint32_t readMemoryLoadPercent(const std::string& rootDir);

// The value assigned to `key` in the text of an os-release file, with its shell quoting and escapes undone
// (\" \\ \$ \` inside double quotes); the last assignment wins. nullopt when the key is not assigned.
std::optional<std::string> osReleaseValue(const std::string& text, const std::string& key);

// Counts the processors of a kernel CPU list such as "0-3,8,10-11"; 0 for text that is no such list.
int32_t countCpuList(const std::string& list);

}  // namespace Kalidornm
