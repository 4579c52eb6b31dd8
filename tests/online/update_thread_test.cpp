#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "integration/program_runner.h"
#include "online/validation_server_process.h"
#include "report/online/update_thread.h"

namespace {

using namespace online;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;
using ::testing::ElementsAre;

// What the thread told its listener, for the test to look at from its own thread.
struct Events {
    std::mutex lock;
    std::vector<std::string> lines;
    std::vector<int> results;
    std::vector<std::string> dialogs;

    std::vector<std::string> linesNow() {
        std::lock_guard<std::mutex> guard(lock);
        return lines;
    }
    size_t countNow() {
        std::lock_guard<std::mutex> guard(lock);
        return lines.size() + results.size() + dialogs.size();
    }
};

class RecordingListener : public UpdateCheckListener {
public:
    explicit RecordingListener(std::shared_ptr<Events> events) : m_events(std::move(events)) {}
    void logLine(const std::string& line) override {
        std::lock_guard<std::mutex> guard(m_events->lock);
        m_events->lines.push_back(line);
    }
    void checked(int result, const VersionNumber&) override {
        std::lock_guard<std::mutex> guard(m_events->lock);
        m_events->results.push_back(result);
    }
    void newerVersionAvailable(const NewerVersionDialog& dialog) override {
        std::lock_guard<std::mutex> guard(m_events->lock);
        m_events->dialogs.push_back(dialog.text);
    }

private:
    std::shared_ptr<Events> m_events;
};

bool waitUntil(const std::function<bool()>& done, std::chrono::milliseconds limit = 10s) {
    const auto end = Clock::now() + limit;
    while (!done()) {
        if (Clock::now() > end) return false;
        std::this_thread::sleep_for(5ms);
    }
    return true;
}

TEST(UpdateThread, LogsTheCheckAndHandsANewerVersionToTheDialogOnce) {
    ValidationServerProcess server({"--version", "1.27.0.0"});
    ASSERT_TRUE(server.started());
    auto events = std::make_shared<Events>();
    std::unique_ptr<UpdateThread> thread =
        UpdateThread::start(server.hosts(), std::make_unique<RecordingListener>(events));
    ASSERT_NE(thread, nullptr);
    ASSERT_TRUE(waitUntil([&] { return !thread->running(); }));
    EXPECT_THAT(events->lines, ElementsAre("Checking for new version...", "A new version is available online: 1.27.0.0"));
    EXPECT_THAT(events->results, ElementsAre(kUpdateNewer));
    EXPECT_THAT(events->dialogs, ElementsAre("A newer version is available: 1.27.0.0"));
}

TEST(UpdateThread, AnUnreachableServerIsOnlyLogged) {
    auto events = std::make_shared<Events>();
    const OnlineHosts dead = *onlineHostsFromUrl("http://127.0.0.1:" + std::to_string(deadLoopbackPort()));
    auto thread = UpdateThread::start(dead, std::make_unique<RecordingListener>(events));
    ASSERT_TRUE(waitUntil([&] { return !thread->running(); }));
    EXPECT_THAT(events->lines,
                ElementsAre("Checking for new version...", "Unable to connect to 127.0.0.1. Check for update failed."));
    EXPECT_THAT(events->results, ElementsAre(kUpdateCheckFailed));
    EXPECT_TRUE(events->dialogs.empty());
}

TEST(UpdateThread, LettingGoOfAHangingCheckTakesNoTimeAndSilencesIt) {
    ValidationServerProcess silent({"--mode", "silent"});
    ASSERT_TRUE(silent.started());
    auto events = std::make_shared<Events>();
    auto thread = UpdateThread::start(silent.hosts(), std::make_unique<RecordingListener>(events),
                                      ExchangeLimits{1000, 1500});
    ASSERT_TRUE(silent.waitForRequests(1));
    const Clock::time_point start = Clock::now();
    thread->detach();
    EXPECT_LT(Clock::now() - start, 100ms);
    const size_t before = events->countNow();
    EXPECT_THAT(events->linesNow(), ElementsAre("Checking for new version..."));
    // The exchange is cut short and the thread ends, telling nobody.
    EXPECT_TRUE(waitUntil([&] { return !thread->running(); }, 3s));
    EXPECT_EQ(events->countNow(), before);
}

// The process ends while the check still waits on a server that never answers: the exit neither waits
// for it nor trips over it.
TEST(UpdateThreadDeathTest, AProcessEndsPromptlyUnderAHangingCheck) {
    ValidationServerProcess silent({"--mode", "silent"});
    ASSERT_TRUE(silent.started());
    const Clock::time_point start = Clock::now();
    EXPECT_EXIT(
        {
            auto thread = UpdateThread::start(silent.hosts(), std::make_unique<RecordingListener>(
                                                                  std::make_shared<Events>()));
            silent.waitForRequests(1);
            thread->detach();
            std::exit(0);
        },
        ::testing::ExitedWithCode(0), "");
    EXPECT_LT(Clock::now() - start, 2s);
}

// The real program's window on Qt's offscreen platform, ended from outside once it stands, as a user ends it
// from the terminal. Times the end from the signal.
struct WindowRun {
    bool started = false;
    bool ended = false;
    int status = 0;
    Clock::duration endTook{};
};

WindowRun runWindowAndEndIt(const std::filesystem::path& dir, const std::vector<std::string>& args) {
    WindowRun run;
    const std::filesystem::path log = dir / "Lumenscope_log.txt";
    const pid_t child = ::fork();
    if (child == 0) {
        if (::chdir(dir.c_str()) != 0) ::_exit(126);
        ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
        std::vector<char*> argv{const_cast<char*>(LUMENSCOPE_BINARY)};
        for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
        argv.push_back(nullptr);
        ::execv(LUMENSCOPE_BINARY, argv.data());
        ::_exit(127);
    }
    if (child < 0) return run;
    const Clock::time_point giveUp = Clock::now() + 60s;
    while (!run.started && Clock::now() < giveUp && ::waitpid(child, &run.status, WNOHANG) == 0) {
        for (const std::string& line : readFileLines(log))
            if (logMessage(line) == "Lumenscope startup ok.") run.started = true;
        if (!run.started) std::this_thread::sleep_for(5ms);
    }
    const Clock::time_point endAsked = Clock::now();
    ::kill(child, SIGTERM);
    while (Clock::now() < giveUp) {
        if (::waitpid(child, &run.status, WNOHANG) == child) {
            run.ended = true;
            break;
        }
        std::this_thread::sleep_for(2ms);
    }
    run.endTook = Clock::now() - endAsked;
    if (!run.ended) {
        ::kill(child, SIGKILL);
        ::waitpid(child, &run.status, 0);
    }
    return run;
}

// The real program with its update thread on a server that never answers shuts down at once.
TEST(UpdateThread, TheProgramShutsDownWithinTwoSecondsWhileTheServerHangs) {
    ValidationServerProcess silent({"--mode", "silent"});
    ASSERT_TRUE(silent.started());
    const std::filesystem::path dir = std::filesystem::path(::testing::TempDir()) / "online_shutdown";
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);

