// The real program under an X server of its own, against the loopback validation server offering a newer
// version: the newer-version dialog that the update check opens beside the main window takes a click on its
// Close button and, in a second run, Escape; the main window goes on taking clicks; the same dialog opened by
// the Validation tab's button closes on Escape too. Windows are found with xdotool, as a user's script would.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QImage>
#include <QString>
#include <cstdio>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "integration/program_runner.h"
#include "online/validation_server_process.h"
// Xlib's macros last, after everything they would clash with.
#include "integration/x11_window_driver.h"

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr const char* kMainTitle = "Orbiscale Lumenscope 1.26.0.0";
constexpr const char* kDialogTitle = "Lumenscope - Check for update";
constexpr const char* kDialogTitlePattern = "^Lumenscope - Check for update$";
constexpr const char* kNewerVersionLog = "A new version is available online: 1.27.0.0";

// Sizes in dialog units: the main window, the newer-version dialog and the middle of its Close button, the
// tab control's corner and the Validation tab's "Check for updates" button as placed on the tab's page.
constexpr double kMainWidth = 256, kMainHeight = 331;
constexpr double kDialogWidth = 186, kDialogHeight = 54;
constexpr double kCloseX = 129 + 50 / 2.0, kCloseY = 32 + 14 / 2.0;
constexpr double kTabsX = 3, kTabsY = 2;
constexpr double kPageTop = 16;  // the tab bar's height, near enough for any font
constexpr double kUpdateButtonX = kTabsX + 152 + 84 / 2.0, kUpdateButtonY = kTabsY + kPageTop + 197 + 14 / 2.0;

// The ids of the visible windows whose title matches `pattern`, as `xdotool search` lists them.
std::vector<std::string> xdotoolSearch(const std::string& pattern) {
    const std::string command = "xdotool search --onlyvisible --name '" + pattern + "' 2>/dev/null";
    std::vector<std::string> ids;
    if (FILE* pipe = popen(command.c_str(), "r")) {
        char line[64];
        while (std::fgets(line, sizeof line, pipe)) ids.emplace_back(line);
        pclose(pipe);
    }
    return ids;
}

// Waits until `xdotool search` lists `count` windows; returns what it listed last.
size_t waitForSearchCount(const std::string& pattern, size_t count, std::chrono::milliseconds timeout) {
    const auto end = std::chrono::steady_clock::now() + timeout;
    size_t found = xdotoolSearch(pattern).size();
    while (found != count && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(50ms);
        found = xdotoolSearch(pattern).size();
    }
    return found;
}

// Focus to the window, then Escape through the server's input as a keyboard gives it. (Sent to the window
// itself, the key's release would find the window already closed by its press.)
void pressEscapeWithXdotool(Window window) {
    ASSERT_EQ(std::system(("xdotool windowfocus " + std::to_string(window)).c_str()), 0);
    std::this_thread::sleep_for(100ms);
    ASSERT_EQ(std::system("xdotool key Escape"), 0);
}

bool logHas(const fs::path& dir, const std::string& message) {
    for (const std::string& line : readFileLines(dir / "Lumenscope_log.txt"))
        if (line.size() >= message.size() && line.compare(line.size() - message.size(), message.size(), message) == 0)
            return true;
    return false;
}

void savePicture(const WindowPicture& picture, const std::string& name) {
    fs::create_directories(SCREENSHOT_DIR);
    const QImage image(reinterpret_cast<const uchar*>(picture.rgb.data()), picture.width, picture.height,
                       QImage::Format_RGB32);
    EXPECT_TRUE(image.save(QString::fromStdString((fs::path(SCREENSHOT_DIR) / name).string()))) << name;
}

// One run of the program in a folder of its own, asking `server` for the newest version; killed if a test
// gives up on it.
class ProgramUnderTest {
public:
    ProgramUnderTest(const std::string& name, const std::string& server)
        : m_dir(fs::temp_directory_path() / (name + "_" + std::to_string(getpid()))) {
        fs::remove_all(m_dir);
        fs::create_directories(m_dir);
        const std::string host = "/online_host=" + server;
        m_pid = fork();
        if (m_pid == 0) {
            if (chdir(m_dir.c_str()) != 0) _exit(126);
            unsetenv("QT_QPA_PLATFORM");
            execl(LUMENSCOPE_BINARY, LUMENSCOPE_BINARY, host.c_str(), static_cast<char*>(nullptr));
            _exit(127);
        }
    }
    ~ProgramUnderTest() {
        if (m_pid > 0) kill(m_pid, SIGKILL), waitpid(m_pid, nullptr, 0);
        fs::remove_all(m_dir);
    }

    const fs::path& dir() const { return m_dir; }

