#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>

// A directory in which this process cannot create a file. Permission bits do not stop root, so a test run as
// root gets /sys instead, whose top level refuses new files to everyone.
class UnwritableDirectory {
public:
    explicit UnwritableDirectory(const std::string& tag) {
        namespace fs = std::filesystem;
        if (geteuid() == 0) {
            m_path = "/sys";
            return;
        }
        m_path = fs::temp_directory_path() / (tag + "_" + std::to_string(getpid()));
        fs::create_directories(m_path);
        fs::permissions(m_path, fs::perms::owner_read | fs::perms::owner_exec);
        m_owned = true;
    }
    ~UnwritableDirectory() {
        if (!m_owned) return;
        std::error_code ignored;
        std::filesystem::permissions(m_path, std::filesystem::perms::owner_all, ignored);
        std::filesystem::remove_all(m_path, ignored);
    }
    UnwritableDirectory(const UnwritableDirectory&) = delete;
    UnwritableDirectory& operator=(const UnwritableDirectory&) = delete;

    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
    bool m_owned = false;
};
