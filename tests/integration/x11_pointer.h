#pragma once

// The pointer and the keyboard of an X server as a user works them, through the server's test extension:
// toolkits that read the pointer through the X input extension do not take events sent by other clients.
// Xlib defines macros (Status, None, Bool) that clash with other libraries' headers: include this last.
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>

// A window-relative point, moved to and clicked with `button` (1 left; 4 and 5 turn the wheel up and down).
inline void clickAt(Display* display, Window window, int x, int y, unsigned button = 1) {
    int rootX = 0, rootY = 0;
    Window child = 0;
    XTranslateCoordinates(display, window, DefaultRootWindow(display), x, y, &rootX, &rootY, &child);
    XTestFakeMotionEvent(display, -1, rootX, rootY, CurrentTime);
    XTestFakeButtonEvent(display, button, True, CurrentTime);
    XTestFakeButtonEvent(display, button, False, CurrentTime);
    XFlush(display);
}

// A key pressed and let go in the window that has the keyboard focus.
inline void typeKey(Display* display, KeySym key) {
    const KeyCode code = XKeysymToKeycode(display, key);
    XTestFakeKeyEvent(display, code, True, CurrentTime);
    XTestFakeKeyEvent(display, code, False, CurrentTime);
    XFlush(display);
}
