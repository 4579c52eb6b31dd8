#include "demos/harness/demo_media.h"

#include "demos/media_directory.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <system_error>

namespace {

namespace fs = std::filesystem;

fs::path runningBinaryFolder() {
    std::error_code error;
    const fs::path binary = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::path() : binary.parent_path();
}

bool isDirectory(const fs::path& path) {
    std::error_code error;
    return !path.empty() && fs::is_directory(path, error);
}

}  // namespace

std::string demoMediaDirectory() {
    const fs::path binaryFolder = runningBinaryFolder();
    if (binaryFolder.empty()) return findMediaDirectory({});
    // A folder of media beside the binary wins: that is how a copied or unpacked program carries its own.
    const fs::path beside = binaryFolder / "media";
    if (isDirectory(beside)) {
        std::string text = beside.lexically_normal().string();
        if (text.back() != '/') text += '/';
        return text;
    }
    return findMediaDirectory(binaryFolder.string() + "/");
}

std::string demoMediaPath(const char* relativeName) {
    const std::string folder = demoMediaDirectory();
    if (folder.empty() || !relativeName) return {};
    return folder + relativeName;
}

bool readDemoMediaText(const char* relativeName, std::string* text) {
    const std::string path = demoMediaPath(relativeName);
    std::error_code error;
    if (path.empty() || !text || !fs::is_regular_file(path, error)) return false;
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::ostringstream contents;
    contents << in.rdbuf();
    if (in.bad()) return false;
    *text = contents.str();
    return true;
}
