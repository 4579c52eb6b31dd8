// The real program under an X server of its own, worked as a user works it: the triangle picked in the OpenGL
// demo list, Start pressed, a width typed into the options and Go! given; the demo's window comes up, a second
// Start for the same demo opens nothing, and the demo's row carries the typed width once its window is closed.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <QImage>
#include <QString>
#include <chrono>
#include <string>
#include <thread>

#include "demos/demo_program.h"
#include "integration/x11_window_driver.h"
#include "integration/x11_pointer.h"

namespace {

using namespace demo_program;
using namespace std::chrono_literals;

constexpr const char* kMainTitle = "Orbiscale Lumenscope 1.26.0.0";
constexpr const char* kTriangle = "GL 3.x - Triangle of Death";

// The main window's size in dialog units, and the middles of the OpenGL demo list and its Start button.
constexpr double kDialogWidth = 256, kDialogHeight = 331;
constexpr double kPickerX = 8 + 110 / 2.0, kPickerY = 295 + 12 / 2.0;
constexpr double kStartX = 30 + 60 / 2.0, kStartY = 310 + 12 / 2.0;

void savePicture(const WindowPicture& picture, const fs::path& file) {
    fs::create_directories(file.parent_path());
    const QImage image(reinterpret_cast<const uchar*>(picture.rgb.data()), picture.width, picture.height,
                       QImage::Format_RGB32);
    EXPECT_TRUE(image.save(QString::fromStdString(file.string()))) << file;
}

// Ends the program if a test gives up on it before it ended by itself.
struct ProgramGuard {
    pid_t pid;
    bool finished = false;
    ~ProgramGuard() {
        if (!finished) kill(pid, SIGKILL), waitpid(pid, nullptr, 0);
    }
};

struct Point {
    int x, y;
};

Point inMainWindow(X11WindowDriver& x, Window window, double duX, double duY) {
    XWindowAttributes attributes{};
    XGetWindowAttributes(x.display(), window, &attributes);
    return {int(duX * attributes.width / kDialogWidth), int(duY * attributes.height / kDialogHeight)};
}

bool isDemoWindowWithFrameRate(const std::string& title) {
    return title.find("FPS, OpenGL ") != std::string::npos && title.find(" Triangle - Lumenscope") != std::string::npos;
}

TEST(StartButtonUnderXvfb, TriangleStartsWithTheTypedWidthAndASecondStartOpensNothing) {
    X11WindowDriver x;
    ASSERT_TRUE(x.connected()) << "run under xvfb-run";
    const ScratchDirectory dir("start_button");
    ProgramGuard program{start(dir, {"/bench_log_results", "/no_online_check"}, false)};
    const Window mainWindow = x.waitForWindow(kMainTitle, 60s, 20ms);
    ASSERT_NE(mainWindow, 0u) << "no main window";
    std::this_thread::sleep_for(500ms);

    // Two turns of the wheel over the list step from the first demo to the third.
    const Point picker = inMainWindow(x, mainWindow, kPickerX, kPickerY);
    for (int turn = 0; turn < 2; ++turn) {
        clickAt(x.display(), mainWindow, picker.x, picker.y, 5);
        std::this_thread::sleep_for(100ms);
    }
    const Point startButton = inMainWindow(x, mainWindow, kStartX, kStartY);
    clickAt(x.display(), mainWindow, startButton.x, startButton.y);
    const Window options = x.waitForWindow(kTriangle, 20s, 20ms);
    ASSERT_NE(options, 0u) << "Start opened no options for the triangle";

    // The width field has the focus with its text selected; Enter is Go!.
    std::this_thread::sleep_for(300ms);
    savePicture(x.grab(options), fs::path(SCREENSHOT_DIR) / "demo_options.png");
    XSetInputFocus(x.display(), options, RevertToParent, CurrentTime);
    for (KeySym key : {XK_4, XK_8, XK_0, XK_Return}) typeKey(x.display(), key);

    const Window demo = x.waitForWindowWhere(isDemoWindowWithFrameRate, 60s, 50ms);
    ASSERT_NE(demo, 0u) << "the demo's window never showed a frame rate";
    EXPECT_EQ(x.findWindow(kTriangle), 0u) << "the options stayed open";

    // The demo runs: its Start opens no second options dialog, and shows nothing. The demo's window stands in
    // the middle of the screen, over the main window.
    XRaiseWindow(x.display(), mainWindow);
    clickAt(x.display(), mainWindow, startButton.x, startButton.y);
    std::this_thread::sleep_for(1500ms);
    if (const Window again = x.findWindow(kTriangle)) {
        ADD_FAILURE() << "a running demo was offered its options again";
        x.pressCloseBox(again);
    }
    EXPECT_EQ(x.findWindow("Lumenscope Error"), 0u);

    x.pressCloseBox(demo);
    bool rowWritten = false;
    const auto until = std::chrono::steady_clock::now() + 30s;
    while (!rowWritten && std::chrono::steady_clock::now() < until) {
        rowWritten = readLines(dir / "bench_result.csv").size() >= 2;
        if (!rowWritten) std::this_thread::sleep_for(50ms);
    }
    EXPECT_TRUE(rowWritten) << "the demo wrote no row";
    x.pressCloseBox(mainWindow);
    const ProgramResult run = finish(program.pid, dir, 60s);
    program.finished = true;
    EXPECT_EQ(run.exitCode, 0) << run.standardError;
    ASSERT_EQ(run.csvLines.size(), 2u) << run.standardError;
    const std::vector<std::string> row = csvColumns(run.csvLines[1]);
    ASSERT_EQ(row.size(), 19u) << run.csvLines[1];
    EXPECT_EQ(row[7], "GL3_TriangleOfDeath");
    EXPECT_EQ(row[8], "0");      // MSAA "NONE"
    EXPECT_EQ(row[9], "480");    // the width typed in the options
    EXPECT_EQ(row[10], "600");   // the command line's height, left as shown
    EXPECT_GT(std::atoi(row[15].c_str()), 0);
    EXPECT_NE(run.log.find("Lumenscope shutdown ok."), std::string::npos);
}

}  // namespace
