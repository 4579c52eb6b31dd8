// The real program under an X server of its own: the splash stands during the scan, the window opens, each tab
// is shown and photographed into the build tree, Escape ends it, and the log ends as every run's log does.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QImage>
#include <QString>
#include <filesystem>

#include "integration/program_runner.h"
#include "integration/x11_window_driver.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr const char* kTitle = "Orbiscale Lumenscope 1.26.0.0";
constexpr const char* kSplashTitle = "Lumenscope 1.26.0.0";

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

    const char* tabs[] = {"gpu", "opengl", "cuda", "opencl", "tools", "validation"};
    WindowPicture previous;
    for (int tab = 0; tab < 6; ++tab) {
        if (tab > 0) x.pressKey(window, XK_Page_Down, ControlMask);
        std::this_thread::sleep_for(600ms);  // the switch and its painting happen in the program's own time
        const WindowPicture picture = x.grab(window);
        ASSERT_GT(picture.width, 0) << tabs[tab];
        savePicture(picture, fs::path(SCREENSHOT_DIR) / ("tab_" + std::to_string(tab) + "_" + tabs[tab] + ".png"));
        if (tab > 0) {
            EXPECT_NE(picture.rgb, previous.rgb) << "tab " << tabs[tab] << " looks like the one before it";
        }
        previous = picture;
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
