#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace base {

// Where a layer's messages go. The program installs its log file; tests install a recording sink; until
// one is installed every line is dropped.
class LogSink {
public:
    virtual ~LogSink() = default;
    // One message, without line end or time prefix; the sink adds what its medium needs.
    virtual void writeLine(std::string_view line) = 0;
};

// Lines kept back, to be written later where they belong in the log's order.
class HeldLines final : public LogSink {
public:
    void writeLine(std::string_view line) override { m_lines.emplace_back(line); }
    // Writes every held line to `sink` in order and forgets them.
    void passTo(LogSink& sink);

private:
    std::vector<std::string> m_lines;
};

// Formats a message as printf does, cut at 32 KiB, and hands it to `sink`.
void logTo(LogSink& sink, const char* format, ...) __attribute__((format(printf, 2, 3)));

// The program's installed sink. Safe to call from any thread; the sink itself keeps lines whole.
LogSink& programLog();
// Installs `sink` (not owned; it must outlive its installation); null restores the dropping sink.
void installProgramLog(LogSink* sink);

// Formats into the program's sink.
void logLine(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace base
