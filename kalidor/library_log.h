#pragma once

#include <cstdio>

namespace Kalidornm {

// The library's own trace logger. Every instance in this program is built disabled, so trace calls cost a
// branch and no file is ever created; the calls stay where they are for builds that switch a trace on.
class LibraryLog {
public:
    static constexpr size_t kMessageBufferSize = 4096;

    LibraryLog() = default;
    LibraryLog(const char* fileName, bool append, bool enabled);
    ~LibraryLog();
    LibraryLog(const LibraryLog&) = delete;
    LibraryLog& operator=(const LibraryLog&) = delete;

    void write(const char* format, ...) __attribute__((format(printf, 2, 3)));
    bool enabled() const { return m_enabled; }

private:
    bool m_enabled = false;
    FILE* m_stream = nullptr;
};

// The three trace instances of the library: general (start-up, scan, AMD reader), "_z" (NVIDIA reader and
// OpenGL context creation) and "adl" (AMD performance levels).
LibraryLog& generalTrace();
LibraryLog& zTrace();
LibraryLog& adlTrace();

}  // namespace Kalidornm
