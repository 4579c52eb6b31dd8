// The program under a virtual X server: a demo opens its own window, which closes on Esc or on its close
// box, after which the program's main window goes on until it is closed in turn.
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <optional>
#include <string>
#include <thread>

#include "tests/demos/demo_program.h"
// Xlib's macros (Bool, None, Status) last, after everything they would clash with.
#include <X11/Xlib.h>
#include <X11/keysym.h>

namespace {

using namespace demo_program;
using namespace std::chrono_literals;

constexpr const char* kTitlePrefix = "Lumenscope - GL 3.x - Triangle of Death";

// A top-level window of the X server whose name passes `wanted`.
std::optional<Window> findWindow(Display* x, bool (*wanted)(const std::string&), std::string* name) {
    Window root = 0, parent = 0, *children = nullptr;
    unsigned count = 0;
    if (!XQueryTree(x, DefaultRootWindow(x), &root, &parent, &children, &count)) return std::nullopt;
    std::optional<Window> found;
    for (unsigned i = 0; i < count && !found; ++i) {
        char* title = nullptr;
        if (XFetchName(x, children[i], &title) && title) {
            if (wanted(title)) {
                found = children[i];
                *name = title;
            }
            XFree(title);
        }
    }
    if (children) XFree(children);
    return found;
}

std::optional<Window> waitForWindow(Display* x, bool (*wanted)(const std::string&), std::string* name) {
    for (auto until = std::chrono::steady_clock::now() + 60s; std::chrono::steady_clock::now() < until;) {
        if (auto window = findWindow(x, wanted, name)) return window;
        std::this_thread::sleep_for(50ms);
    }
    return std::nullopt;
}

void sendEscape(Display* x, Window window) {
    XEvent event{};
    event.xkey.type = KeyPress;
    event.xkey.display = x;
    event.xkey.window = window;
    event.xkey.root = DefaultRootWindow(x);
    event.xkey.keycode = XKeysymToKeycode(x, XK_Escape);
    event.xkey.same_screen = True;
    XSendEvent(x, window, True, KeyPressMask, &event);
    XFlush(x);
}

void sendCloseBox(Display* x, Window window) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(x, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = long(XInternAtom(x, "WM_DELETE_WINDOW", False));
    XSendEvent(x, window, False, NoEventMask, &event);
    XFlush(x);
}

TEST(DemoWindow, EscAndTheCloseBoxEndTheDemoWhichWritesItsRowAndTheProgramGoesOn) {
    Display* x = XOpenDisplay(nullptr);
    ASSERT_TRUE(x) << "needs an X display: run under xvfb-run";
    for (bool escape : {true, false}) {
        const ScratchDirectory dir(escape ? "window_escape" : "window_close_box");
        const pid_t program =
            start(dir, {"/start_demo_gl3_triangle", "/bench_log_results", "/no_online_check"}, false);
        // The title says how far the demo got: set-up done, then the frame rate of each second.
        std::string title;
        const auto window = waitForWindow(x, [](const std::string& name) {
            return name.rfind(kTitlePrefix, 0) == 0 && name.find("[ThreadID=") != std::string::npos;
        }, &title);
        ASSERT_TRUE(window) << "no demo window";
        const auto measured = waitForWindow(x, [](const std::string& name) {
            return name.find("FPS, OpenGL ") != std::string::npos && name.find(" Triangle - Lumenscope") != std::string::npos;
        }, &title);
        ASSERT_TRUE(measured) << "the title never showed a frame rate";
        EXPECT_EQ(*measured, *window);

        if (escape)
            sendEscape(x, *window);
        else
            sendCloseBox(x, *window);
        // The demo ends and writes its row; the main window stays until the user closes it.
        bool rowWritten = false;
        for (auto until = std::chrono::steady_clock::now() + 30s; !rowWritten && std::chrono::steady_clock::now() < until;) {
            rowWritten = readLines(dir / "bench_result.csv").size() >= 2;
            if (!rowWritten) std::this_thread::sleep_for(50ms);
        }
        EXPECT_TRUE(rowWritten) << "the demo wrote no row";
        std::string mainTitle;
        const auto mainWindow = findWindow(x, [](const std::string& n) { return n.rfind("Orbiscale Lumenscope", 0) == 0; },
                                           &mainTitle);
        ASSERT_TRUE(mainWindow) << "the program did not go on after its demo";
        sendCloseBox(x, *mainWindow);
        const ProgramResult run = finish(program, dir, 60s);
        EXPECT_EQ(run.exitCode, 0) << run.standardError;
        ASSERT_EQ(run.csvLines.size(), 2u) << run.standardError;
        const std::vector<std::string> row = csvColumns(run.csvLines[1]);
        ASSERT_EQ(row.size(), 19u);
        EXPECT_EQ(row[7], "GL3_TriangleOfDeath");
        EXPECT_GT(std::atoi(row[15].c_str()), 0);  // it ran for more than a second: it has a frame rate
        EXPECT_NE(run.log.find("Lumenscope shutdown ok."), std::string::npos);
        std::string name;
        EXPECT_FALSE(findWindow(x, [](const std::string& n) { return n.find("Lumenscope") != std::string::npos; }, &name))
            << name;
    }
    XCloseDisplay(x);
}

}  // namespace
