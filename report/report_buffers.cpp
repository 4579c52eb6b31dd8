#include "report/report_buffers.h"

#include <cstdio>

namespace report {

void appendFormatted(std::string& out, const char* format, va_list args) {
    va_list measure;
    va_copy(measure, args);
    const int length = std::vsnprintf(nullptr, 0, format, measure);
    va_end(measure);
    if (length <= 0) return;
    const size_t start = out.size();
    out.resize(start + size_t(length) + 1);  // vsnprintf writes the terminating zero too
    std::vsnprintf(out.data() + start, size_t(length) + 1, format, args);
    out.resize(start + size_t(length));
}

void addReportLine(ReportBuffers& b, const char* format, ...) {
    std::string line;
    va_list args;
    va_start(args, format);
    appendFormatted(line, format, args);
    va_end(args);
    b.displayText += line;
    b.displayText += "\r\n";
    b.fileText += line;
    b.fileText += '\n';
}

void addReportXml(ReportBuffers& b, const char* format, ...) {
    va_list args;
    va_start(args, format);
    appendFormatted(b.xmlBody, format, args);
    va_end(args);
}

}  // namespace report
