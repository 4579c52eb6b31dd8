#include "demos/media_directory.h"

#include <filesystem>
#include <system_error>

namespace {

namespace fs = std::filesystem;

// Both come from the build: the install layout seen from the binary's folder, and this checkout's media.
constexpr const char* kInstalledRelativeToBinary = LUMENSCOPE_MEDIA_FROM_BINARY;
constexpr const char* kSourceTreeMedia = LUMENSCOPE_SOURCE_MEDIA_DIR;

bool isDirectory(const fs::path& path) {
    std::error_code error;
    return fs::is_directory(path, error);
}

std::string withTrailingSlash(const fs::path& path) {
    std::string text = path.lexically_normal().string();
    if (text.empty() || text.back() != '/') text += '/';
    return text;
}

}  // namespace

std::string findMediaDirectory(const std::string& executableDirectory) {
    if (!executableDirectory.empty()) {
        const fs::path installed = fs::path(executableDirectory) / kInstalledRelativeToBinary;
        if (isDirectory(installed)) return withTrailingSlash(installed);
    }
    if (isDirectory(kSourceTreeMedia)) return withTrailingSlash(kSourceTreeMedia);
    return {};
}
