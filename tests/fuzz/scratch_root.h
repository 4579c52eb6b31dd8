#pragma once

#include <string>
#include <string_view>

// A machine root in a scratch directory, for fuzz targets whose parsers read files under a root: each input
// is written as the files of one machine and the readers are pointed at it. Lives in /dev/shm (else $TMPDIR
// or /tmp) and is removed with the object.
class ScratchRoot {
public:
    ScratchRoot();
    ~ScratchRoot();
    ScratchRoot(const ScratchRoot&) = delete;
    ScratchRoot& operator=(const ScratchRoot&) = delete;

    const std::string& path() const { return m_path; }

    // Removes everything under the root, so the next input starts from an empty machine.
    void clear();
    // Writes `text` to the file at `relative` (parents created); false when it cannot.
    bool write(const std::string& relative, std::string_view text);
    // Makes `relative` a symbolic link holding `target`, as sysfs does for a device's driver.
    bool link(const std::string& relative, const std::string& target);

    // A text usable as one path element (no '/', not "." or ".."), else `fallback`.
    static std::string element(std::string_view text, const char* fallback);

private:
    std::string m_path;
};
