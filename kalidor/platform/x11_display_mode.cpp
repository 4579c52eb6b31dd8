#include "kalidor/platform/x11_display_mode.h"

#include <cstdlib>

#include "base/dynamic_library.h"

namespace Kalidornm {

namespace {

// The few Xlib and XRandR calls used, declared from their public documentation; the libraries are opened at
// run time so that the program runs where X is not installed.
struct XDisplayHandle;
struct XRRScreenConfiguration;
using XWindow = unsigned long;
using XOpenDisplayFn = XDisplayHandle*(const char* name);
using XCloseDisplayFn = int(XDisplayHandle*);
using XDefaultScreenFn = int(XDisplayHandle*);
using XScreenValueFn = int(XDisplayHandle*, int screen);  // XDisplayWidth, XDisplayHeight (pixels), XDefaultDepth
using XRootWindowFn = XWindow(XDisplayHandle*, int screen);
using XRRGetScreenInfoFn = XRRScreenConfiguration*(XDisplayHandle*, XWindow);
using XRRConfigCurrentRateFn = short(XRRScreenConfiguration*);  // Hz
using XRRFreeScreenConfigInfoFn = void(XRRScreenConfiguration*);

}  // namespace

DisplayMode readCurrentDisplayMode() {
    DisplayMode mode;
    const char* displayName = std::getenv("DISPLAY");
    if (!displayName || !*displayName) return mode;
    base::DynamicLibrary x11("libX11.so.6");
    auto openDisplay = x11.function<XOpenDisplayFn>("XOpenDisplay");
    auto closeDisplay = x11.function<XCloseDisplayFn>("XCloseDisplay");
    auto defaultScreen = x11.function<XDefaultScreenFn>("XDefaultScreen");
    auto displayWidth = x11.function<XScreenValueFn>("XDisplayWidth");
    auto displayHeight = x11.function<XScreenValueFn>("XDisplayHeight");
    auto defaultDepth = x11.function<XScreenValueFn>("XDefaultDepth");
    auto rootWindow = x11.function<XRootWindowFn>("XRootWindow");
    if (!openDisplay || !closeDisplay || !defaultScreen || !displayWidth || !displayHeight || !defaultDepth ||
        !rootWindow)
        return mode;
    XDisplayHandle* display = openDisplay(nullptr);
    if (!display) return mode;
    const int screen = defaultScreen(display);
    mode.width = uint32_t(displayWidth(display, screen));
    mode.height = uint32_t(displayHeight(display, screen));
    mode.bitsPerPixel = uint32_t(defaultDepth(display, screen));

    // The refresh rate is optional: without XRandR it stays 0.
    base::DynamicLibrary xrandr("libXrandr.so.2");
    auto getScreenInfo = xrandr.function<XRRGetScreenInfoFn>("XRRGetScreenInfo");
    auto currentRate = xrandr.function<XRRConfigCurrentRateFn>("XRRConfigCurrentRate");
    auto freeScreenInfo = xrandr.function<XRRFreeScreenConfigInfoFn>("XRRFreeScreenConfigInfo");
    if (getScreenInfo && currentRate && freeScreenInfo) {
        if (XRRScreenConfiguration* config = getScreenInfo(display, rootWindow(display, screen))) {
            const short rate = currentRate(config);
            mode.refreshHz = rate > 0 ? uint32_t(rate) : 0;
            freeScreenInfo(config);
        }
    }
    closeDisplay(display);
    return mode;
}

}  // namespace Kalidornm
