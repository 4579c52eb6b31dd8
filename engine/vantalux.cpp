#include "vantalux.h"

#include <cstdarg>
#include <cstdio>

namespace Vantalux_nsp {

vxTraceMgr* vxTraceMgr::getInstance() {
    static vxTraceMgr instance;
    return &instance;
}

void vxTraceMgr::logTrace(int level, const char* format, ...) {
    if (!m_enabled) return;
    char text[4096];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    std::lock_guard<std::mutex> guard(m_linesLock);
    m_lines.push_back(std::to_string(level) + ": " + text);
    if (m_lines.size() > kKeptLines) m_lines.pop_front();
}

std::deque<std::string> vxTraceMgr::recentLines() const {
    std::lock_guard<std::mutex> guard(m_linesLock);
    return m_lines;
}

uint32_t vxKma::genId() {
    static std::atomic<uint32_t> next{0};
    return ++next;
}

Vantalux* Vantalux::getInstance() {
    static Vantalux instance;
    return &instance;
}

bool Vantalux::startup(int glMajorVersion, int glMinorVersion, void*) {
    m_glMajor = glMajorVersion;
    m_glMinor = glMinorVersion;
    m_started = true;
    return true;
}

void Vantalux::shutdown(void*) { m_started = false; }

}  // namespace Vantalux_nsp
