#include "kalidor/platform/process_name.h"

#include <algorithm>
#include <cstring>

#include "kalidor/platform/sources.h"
#include "kalidor/platform/sysfs_files.h"
#include "kalidor/platform/sysfs_values.h"

namespace Kalidornm {

bool readProcessName(const std::string& rootDir, uint32_t pid, char* name, size_t size) {
    if (!name || size == 0) return false;
    name[0] = '\0';
    const auto text = readSmallFile(underRoot(rootDir, "/proc/" + std::to_string(pid) + "/comm"));
    if (!text) return false;
    const std::string_view line = firstLineOf(*text);
    const size_t kept = std::min(line.size(), size - 1);
    std::memcpy(name, line.data(), kept);
    name[kept] = '\0';
    return true;
}

}  // namespace Kalidornm
