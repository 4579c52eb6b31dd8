#include "kalidor/platform/proc_system.h"

#include <dirent.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <sstream>
#include <string_view>

#include "kalidor/platform/sources.h"
#include "kalidor/platform/sysfs_files.h"
#include "kalidor/platform/sysfs_values.h"

namespace Kalidornm {

namespace {

std::string trimmed(const std::string& text) {
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

// The value of the first "key<sep>value" line of a file.
std::string keyedValue(const std::string& path, const std::string& key, char separator) {
    const auto text = readSmallFile(path);
    if (!text) return {};
    std::stringstream in(*text);
    for (std::string line; std::getline(in, line);) {
        const size_t at = line.find(separator);
        if (at != std::string::npos && trimmed(line.substr(0, at)) == key) return trimmed(line.substr(at + 1));
    }
    return {};
}

uint64_t meminfoKb(const std::string& rootDir, const char* key) {
    // "32768000 kB": the number is the first word.
    const std::string value = keyedValue(underRoot(rootDir, "/proc/meminfo"), key, ':');
    return parseSysfsUnsigned(value.substr(0, value.find(' ')), UINT64_MAX >> 10).value_or(0);
}

std::string osReleasePrettyName(const std::string& rootDir) {
    for (const char* path : {"/etc/os-release", "/usr/lib/os-release"}) {
        const std::optional<std::string> text = readSmallFile(underRoot(rootDir, path));
        if (!text) continue;
        const std::string value = osReleaseValue(*text, "PRETTY_NAME").value_or("");
        if (!value.empty()) return value;
    }
    return {};
}

// One shell word as os-release(5) allows it: double quotes, in which a backslash escapes only ", \, $ and
// the backtick; single quotes, which escape nothing; and unquoted text, where a backslash takes the next
// character as it is. A quote left open runs to the end of the line.
std::string unquotedShellValue(const std::string& raw) {
    constexpr std::string_view kEscapedInDoubleQuotes = "\"\\$`";
    std::string value;
    char quote = 0;
    for (size_t i = 0; i < raw.size(); ++i) {
        const char c = raw[i];
        if (quote == '\'') {
            if (c == '\'')
                quote = 0;
            else
                value += c;
        } else if (quote == '"') {
            if (c == '"') {
                quote = 0;
            } else if (c == '\\' && i + 1 < raw.size() &&
                       kEscapedInDoubleQuotes.find(raw[i + 1]) != std::string_view::npos) {
                value += raw[++i];
            } else {
                value += c;
            }
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '\\' && i + 1 < raw.size()) {
            value += raw[++i];
        } else {
            value += c;
        }
    }
    return value;
}

// Memory the kernel manages in hot-pluggable blocks: the online ones, each block_size_bytes (hex) large.
uint64_t onlineMemoryBlockBytes(const std::string& rootDir) {
    const std::string base = underRoot(rootDir, "/sys/devices/system/memory");
    const auto blockSize = readHexNumber(base + "/block_size_bytes");
    if (!blockSize) return 0;
    std::unique_ptr<DIR, int (*)(DIR*)> dir(opendir(base.c_str()), closedir);
    if (!dir) return 0;
    uint64_t blocks = 0;
    while (dirent* entry = readdir(dir.get())) {
        const std::string name = entry->d_name;
        if (name.rfind("memory", 0) != 0 || name.size() == 6) continue;
        if (readFirstLine(base + "/" + name + "/online").value_or("1") == "1") ++blocks;
    }
    return blocks * uint64_t(*blockSize);
}

}  // namespace

std::optional<std::string> osReleaseValue(const std::string& text, const std::string& key) {
    std::optional<std::string> value;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        const size_t start = line.find_first_not_of(" \t");
        if (start == std::string::npos || line[start] == '#') continue;
        const size_t equals = line.find('=', start);
        if (equals == std::string::npos || trimmed(line.substr(start, equals - start)) != key) continue;
        // A later assignment wins, as when the file is sourced by a shell.
        value = unquotedShellValue(trimmed(line.substr(equals + 1)));
    }
    return value;
}

int32_t countCpuList(const std::string& list) {
    // The kernel numbers processors from 0 and is built for at most 8192 of them: a list with a negative
    // number or with more processors than this is not a CPU list, and counts as unread.
    constexpr long kMaxCpus = 65536;
    long count = 0;
    std::stringstream ranges(list);
    for (std::string range; std::getline(ranges, range, ',');) {
        range = trimmed(range);
        if (range.empty()) continue;
        const size_t dash = range.find('-');
        const auto first = parseSysfsUnsigned(range.substr(0, dash), uint64_t(kMaxCpus));
        const auto last = dash == std::string::npos ? first : parseSysfsUnsigned(range.substr(dash + 1), uint64_t(kMaxCpus));
        if (!first || !last) return 0;
        if (*last >= *first) count += long(*last - *first + 1);
        if (count > kMaxCpus) return 0;
    }
    return int32_t(count);
}

LinuxSystemFacts readLinuxSystemFacts(const std::string& rootDir) {
    LinuxSystemFacts facts;
    facts.cpuModelName = keyedValue(underRoot(rootDir, "/proc/cpuinfo"), "model name", ':');
    facts.memTotalKb = meminfoKb(rootDir, "MemTotal");
    facts.installedMemoryBytes = onlineMemoryBlockBytes(rootDir);
    facts.onlineCpus = countCpuList(readFirstLine(underRoot(rootDir, "/sys/devices/system/cpu/online")).value_or(""));
    if (facts.onlineCpus == 0 && underRoot(rootDir, "/") == "/") facts.onlineCpus = int32_t(sysconf(_SC_NPROCESSORS_ONLN));
    facts.prettyName = osReleasePrettyName(rootDir);

    facts.kernelRelease = readFirstLine(underRoot(rootDir, "/proc/sys/kernel/osrelease")).value_or("");
    facts.machine = readFirstLine(underRoot(rootDir, "/proc/sys/kernel/arch")).value_or("");
    utsname names{};
    if (underRoot(rootDir, "/") == "/" && uname(&names) == 0) {
        if (facts.kernelRelease.empty()) facts.kernelRelease = names.release;
        if (facts.machine.empty()) facts.machine = names.machine;
    }
    return facts;
}

uint32_t readMemoryLoadPercent(const std::string& rootDir) {
    const uint64_t total = meminfoKb(rootDir, "MemTotal");
    const uint64_t available = meminfoKb(rootDir, "MemAvailable");
    if (total == 0 || available > total) return 0;
    return uint32_t((total - available) * 100 / total);
}

}  // namespace Kalidornm
