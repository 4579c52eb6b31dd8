#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "base/log_sink.h"

// A log of the test's own: every message kept, in order, without time prefix.
class TestLog final : public base::LogSink {
public:
    void writeLine(std::string_view line) override {
        std::lock_guard<std::mutex> guard(m_lock);
        m_lines.emplace_back(line);
    }

    base::LogSink& log() { return *this; }
    void clear() {
        std::lock_guard<std::mutex> guard(m_lock);
        m_lines.clear();
    }
    std::vector<std::string> messages() const {
        std::lock_guard<std::mutex> guard(m_lock);
        return m_lines;
    }

private:
    mutable std::mutex m_lock;
    std::vector<std::string> m_lines;
};
