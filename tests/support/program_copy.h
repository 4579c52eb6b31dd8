#pragma once

#include <filesystem>
#include <string>
#include <system_error>

// The program and the modules it loads (app/desktop_module.h, app/metrics_module.h) placed in `directory`, so
// that a run from there finds them, and media, beside itself as an installed one would. Hard links where the file system
// allows, copies elsewhere. False when either could not be placed.
inline bool placeProgramIn(const std::filesystem::path& directory, const std::filesystem::path& program) {
    namespace fs = std::filesystem;
    const fs::path desktop = program.parent_path() / "lumenscope-desktop.so";
    const fs::path metrics = program.parent_path() / "lumenscope-metrics.so";
    for (const auto& [from, to] : {std::pair{program, directory / "lumenscope"},
                                   std::pair{desktop, directory / desktop.filename()},
                                   std::pair{metrics, directory / metrics.filename()}}) {
        std::error_code error;
        fs::create_hard_link(from, to, error);
        if (error) fs::copy_file(from, to, fs::copy_options::overwrite_existing, error);
        if (error) return false;
    }
    return true;
}
