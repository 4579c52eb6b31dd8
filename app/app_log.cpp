#include "app/app_log.h"

#include <cstdarg>
#include <ctime>

AppLog::AppLog(const char* path) { open(path); }

bool AppLog::open(const char* path) {
    std::lock_guard<std::mutex> guard(m_lineLock);
    if (m_stream) std::fclose(m_stream);
    m_stream = path ? std::fopen(path, "w") : nullptr;
    return m_stream != nullptr;
}

AppLog::~AppLog() {
    if (m_stream) std::fclose(m_stream);
}

std::string formatLogPrefix(int year, int month, int day, int hour, int minute, int second) {
    char prefix[AppLog::kPrefixBufferSize];
    std::snprintf(prefix, sizeof prefix, "%i/%i/%i @ %.2i:%.2i:%.2i >> ", year, month, day, hour, minute, second);
    return prefix;
}

void AppLog::write(const char* format, ...) {
    va_list args;
    va_start(args, format);
    writeFormatted(false, format, args);
    va_end(args);
}

void AppLog::writeLast(const char* format, ...) {
    va_list args;
    va_start(args, format);
    writeFormatted(true, format, args);
    va_end(args);
}

void AppLog::writeFormatted(bool closeAfter, const char* format, va_list args) {
    if (!m_enabled) return;

    std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    const std::string prefix = formatLogPrefix(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                                               local.tm_min, local.tm_sec);

    char message[kMessageBufferSize] = {};
    std::vsnprintf(message, sizeof message, format, args);

    std::lock_guard<std::mutex> guard(m_lineLock);
    if (!m_stream) return;
    std::fprintf(m_stream, "%s%s\n", prefix.c_str(), message);
    std::fflush(m_stream);
    if (closeAfter) {
        std::fclose(m_stream);
        m_stream = nullptr;
    }
}

AppLog& appLog() {
    static AppLog log;
    static const bool installed = (base::installProgramLog(&log), true);
    (void)installed;
    return log;
}
