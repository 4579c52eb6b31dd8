#pragma once

// Drives a program's window on an X server from outside, as a user would: finds it by title, presses keys in
// it and takes pictures of it. For tests and benchmarks that run under xvfb-run.
// Xlib defines macros (Status, None, Bool) that clash with other libraries' headers: include this last.
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

// A picture of a window, one 0xRRGGBB word per pixel, row by row.
struct WindowPicture {
    int width = 0, height = 0;
    std::vector<uint32_t> rgb;
};

class X11WindowDriver {
public:
    // Windows come and go while they are looked at; a request about one that just went is not an error here.
    X11WindowDriver() : m_display(XOpenDisplay(nullptr)) {
        XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    }
    ~X11WindowDriver() {
        if (m_display) XCloseDisplay(m_display);
    }
    X11WindowDriver(const X11WindowDriver&) = delete;
    X11WindowDriver& operator=(const X11WindowDriver&) = delete;

    bool connected() const { return m_display != nullptr; }

    Display* display() const { return m_display; }

    // A mapped top-level window whose title is `title`, or 0.
    Window findWindow(const std::string& title) {
        return findWindowWhere([&](const std::string& name) { return name == title; });
    }

    // A mapped top-level window whose title passes `wanted`, or 0.
    Window findWindowWhere(const std::function<bool(const std::string&)>& wanted) {
        Window root = 0, parent = 0, *children = nullptr;
        unsigned count = 0;
        if (!XQueryTree(m_display, DefaultRootWindow(m_display), &root, &parent, &children, &count)) return 0;
        Window found = 0;
        for (unsigned i = 0; i < count && !found; ++i)
            if (viewable(children[i]) && wanted(titleOf(children[i]))) found = children[i];
        if (children) XFree(children);
        return found;
    }

    Window waitForWindow(const std::string& title, std::chrono::milliseconds timeout,
                         std::chrono::milliseconds poll = std::chrono::milliseconds(5)) {
        return waitForWindowWhere([&](const std::string& name) { return name == title; }, timeout, poll);
    }

    Window waitForWindowWhere(const std::function<bool(const std::string&)>& wanted, std::chrono::milliseconds timeout,
                              std::chrono::milliseconds poll = std::chrono::milliseconds(5)) {
        const auto end = std::chrono::steady_clock::now() + timeout;
        while (std::chrono::steady_clock::now() < end) {
            if (Window window = findWindowWhere(wanted)) return window;
            std::this_thread::sleep_for(poll);
        }
        return 0;
    }

    // The title of a window, "" when it has none or is gone.
    std::string title(Window window) { return titleOf(window); }

    // What a window manager sends when the user presses the window's close box.
    void pressCloseBox(Window window) {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window;
        event.xclient.message_type = XInternAtom(m_display, "WM_PROTOCOLS", False);
        event.xclient.format = 32;
        event.xclient.data.l[0] = long(XInternAtom(m_display, "WM_DELETE_WINDOW", False));
        XSendEvent(m_display, window, False, NoEventMask, &event);
        XFlush(m_display);
    }

    // A key press and release sent to the window, with `modifiers` (ControlMask, ShiftMask) held.
    void pressKey(Window window, KeySym key, unsigned modifiers = 0) {
        XSetInputFocus(m_display, window, RevertToParent, CurrentTime);
        XKeyEvent event{};
        event.display = m_display;
        event.window = window;
        event.root = DefaultRootWindow(m_display);
        event.subwindow = None;
        event.time = CurrentTime;
        event.same_screen = True;
        event.state = modifiers;
        event.keycode = XKeysymToKeycode(m_display, key);
        event.type = KeyPress;
        XSendEvent(m_display, window, True, KeyPressMask, reinterpret_cast<XEvent*>(&event));
        event.type = KeyRelease;
        XSendEvent(m_display, window, True, KeyReleaseMask, reinterpret_cast<XEvent*>(&event));
        XFlush(m_display);
    }

    // A left click at (x, y) of the window, through the server's input as a real pointer would make it.
    void click(Window window, int x, int y) {
        int rootX = 0, rootY = 0;
        Window child = 0;
        XTranslateCoordinates(m_display, window, DefaultRootWindow(m_display), x, y, &rootX, &rootY, &child);
        XTestFakeMotionEvent(m_display, -1, rootX, rootY, CurrentTime);
        XTestFakeButtonEvent(m_display, 1, True, CurrentTime);
        XTestFakeButtonEvent(m_display, 1, False, CurrentTime);
        XFlush(m_display);
    }

    // The window's size in pixels; 0 by 0 when it is gone.
    std::pair<int, int> size(Window window) {
        XWindowAttributes attributes{};
        if (!XGetWindowAttributes(m_display, window, &attributes)) return {0, 0};
        return {attributes.width, attributes.height};
    }

    WindowPicture grab(Window window) {
        WindowPicture picture;
        XWindowAttributes attributes{};
        if (!XGetWindowAttributes(m_display, window, &attributes)) return picture;
        XImage* image = XGetImage(m_display, window, 0, 0, unsigned(attributes.width), unsigned(attributes.height),
                                  AllPlanes, ZPixmap);
        if (!image) return picture;
        picture.width = attributes.width;
        picture.height = attributes.height;
        picture.rgb.reserve(size_t(picture.width) * size_t(picture.height));
        for (int y = 0; y < attributes.height; ++y)
            for (int x = 0; x < attributes.width; ++x) {
                const unsigned long pixel = XGetPixel(image, x, y);
                picture.rgb.push_back(uint32_t(channel(pixel, image->red_mask) << 16 |
                                               channel(pixel, image->green_mask) << 8 | channel(pixel, image->blue_mask)));
            }
        XDestroyImage(image);
        return picture;
    }

private:
    static unsigned long channel(unsigned long pixel, unsigned long mask) {
        if (!mask) return 0;
        int shift = 0;
        while (!((mask >> shift) & 1)) ++shift;
        const unsigned long value = (pixel & mask) >> shift;
        const unsigned long max = mask >> shift;
        return value * 255 / max;
    }

    bool viewable(Window window) {
        XWindowAttributes attributes{};
        return XGetWindowAttributes(m_display, window, &attributes) && attributes.map_state == IsViewable;
    }

    std::string titleOf(Window window) {
        const Atom netName = XInternAtom(m_display, "_NET_WM_NAME", False);
        const Atom utf8 = XInternAtom(m_display, "UTF8_STRING", False);
        Atom type = 0;
        int format = 0;
        unsigned long items = 0, after = 0;
        unsigned char* data = nullptr;
        std::string title;
        if (XGetWindowProperty(m_display, window, netName, 0, 1024, False, utf8, &type, &format, &items, &after,
                               &data) == Success &&
            data) {
            title.assign(reinterpret_cast<const char*>(data), items);
            XFree(data);
        }
        if (title.empty()) {
            char* name = nullptr;
            if (XFetchName(m_display, window, &name) && name) {
                title = name;
                XFree(name);
            }
        }
        return title;
    }

    Display* m_display;
};