    // The exit status, or -1 when the program had not ended after `timeout`.
    int waitForExit(std::chrono::milliseconds timeout) {
        const auto end = std::chrono::steady_clock::now() + timeout;
        int status = 0;
        while (std::chrono::steady_clock::now() < end) {
            if (waitpid(m_pid, &status, WNOHANG) == m_pid) {
                m_pid = -1;
                return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            }
            std::this_thread::sleep_for(20ms);
        }
        return -1;
    }

private:
    fs::path m_dir;
    pid_t m_pid = -1;
};

// The newer-version dialog of a run: exactly one, titled as it should be, and the log names the version.
Window waitForTheOneDialog(X11WindowDriver& x, const ProgramUnderTest& program) {
    const Window dialog = x.waitForWindow(kDialogTitle, 60s);
    if (!dialog) return 0;
    EXPECT_EQ(waitForSearchCount(kDialogTitlePattern, 1, 5s), 1u) << "xdotool finds the dialog not exactly once";
    EXPECT_TRUE(logHas(program.dir(), kNewerVersionLog));
    std::this_thread::sleep_for(300ms);  // painted
    return dialog;
}

void clickInDialogUnits(X11WindowDriver& x, Window window, double width, double height, double duX, double duY) {
    const auto [w, h] = x.size(window);
    x.click(window, int(duX * w / width), int(duY * h / height));
}

void endWithEscape(X11WindowDriver& x, ProgramUnderTest& program, Window mainWindow) {
    x.pressKey(mainWindow, XK_Escape);
    const int status = program.waitForExit(30s);
    EXPECT_EQ(status, 0);
    const std::vector<std::string> log = readFileLines(program.dir() / "Lumenscope_log.txt");
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(logMessage(log.back()), "Lumenscope shutdown ok.");
}

TEST(UpdateDialogUnderXvfb, ClosesOnItsButtonAndOnEscapeAndTheMainWindowGoesOn) {
    X11WindowDriver x;
    ASSERT_TRUE(x.connected()) << "run under xvfb-run";
    ValidationServerProcess server({"--version", "1.27.0.0"});
    ASSERT_TRUE(server.started());

    {
        ProgramUnderTest program("update_dialog_close", server.url());
        const Window mainWindow = x.waitForWindow(kMainTitle, 60s);
        ASSERT_NE(mainWindow, 0u) << "no main window";
        const Window dialog = waitForTheOneDialog(x, program);
        ASSERT_NE(dialog, 0u) << "no window titled " << kDialogTitle;
        savePicture(x.grab(dialog), "update_dialog.png");

        clickInDialogUnits(x, dialog, kDialogWidth, kDialogHeight, kCloseX, kCloseY);
        EXPECT_EQ(waitForSearchCount(kDialogTitlePattern, 0, 5s), 0u) << "the Close button leaves the dialog up";

        // The main window takes clicks: from the OpenGL tab a click on the first tab brings the GPU tab back.
        x.pressKey(mainWindow, XK_Page_Down, ControlMask);
        std::this_thread::sleep_for(600ms);
        const WindowPicture openGlTab = x.grab(mainWindow);
        clickInDialogUnits(x, mainWindow, kMainWidth, kMainHeight, kTabsX + 6, kTabsY + 5);
        std::this_thread::sleep_for(600ms);
        const WindowPicture afterClick = x.grab(mainWindow);
        ASSERT_GT(afterClick.width, 0);
        EXPECT_NE(afterClick.rgb, openGlTab.rgb) << "a click on the GPU tab changed nothing";

        // The Validation tab (one step back from the GPU tab) and its button open the same dialog, owned by
        // the tab; Escape closes it.
        x.pressKey(mainWindow, XK_Page_Up, ControlMask);
        std::this_thread::sleep_for(600ms);
        clickInDialogUnits(x, mainWindow, kMainWidth, kMainHeight, kUpdateButtonX, kUpdateButtonY);
        const Window fromButton = x.waitForWindow(kDialogTitle, 30s);
        ASSERT_NE(fromButton, 0u) << "the Validation tab's button opened no dialog";
        EXPECT_EQ(waitForSearchCount(kDialogTitlePattern, 1, 5s), 1u);
        std::this_thread::sleep_for(300ms);
        pressEscapeWithXdotool(fromButton);
        EXPECT_EQ(waitForSearchCount(kDialogTitlePattern, 0, 5s), 0u) << "Escape leaves the tab's dialog up";

        endWithEscape(x, program, mainWindow);
    }
    {
        ProgramUnderTest program("update_dialog_escape", server.url());
        const Window mainWindow = x.waitForWindow(kMainTitle, 60s);
        ASSERT_NE(mainWindow, 0u) << "no main window";
        const Window dialog = waitForTheOneDialog(x, program);
        ASSERT_NE(dialog, 0u) << "no window titled " << kDialogTitle;
        pressEscapeWithXdotool(dialog);
        EXPECT_EQ(waitForSearchCount(kDialogTitlePattern, 0, 5s), 0u) << "Escape leaves the dialog up";
        endWithEscape(x, program, mainWindow);
    }
}

}  // namespace
