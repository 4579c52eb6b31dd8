// The real program under an X server of its own: the splash stands during the scan, the window opens, each tab
// is shown and photographed into the build tree, Escape ends it, and the log ends as every run's log does.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QImage>
#include <QString>
#include <filesystem>
#include <iterator>

#include "integration/program_runner.h"
#include "integration/x11_window_driver.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr const char* kTitle = "Orbiscale Lumenscope 1.26.0.0";
constexpr const char* kSplashTitle = "Lumenscope 1.26.0.0";
constexpr const char* kCapsTitle = "Lumenscope OpenGL Caps List";
constexpr const char* kVulkanCapsTitle = "Lumenscope Vulkan Caps List";

pid_t startProgram(const fs::path& workDir) {
    const pid_t child = fork();
    if (child == 0) {
        if (chdir(workDir.c_str()) != 0) _exit(126);
        unsetenv("QT_QPA_PLATFORM");
        execl(LUMENSCOPE_BINARY, LUMENSCOPE_BINARY, "/no_online_check", static_cast<char*>(nullptr));
        _exit(127);
    }
    return child;
}

void savePicture(const WindowPicture& picture, const fs::path& file) {
    const QImage image(reinterpret_cast<const uchar*>(picture.rgb.data()), picture.width, picture.height,
                       QImage::Format_RGB32);
    EXPECT_TRUE(image.save(QString::fromStdString(file.string()))) << file;
}

// The exit status, or -1 when the program had not ended after `timeout`.
int waitForExit(pid_t child, std::chrono::milliseconds timeout) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    int status = 0;
    while (std::chrono::steady_clock::now() < end) {
        if (waitpid(child, &status, WNOHANG) == child) return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
        std::this_thread::sleep_for(20ms);
    }
    return -1;
}

// A caps dialog opened from its tab: a click in the tab's extension list gives it the focus, Tab moves on to
// "More caps..." and Space presses it; in the dialog the heading `opened` (counted from 0) is opened. The main
// window is 256 by 331 dialog units, which gives the list's middle without knowing the font: the tab
// control's page begins about 16 units down, the list's middle stands `listMiddle` units below that.
void photographCapsDialog(X11WindowDriver& x, Window window, const char* title, int listMiddle, int opened,
                          const char* file) {
    const auto [width, height] = x.size(window);
    const double perUnitX = width / 256.0, perUnitY = height / 331.0;
    x.click(window, int((3 + 125) * perUnitX), int((2 + 16 + listMiddle) * perUnitY));
    std::this_thread::sleep_for(200ms);
    x.pressKey(window, XK_Tab);
    x.pressKey(window, XK_space);
    const Window caps = x.waitForWindow(title, 10s);
    ASSERT_NE(caps, 0u) << "no window titled " << title;
    std::this_thread::sleep_for(300ms);
    const WindowPicture collapsed = x.grab(caps);
    x.pressKey(caps, XK_Home);
    for (int i = 0; i < opened; ++i) x.pressKey(caps, XK_Down);
    x.pressKey(caps, XK_Right);
    std::this_thread::sleep_for(300ms);
    const WindowPicture expanded = x.grab(caps);
    ASSERT_GT(expanded.width, 0);
    EXPECT_NE(expanded.rgb, collapsed.rgb) << "heading " << opened << " did not open in " << title;
    savePicture(expanded, fs::path(SCREENSHOT_DIR) / file);
    x.pressKey(caps, XK_Escape);
    std::this_thread::sleep_for(200ms);
    EXPECT_EQ(x.findWindow(title), 0u) << "Escape leaves " << title << " up";
}

TEST(WindowUnderXvfb, EveryTabIsShownAndEscapeShutsTheProgramDown) {
    X11WindowDriver x;
    ASSERT_TRUE(x.connected()) << "run under xvfb-run";
    const fs::path dir = fs::temp_directory_path() / ("window_xvfb_" + std::to_string(getpid()));
    fs::create_directories(dir);
    fs::create_directories(SCREENSHOT_DIR);

    const pid_t program = startProgram(dir);
    const Window splash = x.waitForWindow(kSplashTitle, 30s, 1ms);
    ASSERT_NE(splash, 0u) << "no splash before the main window";
    std::this_thread::sleep_for(100ms);
    savePicture(x.grab(splash), fs::path(SCREENSHOT_DIR) / "splash.png");
    const Window window = x.waitForWindow(kTitle, 60s);
    ASSERT_NE(window, 0u) << "no window titled " << kTitle;
    std::this_thread::sleep_for(300ms);
    EXPECT_EQ(x.findWindow(kSplashTitle), 0u) << "the splash is still up";

    const char* tabs[] = {"gpu", "opengl", "vulkan", "cuda", "opencl", "tools", "validation"};
    WindowPicture previous;
    for (int tab = 0; tab < int(std::size(tabs)); ++tab) {
        if (tab > 0) x.pressKey(window, XK_Page_Down, ControlMask);
        std::this_thread::sleep_for(600ms);  // the switch and its painting happen in the program's own time
        const WindowPicture picture = x.grab(window);
        ASSERT_GT(picture.width, 0) << tabs[tab];
        savePicture(picture, fs::path(SCREENSHOT_DIR) / ("tab_" + std::to_string(tab) + "_" + tabs[tab] + ".png"));
        if (tab > 0) {
            EXPECT_NE(picture.rgb, previous.rgb) << "tab " << tabs[tab] << " looks like the one before it";
        }
        previous = picture;
        if (tab == 1) photographCapsDialog(x, window, kCapsTitle, 167, 0, "caps_dialog_expanded.png");
        // The Vulkan caps dialog with its limits, the second heading, opened.
        if (tab == 2) photographCapsDialog(x, window, kVulkanCapsTitle, 179, 1, "vulkan_caps_dialog_limits.png");
    }

    x.pressKey(window, XK_Escape);
    const int status = waitForExit(program, 20s);
    if (status < 0) kill(program, SIGKILL), waitpid(program, nullptr, 0);
    EXPECT_EQ(status, 0);
    const std::vector<std::string> log = readFileLines(dir / "Lumenscope_log.txt");
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(logMessage(log.back()), "Lumenscope shutdown ok.");
    bool started = false;
    for (const std::string& line : log) started = started || logMessage(line) == "Lumenscope startup ok.";
    EXPECT_TRUE(started);
    fs::remove_all(dir);
}

}  // namespace