    const WindowRun run = runWindowAndEndIt(dir, {"/online_host=" + silent.url()});
    ASSERT_TRUE(run.started) << "no start-up line in the log";
    ASSERT_TRUE(run.ended) << "the program did not end";
    silent.waitForRequests(1);
    EXPECT_FALSE(silent.requests().empty()) << "the update check never asked";
    EXPECT_TRUE(WIFEXITED(run.status));
    EXPECT_EQ(WEXITSTATUS(run.status), 0);
    std::printf("shutdown under a hanging update check: %.3f s\n", std::chrono::duration<double>(run.endTook).count());
    EXPECT_LT(run.endTook, 2s);
    const std::vector<std::string> lines = readFileLines(dir / "Lumenscope_log.txt");
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(logMessage(lines.back()), "Lumenscope shutdown ok.");
    std::filesystem::remove_all(dir);
}

TEST(UpdateThread, WithNoOnlineCheckNothingGoesOverTheNetwork) {
    ValidationServerProcess server;
    ASSERT_TRUE(server.started());
    const std::filesystem::path dir = std::filesystem::path(::testing::TempDir()) / "online_no_check";
    std::filesystem::remove_all(dir);
    std::filesystem::create_directories(dir);
    const WindowRun run = runWindowAndEndIt(dir, {"/online_host=" + server.url(), "/no_online_check"});
    ASSERT_TRUE(run.started && run.ended);
    EXPECT_EQ(WEXITSTATUS(run.status), 0);
    std::this_thread::sleep_for(200ms);
    EXPECT_TRUE(server.requests().empty());
    std::filesystem::remove_all(dir);
}

}  // namespace
