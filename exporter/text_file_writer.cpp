#include "exporter/text_file_writer.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

namespace exporter {

namespace {

// Closes the descriptor and removes the temporary file unless it was renamed into place.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& target) : m_name(target + ".XXXXXX") {
        std::vector<char> pattern(m_name.begin(), m_name.end());
        pattern.push_back('\0');
        m_fd = mkstemp(pattern.data());
        m_created = m_fd >= 0;
        m_name = pattern.data();
    }
    ~TemporaryFile() {
        if (m_fd >= 0) close(m_fd);
        if (!m_renamed && m_created) unlink(m_name.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    int fd() const { return m_fd; }
    const std::string& name() const { return m_name; }
    bool closeFile() {
        const int fd = m_fd;
        m_fd = -1;
        return close(fd) == 0;
    }
    void renamed() { m_renamed = true; }

private:
    std::string m_name;
    int m_fd = -1;
    bool m_renamed = false;
    bool m_created = false;
};

bool fail(std::string* error, const std::string& what, const std::string& path) {
    if (error) *error = what + " " + path + ": " + std::strerror(errno);
    return false;
}

}  // namespace

bool writeTextFileAtomically(const std::string& path, const std::string& text, std::string* error) {
    TemporaryFile temporary(path);
    if (temporary.fd() < 0) return fail(error, "could not create a temporary file beside", path);
    size_t written = 0;
    while (written < text.size()) {
        const ssize_t n = write(temporary.fd(), text.data() + written, text.size() - written);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return fail(error, "could not write", temporary.name());
        written += size_t(n);
    }
    if (fchmod(temporary.fd(), 0644) != 0 || fsync(temporary.fd()) != 0)
        return fail(error, "could not write", temporary.name());
    if (!temporary.closeFile()) return fail(error, "could not write", temporary.name());
    if (std::rename(temporary.name().c_str(), path.c_str()) != 0) return fail(error, "could not replace", path);
    temporary.renamed();
    return true;
}

}  // namespace exporter
