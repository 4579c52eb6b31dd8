#include <gtest/gtest.h>

#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "app/app_log.h"

namespace {

std::vector<std::string> readLines(const std::filesystem::path& path) {
    std::ifstream in(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

class AppLogTest : public ::testing::Test {
protected:
    std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                ("applog_" + std::to_string(getpid()) + "_" +
                                 ::testing::UnitTest::GetInstance()->current_test_info()->name());
    void SetUp() override { std::filesystem::create_directories(dir); }
    void TearDown() override { std::filesystem::remove_all(dir); }
};

TEST(AppLogPrefix, PadsTheClockButNotTheDate) {
    EXPECT_EQ(formatLogPrefix(2015, 1, 9, 4, 5, 6), "2015/1/9 @ 04:05:06 >> ");
    EXPECT_EQ(formatLogPrefix(2026, 11, 23, 23, 59, 0), "2026/11/23 @ 23:59:00 >> ");
}

TEST_F(AppLogTest, EachWriteIsOneFlushedPrefixedLine) {
    const auto path = dir / "log.txt";
    AppLog log(path.c_str());
    log.write("%s %d.%d.%d.%d startup...", "Lumenscope", 1, 26, 0, 0);
    // Flushed per line: readable while the log is still open.
    const auto lines = readLines(path);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_TRUE(std::regex_match(lines[0], std::regex(R"(\d{4}/\d{1,2}/\d{1,2} @ \d\d:\d\d:\d\d >> Lumenscope 1\.26\.0\.0 startup\.\.\.)")))
        << lines[0];
}

TEST_F(AppLogTest, ASecondLogOverwritesTheFirst) {
    const auto path = dir / "log.txt";
    {
        AppLog first(path.c_str());
        first.write("first run");
        first.write("more");
    }
    AppLog second(path.c_str());
    second.write("second run");
    const auto lines = readLines(path);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find(">> second run"), std::string::npos);
}

TEST_F(AppLogTest, AnUnopenableFileMakesEveryWriteANoOp) {
    AppLog log((dir / "missing" / "log.txt").c_str());
    EXPECT_FALSE(log.isOpen());
    log.write("nothing %d", 1);
    EXPECT_FALSE(std::filesystem::exists(dir / "missing"));
}

TEST_F(AppLogTest, LongMessagesAreCutNotOverrun) {
    const auto path = dir / "log.txt";
    AppLog log(path.c_str());
    const std::string huge(100000, 'x');
    log.write("%s", huge.c_str());
    const auto lines = readLines(path);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].substr(lines[0].find(">> ") + 3).size(), AppLog::kMessageBufferSize - 1);
}

TEST_F(AppLogTest, ConcurrentWritersNeverShareALine) {
    const auto path = dir / "log.txt";
    {
        AppLog log(path.c_str());
        std::vector<std::thread> writers;
        for (int t = 0; t < 4; ++t)
            writers.emplace_back([&log, t] {
                const std::string body(200, char('a' + t));
                for (int i = 0; i < 200; ++i) log.write("%s", body.c_str());
            });
        for (auto& writer : writers) writer.join();
    }
    const auto lines = readLines(path);
    ASSERT_EQ(lines.size(), 800u);
    for (const auto& line : lines) {
        const std::string body = line.substr(line.find(">> ") + 3);
        ASSERT_EQ(body.size(), 200u);
        EXPECT_EQ(body.find_first_not_of(body[0]), std::string::npos);
    }
}

// Shutdown's last line must stay the last even while a demo thread it gave up on goes on writing.
TEST_F(AppLogTest, TheLastLineStaysLastWhileAnotherThreadKeepsWriting) {
    const auto path = dir / "log.txt";
    AppLog log(path.c_str());
    std::atomic<bool> done{false};
    std::thread writer([&] {
        while (!done) log.write("demo frame");
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    log.writeLast("shutdown ok.");
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    done = true;
    writer.join();
    EXPECT_FALSE(log.isOpen());
    const auto lines = readLines(path);
    ASSERT_GE(lines.size(), 2u);
    EXPECT_NE(lines.back().find(">> shutdown ok."), std::string::npos) << lines.back();
}

// The program's log used to be opened before main, so a run that ends before start-up (printing its help text)
// truncated the previous run's log.
TEST_F(AppLogTest, TheProgramLogHasNoFileUntilStartUpOpensOne) {
    EXPECT_FALSE(appLog().isOpen());
    const auto path = dir / "log.txt";
    AppLog log;
    log.write("dropped: no file yet");
    ASSERT_TRUE(log.open(path.c_str()));
    log.write("kept");
    const auto lines = readLines(path);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find(">> kept"), std::string::npos);
}

}  // namespace
