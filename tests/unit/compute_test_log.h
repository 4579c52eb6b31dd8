#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "app/app_log.h"

// A log file of the test's own, read back as messages without their date prefix.
class TestLog {
public:
    TestLog()
        : m_path(std::filesystem::temp_directory_path() /
                 ("compute_log_" + std::to_string(getpid()) + "_" +
                  ::testing::UnitTest::GetInstance()->current_test_info()->name() + ".txt")),
          m_log(std::make_unique<AppLog>(m_path.c_str())) {}
    ~TestLog() { std::filesystem::remove(m_path); }

    AppLog& log() { return *m_log; }
    // Starts the file afresh.
    void clear() {
        m_log.reset();
        m_log = std::make_unique<AppLog>(m_path.c_str());
    }

    std::vector<std::string> messages() const {
        std::ifstream in(m_path);
        std::vector<std::string> lines;
        for (std::string line; std::getline(in, line);) {
            const size_t at = line.find(" >> ");
            lines.push_back(at == std::string::npos ? line : line.substr(at + 4));
        }
        return lines;
    }

private:
    std::filesystem::path m_path;
    std::unique_ptr<AppLog> m_log;
};
