#include "kalidor/platform/sysfs_files.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

#include "kalidor/platform/sources.h"
#include "kalidor/platform/sysfs_values.h"

namespace Kalidornm {

namespace {

class FileDescriptor {
public:
    explicit FileDescriptor(int fd) : m_fd(fd) {}
    ~FileDescriptor() {
        if (m_fd >= 0) ::close(m_fd);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    int get() const { return m_fd; }

private:
    int m_fd;
};

}  // namespace

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
    const FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
    if (file.get() < 0) return std::nullopt;
    struct stat info {};
    if (::fstat(file.get(), &info) != 0 || !S_ISREG(info.st_mode)) return std::nullopt;
    std::string text;
    char buffer[4096];
    while (text.size() < kSmallFileLimit) {
        const ssize_t got = ::read(file.get(), buffer, sizeof buffer);
        if (got < 0) return std::nullopt;
        if (got == 0) break;
        text.append(buffer, size_t(got));
    }
    if (text.size() > kSmallFileLimit) text.resize(kSmallFileLimit);
    return text;
}

std::optional<std::string> readFirstLine(const std::string& path) {
    const auto text = readSmallFile(path);
    if (!text) return std::nullopt;
    return std::string(firstLineOf(*text));
}

std::optional<unsigned long> readHexNumber(const std::string& path, unsigned long high) {
    const auto text = readSmallFile(path);
    if (!text) return std::nullopt;
    const auto value = parseSysfsHex(firstLineOf(*text), uint32_t(std::min<unsigned long>(high, 0xFFFFFFFFul)));
    if (!value) return std::nullopt;
    return *value;
}

std::string linkTargetName(const std::string& path) {
    char target[4096];
    const ssize_t length = ::readlink(path.c_str(), target, sizeof target - 1);
    if (length <= 0) return {};
    target[length] = '\0';
    std::string text(target);
    while (!text.empty() && text.back() == '/') text.pop_back();
    const size_t slash = text.rfind('/');
    return slash == std::string::npos ? text : text.substr(slash + 1);
}

std::vector<std::string> directoryEntries(const std::string& path) {
    std::vector<std::string> names;
    std::unique_ptr<DIR, int (*)(DIR*)> dir(::opendir(path.c_str()), ::closedir);
    if (!dir) return names;
    while (const dirent* entry = ::readdir(dir.get())) {
        const std::string name = entry->d_name;
        if (name != "." && name != "..") names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool isDirectory(const std::string& path) {
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

}  // namespace Kalidornm
