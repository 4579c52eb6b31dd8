#pragma once

#include <cstdint>
#include <memory>

#include "demos/gl_utility/native_window.h"

// A demo's own top-level window on its own connection to the X server, made and used only on the demo
// thread. The thread reads the window's input each frame.
class DemoWindow {
public:
    // What arrived since the last poll.
    struct Input {
        bool closeRequested = false;  // Esc, or the close box
        bool pointerMoved = false;
        int32_t pointerX = 0, pointerY = 0;  // client coordinates of the last move
    };

    // Opens the connection and a window of that client size in the middle of the screen, titled `title`;
    // null when no X display can be reached.
    static std::unique_ptr<DemoWindow> open(int width, int height, const char* title);
    ~DemoWindow();
    DemoWindow(const DemoWindow&) = delete;
    DemoWindow& operator=(const DemoWindow&) = delete;

    NativeWindow native() const;
    void setTitle(const char* title);
    Input poll();
    int32_t clientWidth() const { return m_width; }
    int32_t clientHeight() const { return m_height; }

private:
    DemoWindow() = default;

    void* m_display = nullptr;  // Display*
    unsigned long m_window = 0;
    unsigned long m_deleteAtom = 0;
    unsigned long m_visualId = 0;
    int32_t m_width = 0, m_height = 0;
};

// Whether a demo started now would get a window: an X display can be reached.
bool demoDisplayReachable();
// Lets Xlib be used from several threads; called once, early, before any other X call of the program.
void prepareDemoWindowing();
