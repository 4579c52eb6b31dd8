#include "platform/process_name.h"

#include <cstdio>
#include <cstring>
#include <memory>

namespace Kalidornm {

bool readProcessName(const std::string& rootDir, uint32_t pid, char* name, size_t size) {
    if (!name || size == 0) return false;
    name[0] = '\0';
    std::string path = rootDir;
    if (path.empty() || path.back() != '/') path += '/';
    path += "proc/" + std::to_string(pid) + "/comm";
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "r"), &std::fclose);
    if (!file) return false;
    if (!std::fgets(name, int(size), file.get())) {
        name[0] = '\0';
        return false;
    }
    name[std::strcspn(name, "\n")] = '\0';
    return true;
}

}  // namespace Kalidornm
