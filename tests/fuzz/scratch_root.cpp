#include "tests/fuzz/scratch_root.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

namespace fs = std::filesystem;

namespace {

// Every input rewrites a small tree: in memory (/dev/shm) that runs some forty times faster than on a disk.
std::string scratchParent() {
    if (access("/dev/shm", W_OK) == 0) return "/dev/shm";
    const char* tmp = std::getenv("TMPDIR");
    return tmp && *tmp ? tmp : "/tmp";
}

}  // namespace

ScratchRoot::ScratchRoot() {
    std::string pattern = scratchParent() + "/lumenscope-fuzz-XXXXXX";
    if (mkdtemp(pattern.data())) m_path = pattern;
    // Without a scratch directory nothing can be replayed: stopping beats fuzzing the real machine's files.
    if (m_path.empty()) std::abort();
}

ScratchRoot::~ScratchRoot() {
    std::error_code error;
    fs::remove_all(m_path, error);
}

void ScratchRoot::clear() {
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(m_path, error)) fs::remove_all(entry.path(), error);
}

bool ScratchRoot::write(const std::string& relative, std::string_view text) {
    const fs::path file = fs::path(m_path) / relative;
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(text.data(), std::streamsize(text.size()));
    return bool(out);
}

bool ScratchRoot::link(const std::string& relative, const std::string& target) {
    const fs::path file = fs::path(m_path) / relative;
    std::error_code error;
    fs::create_directories(file.parent_path(), error);
    return symlink(target.c_str(), file.c_str()) == 0;
}

std::string ScratchRoot::element(std::string_view text, const char* fallback) {
    if (text.empty() || text == "." || text == ".." || text.size() > 200 || text.find('/') != std::string_view::npos)
        return fallback;
    return std::string(text);
}
