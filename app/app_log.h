#pragma once

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>

#include "base/log_sink.h"

// The program's one log: a plain text file, one flushed line per write, each line prefixed with the local
// date and time. Until a file is open, and when it cannot be opened, every write is silently dropped.
class AppLog final : public base::LogSink {
public:
    static constexpr const char* kFileName = "Lumenscope_log.txt";
    static constexpr size_t kPrefixBufferSize = 128;
    static constexpr size_t kMessageBufferSize = 32768;

    // A log with no file yet: writes are dropped until open().
    AppLog() = default;
    // Opens (and truncates) the file at `path`; a relative path lands in the working directory.
    explicit AppLog(const char* path);
    ~AppLog();
    AppLog(const AppLog&) = delete;
    AppLog& operator=(const AppLog&) = delete;

    // Closes any file this log had and opens `path` afresh; false when it cannot be opened.
    bool open(const char* path);
    void write(const char* format, ...) __attribute__((format(printf, 2, 3)));
    // Writes a line and closes the file in one step: it stays the file's last line, whatever another thread
    // writes meanwhile or afterwards.
    void writeLast(const char* format, ...) __attribute__((format(printf, 2, 3)));
    // The lower layers' messages, through base::programLog().
    void writeLine(std::string_view line) override { write("%.*s", int(line.size()), line.data()); }
    bool isOpen() const { return m_stream != nullptr; }

private:
    void writeFormatted(bool closeAfter, const char* format, va_list args);

    bool m_enabled = true;
    FILE* m_stream = nullptr;
    std::mutex m_lineLock;  // keeps two threads from garbling one line
};

// Builds "Y/M/D @ hh:mm:ss >> " from broken-down local time; exposed for tests.
std::string formatLogPrefix(int year, int month, int day, int hour, int minute, int second);

// The application log. It has no file until start-up opens one, so a run that ends before start-up never
// truncates the log of the previous run. The first call installs it as the program's log sink.
AppLog& appLog();
