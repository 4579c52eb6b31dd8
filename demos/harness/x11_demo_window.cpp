#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <cstdlib>
#include <mutex>

#include "demos/harness/demo_window.h"

namespace {

Display* display(void* handle) { return static_cast<Display*>(handle); }

constexpr char kEscape = 27;

}  // namespace

void prepareDemoWindowing() {
    static std::once_flag once;
    std::call_once(once, [] { XInitThreads(); });
}

bool demoDisplayReachable() {
    const char* name = std::getenv("DISPLAY");
    if (!name || !*name) return false;
    prepareDemoWindowing();
    Display* probe = XOpenDisplay(nullptr);
    if (!probe) return false;
    XCloseDisplay(probe);
    return true;
}

std::unique_ptr<DemoWindow> DemoWindow::open(int width, int height, const char* title) {
    const char* name = std::getenv("DISPLAY");
    if (!name || !*name || width <= 0 || height <= 0) return nullptr;
    prepareDemoWindowing();
    Display* x = XOpenDisplay(nullptr);
    if (!x) return nullptr;

    const int screen = DefaultScreen(x);
    const int left = DisplayWidth(x, screen) / 2 - width / 2;
    const int top = DisplayHeight(x, screen) / 2 - height / 2;
    XSetWindowAttributes attributes{};
    // No background: the server must not clear what the context draws.
    attributes.background_pixmap = None;
    attributes.event_mask = KeyPressMask | PointerMotionMask;
    const Window window = XCreateWindow(x, RootWindow(x, screen), left, top, unsigned(width), unsigned(height), 0,
                                        CopyFromParent, InputOutput, CopyFromParent, CWBackPixmap | CWEventMask,
                                        &attributes);
    if (!window) {
        XCloseDisplay(x);
        return nullptr;
    }
    std::unique_ptr<DemoWindow> demoWindow(new DemoWindow());
    demoWindow->m_display = x;
    demoWindow->m_window = window;
    demoWindow->m_width = width;
    demoWindow->m_height = height;
    demoWindow->m_visualId = XVisualIDFromVisual(DefaultVisual(x, screen));

    Atom deleteAtom = XInternAtom(x, "WM_DELETE_WINDOW", False);
    XSetWMProtocols(x, window, &deleteAtom, 1);
    demoWindow->m_deleteAtom = deleteAtom;
    XSizeHints hints{};
    hints.flags = PPosition | PSize;
    hints.x = left, hints.y = top, hints.width = width, hints.height = height;
    XSetWMNormalHints(x, window, &hints);
    demoWindow->setTitle(title);
    XMapWindow(x, window);
    XFlush(x);
    return demoWindow;
}

DemoWindow::~DemoWindow() {
    if (!m_display) return;
    XDestroyWindow(display(m_display), m_window);
    XCloseDisplay(display(m_display));
}

NativeWindow DemoWindow::native() const { return NativeWindow{m_display, m_window, m_visualId}; }

void DemoWindow::setTitle(const char* title) {
    XStoreName(display(m_display), m_window, title ? title : "");
    XFlush(display(m_display));
}

DemoWindow::Input DemoWindow::poll() {
    Input input;
    Display* x = display(m_display);
    while (XPending(x) > 0) {
        XEvent event;
        XNextEvent(x, &event);
        switch (event.type) {
            case KeyPress: {
                char text[8] = {};
                KeySym symbol = 0;
                if (XLookupString(&event.xkey, text, sizeof text, &symbol, nullptr) > 0 && text[0] == kEscape)
                    input.closeRequested = true;
                break;
            }
            case ClientMessage:
                if (static_cast<unsigned long>(event.xclient.data.l[0]) == m_deleteAtom) input.closeRequested = true;
                break;
            case MotionNotify:
                input.pointerMoved = true;
                input.pointerX = event.xmotion.x;
                input.pointerY = event.xmotion.y;
                break;
            default: break;
        }
    }
    return input;
}
