#include "report_buffers.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace report {

namespace {

constexpr size_t kLineScratchSize = 4096;

void append(char* buffer, size_t capacity, size_t& length, const char* text, size_t count) {
    if (!buffer || capacity == 0) return;
    const size_t room = capacity - 1 - length;
    if (count > room) count = room;
    std::memcpy(buffer + length, text, count);
    length += count;
    buffer[length] = '\0';
}

size_t formatScratch(char (&scratch)[kLineScratchSize], const char* format, va_list args) {
    const int written = std::vsnprintf(scratch, sizeof scratch, format, args);
    if (written < 0) return 0;
    return size_t(written) < sizeof scratch ? size_t(written) : sizeof scratch - 1;
}

}  // namespace

void addReportLine(ReportBuffers& b, const char* format, ...) {
    char scratch[kLineScratchSize];
    va_list args;
    va_start(args, format);
    const size_t count = formatScratch(scratch, format, args);
    va_end(args);
    append(b.displayText, b.capacity, b.displayLength, scratch, count);
    append(b.displayText, b.capacity, b.displayLength, "\r\n", 2);
    append(b.fileText, b.capacity, b.fileLength, scratch, count);
    append(b.fileText, b.capacity, b.fileLength, "\n", 1);
}

void addReportXml(ReportBuffers& b, const char* format, ...) {
    char scratch[kLineScratchSize];
    va_list args;
    va_start(args, format);
    const size_t count = formatScratch(scratch, format, args);
    va_end(args);
    append(b.xmlBody, b.capacity, b.xmlLength, scratch, count);
}

}  // namespace report
