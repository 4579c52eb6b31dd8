#include "app/panels/active_apps_text.h"

#include <cstdio>
#include <cstring>

namespace panels {

namespace {
constexpr const char* kHeading = "Current active 3D applications:";
constexpr const char* kHint = "\n\r\n\rReal time monitoring available in Ferritewatch!";
constexpr size_t kLineBufferSize = 256;
}  // namespace

std::string activeAppsText(const std::vector<ActiveApp>& apps) {
    std::string text = kHeading;
    const size_t room = kActiveAppsTextLimit - std::strlen(kHint);
    for (const ActiveApp& app : apps) {
        char line[kLineBufferSize];
        std::snprintf(line, sizeof line, "\n\r-%s (PID: %d)", app.name.c_str(), int(app.pid));
        if (text.size() + std::strlen(line) > room) break;
        text += line;
    }
    return text + kHint;
}

}  // namespace panels
