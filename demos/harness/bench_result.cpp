#include "demos/harness/bench_result.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include "base/log_sink.h"

namespace {

std::string columnText(const std::string& text) {
    std::string clean = text;
    for (char& c : clean)
        if (c == ',' || c == '\n' || c == '\r') c = ' ';
    return clean;
}

const char* yesNo(bool value) { return value ? "YES" : "NO"; }

bool writeAll(int fd, const std::string& text) {
    size_t done = 0;
    while (done < text.size()) {
        const ssize_t n = write(fd, text.data() + done, text.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += size_t(n);
    }
    return true;
}

// The header goes into a private file first and is linked into place, which fails if another writer got
// there first: so the header is written once and always stands on the first line.
void createWithHeader(const char* path) {
    char temporary[4096];
    std::snprintf(temporary, sizeof temporary, "%s.%ld.%ld.new", path, long(getpid()), long(syscall(SYS_gettid)));
    const int fd = open(temporary, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0) return;
    const bool written = writeAll(fd, std::string(kBenchResultHeader) + "\n");
    close(fd);
    if (written && link(temporary, path) != 0 && errno != EEXIST) {
        // A file system without hard links: create the file directly, still only if it is missing.
        const int direct = open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (direct >= 0) {
            writeAll(direct, std::string(kBenchResultHeader) + "\n");
            close(direct);
        }
    }
    unlink(temporary);
}

}  // namespace

std::string formatBenchResultRow(const BenchResultValues& v) {
    std::vector<char> row(4096 + v.renderer.size() + v.driver.size() + v.clName.size() + v.clDriver.size() +
                          v.testName.size());
    const char* interop = yesNo(v.clGlInterop);
    const char* nativeSin = yesNo(v.clNativeSin);
    const char* workgroup = yesNo(v.clExplicitWorkgroupSize);
    const char* memory = v.clLocalMem ? "local mem" : "global mem";
    if (v.hasClDevice) {
        std::snprintf(row.data(), row.size(), "%s,%s,%s,%s,%d,%d,%s,%s,%d,%d,%d,%s,%s,%s,%s,%d,%d,%d,NULL",
                      columnText(v.renderer).c_str(), columnText(v.driver).c_str(), columnText(v.clName).c_str(),
                      v.clTypeCpu ? "CPU" : "GPU", int(v.clComputeUnits), int(v.clClockMhz),
                      columnText(v.clDriver).c_str(), columnText(v.testName).c_str(), v.msaa, v.width, v.height,
                      interop, nativeSin, workgroup, memory, int(v.avgFps), int(v.minFps), int(v.maxFps));
    } else {
        std::snprintf(row.data(), row.size(), "%s,%s,,,,,,%s,%d,%d,%d,%s,%s,%s,%s,%d,%d,%d,NULL",
                      columnText(v.renderer).c_str(), columnText(v.driver).c_str(), columnText(v.testName).c_str(),
                      v.msaa, v.width, v.height, interop, nativeSin, workgroup, memory, int(v.avgFps),
                      int(v.minFps), int(v.maxFps));
    }
    return row.data();
}

bool appendBenchResultRow(const char* path, const std::string& row) {
    int fd = open(path, O_WRONLY | O_APPEND | O_CLOEXEC);
    if (fd < 0 && errno == ENOENT) {
        createWithHeader(path);
        fd = open(path, O_WRONLY | O_APPEND | O_CLOEXEC);
    }
    if (fd < 0) {
        base::logLine("Benchmark result not written to %s: %s", path, std::strerror(errno));
        return false;
    }
    const bool written = writeAll(fd, row + "\n");
    const int writeError = errno;
    close(fd);
    if (!written) base::logLine("Benchmark result not written to %s: %s", path, std::strerror(writeError));
    return written;
}
