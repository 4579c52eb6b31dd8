#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>

// The scene-graph renderer that the engine demos draw through. This header holds its process-level calls;
// windows, scenes and drawing join it with the demos.
namespace Vantalux_nsp {

// The engine's own trace. It keeps its most recent lines in memory (a diagnostic for tests and debugging);
// the shell switches it off at start-up, after which every trace call is dropped.
class vxTraceMgr {
public:
    static constexpr size_t kKeptLines = 64;

    static vxTraceMgr* getInstance();

    void disable() { m_enabled = false; }
    void enable() { m_enabled = true; }
    bool isEnabled() const { return m_enabled; }

    void logTrace(int level, const char* format, ...) __attribute__((format(printf, 3, 4)));

    // The kept lines, oldest first, each as "level: text".
    std::deque<std::string> recentLines() const;

private:
    std::atomic<bool> m_enabled{true};
    mutable std::mutex m_linesLock;
    std::deque<std::string> m_lines;
};

// Identifiers for engine objects: a new number on every call, from any thread.
class vxKma {
public:
    static uint32_t genId();
};

class Vantalux {
public:
    static Vantalux* getInstance();

    // Readies the engine for windows of the given OpenGL version; `reserved` must be null.
    bool startup(int glMajorVersion, int glMinorVersion, void* reserved);
    void shutdown(void* reserved);

    bool isStarted() const { return m_started; }
    int glMajorVersion() const { return m_glMajor; }
    int glMinorVersion() const { return m_glMinor; }

private:
    bool m_started = false;
    int m_glMajor = 0;
    int m_glMinor = 0;
};

}  // namespace Vantalux_nsp
