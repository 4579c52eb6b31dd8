#include "base/log_sink.h"

#include <atomic>
#include <cstdarg>
#include <algorithm>
#include <cstdio>

namespace base {
namespace {

constexpr size_t kMessageBufferSize = 32768;

class DroppingSink final : public LogSink {
public:
    void writeLine(std::string_view) override {}
};

DroppingSink gDroppingSink;
std::atomic<LogSink*> gInstalled{&gDroppingSink};

void formatTo(LogSink& sink, const char* format, va_list args) {
    char message[kMessageBufferSize];
    const int length = std::vsnprintf(message, sizeof message, format, args);
    if (length < 0) return;
    sink.writeLine(std::string_view(message, std::min<size_t>(size_t(length), sizeof message - 1)));
}

}  // namespace

void HeldLines::passTo(LogSink& sink) {
    for (const std::string& line : m_lines) sink.writeLine(line);
    m_lines.clear();
}

void logTo(LogSink& sink, const char* format, ...) {
    va_list args;
    va_start(args, format);
    formatTo(sink, format, args);
    va_end(args);
}

LogSink& programLog() { return *gInstalled.load(std::memory_order_acquire); }

void installProgramLog(LogSink* sink) { gInstalled.store(sink ? sink : &gDroppingSink, std::memory_order_release); }

void logLine(const char* format, ...) {
    va_list args;
    va_start(args, format);
    formatTo(programLog(), format, args);
    va_end(args);
}

}  // namespace base
