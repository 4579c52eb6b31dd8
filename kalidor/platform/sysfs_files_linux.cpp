#include "sysfs_files.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "sources.h"

namespace Kalidornm {

std::string underRoot(const std::string& rootDir, const std::string& absolutePath) {
    std::string root = rootDir.empty() ? "/" : rootDir;
    while (root.size() > 1 && root.back() == '/') root.pop_back();
    if (root == "/") return absolutePath;
    return absolutePath.empty() || absolutePath.front() != '/' ? root + "/" + absolutePath : root + absolutePath;
}

std::string underRoot(const KalidorSources& sources, const std::string& absolutePath) {
    return underRoot(sources.rootDir, absolutePath);
}

std::optional<std::string> readSmallFile(const std::string& path) {
    std::ifstream in(path);
    if (!in) return std::nullopt;
    std::ostringstream text;
    text << in.rdbuf();
    if (in.bad()) return std::nullopt;
    return text.str();
}

std::optional<std::string> readFirstLine(const std::string& path) {
    std::ifstream in(path);
    if (!in) return std::nullopt;
    std::string line;
    std::getline(in, line);
    const size_t first = line.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return std::string();
    const size_t last = line.find_last_not_of(" \t\r\n");
    return line.substr(first, last - first + 1);
}

std::optional<unsigned long> readHexNumber(const std::string& path) {
    const auto text = readFirstLine(path);
    if (!text || text->empty()) return std::nullopt;
    char* end = nullptr;
    const unsigned long value = std::strtoul(text->c_str(), &end, 16);
    if (end == text->c_str()) return std::nullopt;
    return value;
}

std::string linkTargetName(const std::string& path) {
    char target[4096];
    const ssize_t length = readlink(path.c_str(), target, sizeof target - 1);
    if (length <= 0) return {};
    target[length] = '\0';
    std::string text(target);
    while (!text.empty() && text.back() == '/') text.pop_back();
    const size_t slash = text.rfind('/');
    return slash == std::string::npos ? text : text.substr(slash + 1);
}

}  // namespace Kalidornm
