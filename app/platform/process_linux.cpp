#include "app/platform/process.h"

#include <sys/wait.h>
#include <unistd.h>

#include <climits>

namespace lumenscope::platform {

std::string executableDirectory() {
    char path[PATH_MAX] = {};
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
    if (length <= 0) return {};
    std::string full(path, size_t(length));
    const size_t slash = full.rfind('/');
    return slash == std::string::npos ? std::string() : full.substr(0, slash + 1);
}

unsigned processorCount() {
    const long count = sysconf(_SC_NPROCESSORS_ONLN);
    return count > 0 ? unsigned(count) : 1u;
}

void openWithDesktop(const char* target) {
    // Double fork: the intermediate child exits at once, so the opener is adopted by init and never becomes a
    // zombie of ours, and we only wait for the intermediate child, which takes no time.
    const pid_t child = fork();
    if (child < 0) return;
    if (child == 0) {
        if (fork() == 0) {
            setsid();
            execlp("xdg-open", "xdg-open", target, static_cast<char*>(nullptr));
            _exit(127);
        }
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
}

}  // namespace lumenscope::platform
