#include "report/report_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <string>

namespace report {

namespace {

constexpr int kTemporaryNameTries = 100;

void setError(int* error, int value) {
    if (error) *error = value;
}

// A name beside the target that no other writer uses: hidden, with the process id and a counter, so two
// exports of one process and two processes in one directory never meet. O_EXCL makes sure of it.
std::string temporaryNameFor(const std::string& path, unsigned serial) {
    const size_t slash = path.rfind('/');
    const std::string directory = slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
    const std::string base = slash == std::string::npos ? path : path.substr(slash + 1);
    return directory + "." + base + "." + std::to_string(getpid()) + "." + std::to_string(serial) + ".tmp";
}

// Opens a fresh temporary file with mode 0666 less the umask, as a plain fopen of the target would have.
int createTemporaryFile(const std::string& path, std::string& temporaryPath, int* error) {
    static std::atomic<unsigned> serial{0};
    for (int attempt = 0; attempt < kTemporaryNameTries; ++attempt) {
        temporaryPath = temporaryNameFor(path, serial++);
        const int fd = ::open(temporaryPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0) return fd;
        if (errno != EEXIST) break;
    }
    setError(error, errno);
    return -1;
}

}  // namespace

bool writeWholeText(int fd, std::string_view content, int* error) {
    while (!content.empty()) {
        const ssize_t written = ::write(fd, content.data(), content.size());
        if (written < 0) {
            if (errno == EINTR) continue;
            setError(error, errno);
            return false;
        }
        if (written == 0) {  // no progress and no reason given: treat as a full device
            setError(error, ENOSPC);
            return false;
        }
        content.remove_prefix(size_t(written));
    }
    return true;
}

bool writeReportFile(const char* path, std::string_view content, int* error) {
    if (!path || !*path) {
        setError(error, EINVAL);
        return false;
    }
    const std::string target = path;
    std::string temporaryPath;
    const int fd = createTemporaryFile(target, temporaryPath, error);
    if (fd < 0) return false;

    struct stat existing {};
    if (::lstat(target.c_str(), &existing) == 0 && S_ISREG(existing.st_mode))
        ::fchmod(fd, existing.st_mode & 07777);

    int failure = 0;
    const bool written = writeWholeText(fd, content, &failure);
    // EINVAL: a file system that has nothing to sync.
    if (written && ::fsync(fd) != 0 && errno != EINVAL) failure = errno;
    if (::close(fd) != 0 && failure == 0 && errno != EINTR) failure = errno;
    if (failure == 0 && std::rename(temporaryPath.c_str(), target.c_str()) != 0) failure = errno;
    if (failure != 0) {
        ::unlink(temporaryPath.c_str());
        setError(error, failure);
        return false;
    }
    return true;
}

}  // namespace report
