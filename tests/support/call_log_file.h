#pragma once

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// The file a fake driver appends one line per call to, named to it by an environment variable: made empty in
// the test's temporary folder, and removed with the variable unset when it goes.
class CallLogFile {
public:
    CallLogFile(const char* variable, const std::string& stem)
        : m_variable(variable), m_path(::testing::TempDir() + stem + "_" + std::to_string(::getpid())) {
        std::remove(m_path.c_str());
        ::setenv(m_variable, m_path.c_str(), 1);
    }
    ~CallLogFile() {
        ::unsetenv(m_variable);
        std::remove(m_path.c_str());
    }
    CallLogFile(const CallLogFile&) = delete;
    CallLogFile& operator=(const CallLogFile&) = delete;

    std::vector<std::string> lines() const {
        std::vector<std::string> result;
        std::ifstream in(m_path);
        for (std::string line; std::getline(in, line);) result.push_back(line);
        return result;
    }

private:
    const char* m_variable;
    std::string m_path;
};
