#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <cstring>

#include "app/panels/display_probe.h"

namespace panels {

namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

bool xServerAccepts(const std::string& display) {
    xcb_connection_t* connection = xcb_connect(display.empty() ? nullptr : display.c_str(), nullptr);
    const bool accepted = connection && xcb_connection_has_error(connection) == 0;
    if (connection) xcb_disconnect(connection);
    return accepted;
}

bool waylandCompositorAccepts(const std::string& display) {
    std::string path = display;
    if (path.empty()) return false;
    if (path[0] != '/') {
        const std::string runtimeDir = environment("XDG_RUNTIME_DIR");
        if (runtimeDir.empty()) return false;
        path = runtimeDir + "/" + path;
    }
    sockaddr_un address{};
    if (path.size() >= sizeof address.sun_path) return false;
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.c_str(), path.size());
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return false;
    const bool accepted = connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(fd);
    return accepted;
}

DisplayProbe refused(const char* variable, const std::string& value) {
    return {false, "", std::string("the display ") + variable + "=" + value + " refused the connection"};
}

}  // namespace

DisplayProbe probeDisplay() {
    const std::string asked = environment("QT_QPA_PLATFORM");
    const std::string x = environment("DISPLAY");
    const std::string wayland = environment("WAYLAND_DISPLAY");

    if (asked.rfind("xcb", 0) == 0) {
        if (x.empty()) return {false, "", "QT_QPA_PLATFORM asks for X, but DISPLAY is not set"};
        return xServerAccepts(x) ? DisplayProbe{true, "", ""} : refused("DISPLAY", x);
    }
    if (asked.rfind("wayland", 0) == 0) {
        if (wayland.empty()) return {false, "", "QT_QPA_PLATFORM asks for Wayland, but WAYLAND_DISPLAY is not set"};
        return waylandCompositorAccepts(wayland) ? DisplayProbe{true, "", ""} : refused("WAYLAND_DISPLAY", wayland);
    }
    if (!asked.empty()) return {true, "", ""};

    if (x.empty() && wayland.empty()) return {false, "", "neither DISPLAY nor WAYLAND_DISPLAY is set"};
    const bool xOk = !x.empty() && xServerAccepts(x);
    const bool waylandOk = !wayland.empty() && waylandCompositorAccepts(wayland);
    if (xOk && waylandOk) return {true, "", ""};
    if (xOk) return {true, "xcb", ""};
    if (waylandOk) return {true, "wayland", ""};
    return x.empty() ? refused("WAYLAND_DISPLAY", wayland) : refused("DISPLAY", x);
}

}  // namespace panels
