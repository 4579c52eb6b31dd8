#include "kalidor/library_log.h"

#include <cstdarg>
#include <ctime>

namespace Kalidornm {

LibraryLog::LibraryLog(const char* fileName, bool append, bool enabled) : m_enabled(enabled) {
    if (m_enabled && fileName) m_stream = std::fopen(fileName, append ? "a" : "w");
}

LibraryLog::~LibraryLog() {
    if (m_stream) std::fclose(m_stream);
}

void LibraryLog::write(const char* format, ...) {
    if (!m_enabled || !m_stream) return;
    std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char message[kMessageBufferSize] = {};
    va_list args;
    va_start(args, format);
    std::vsnprintf(message, sizeof message, format, args);
    va_end(args);
    std::fprintf(m_stream, "%i/%i/%i @ %.2i:%.2i:%.2i >> %s\n", local.tm_year + 1900, local.tm_mon + 1,
                 local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec, message);
    std::fflush(m_stream);
}

LibraryLog& generalTrace() {
    static LibraryLog log;
    return log;
}

LibraryLog& zTrace() {
    static LibraryLog log("_z.log", false, false);
    return log;
}

LibraryLog& adlTrace() {
    static LibraryLog log("adl.log", false, false);
    return log;
}

}  // namespace Kalidornm
