#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

#include "integration/program_runner.h"

namespace {

namespace fs = std::filesystem;

class SpineTest : public ::testing::Test {
protected:
    fs::path dir = fs::temp_directory_path() / ("spine_" + std::to_string(getpid()) + "_" +
                                                ::testing::UnitTest::GetInstance()->current_test_info()->name());
    void SetUp() override { fs::create_directories(dir); }
    void TearDown() override { fs::remove_all(dir); }

    static long indexOf(const std::vector<std::string>& lines, const std::string& message) {
        for (size_t i = 0; i < lines.size(); ++i)
            if (logMessage(lines[i]) == message) return long(i);
        return -1;
    }
};

TEST_F(SpineTest, BatchRunLogsStartupFirstAndShutdownLastAndExitsZero) {
    const ProgramRun run = runProgram(LUMENSCOPE_BINARY, dir, {"/exp_txt_report", "/exp_xml_report"});
    EXPECT_EQ(run.exitCode, 0);
    ASSERT_GE(run.logLines.size(), 3u);
    EXPECT_TRUE(std::regex_match(run.logLines.front(),
                                 std::regex(R"(\d{4}/\d{1,2}/\d{1,2} @ \d\d:\d\d:\d\d >> Lumenscope 1\.26\.0\.0 startup\.\.\.)")))
        << run.logLines.front();
    EXPECT_EQ(logMessage(run.logLines.back()), "Lumenscope shutdown ok.");
    const long shutdownStart = indexOf(run.logLines, "Lumenscope 1.26.0.0 shutdown...");
    ASSERT_GE(shutdownStart, 0);
    EXPECT_EQ(shutdownStart, long(run.logLines.size()) - 2);
    // The batch branch never opens the main window, so its closing line of start-up never appears.
    EXPECT_EQ(indexOf(run.logLines, "Lumenscope startup ok."), -1);
    EXPECT_FALSE(fs::exists(dir / "_z.log"));
    EXPECT_FALSE(fs::exists(dir / "adl.log"));
}

TEST_F(SpineTest, EachExportOptionAloneExitsZero) {
    for (const char* option : {"/exp_txt_report", "/exp_xml_report"}) {
        const ProgramRun run = runProgram(LUMENSCOPE_BINARY, dir, {option, "/no_online_check"});
        EXPECT_EQ(run.exitCode, 0) << option;
        ASSERT_FALSE(run.logLines.empty()) << option;
        EXPECT_EQ(logMessage(run.logLines.back()), "Lumenscope shutdown ok.") << option;
    }
}

// Without a display the window cannot open: one paragraph on standard error says so and names the batch
// options, the log says it too, and the exit status is 1; never the toolkit's own abort.
TEST_F(SpineTest, InteractiveStartWithoutDisplayExplainsAndExitsOne) {
    const std::vector<std::string> noDisplay = {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
    struct Case {
        std::vector<std::pair<std::string, std::string>> env;
        const char* why;
    };
    const Case cases[] = {
        {{}, "neither DISPLAY nor WAYLAND_DISPLAY is set"},
        {{{"DISPLAY", ":4711"}}, "the display DISPLAY=:4711 refused the connection"},
        {{{"QT_QPA_PLATFORM", "xcb"}}, "QT_QPA_PLATFORM asks for X, but DISPLAY is not set"},
        {{{"QT_QPA_PLATFORM", "nosuchplatform"}}, "nosuchplatform"},
    };
    for (const Case& c : cases) {
        const ProgramRun run = runProgram(LUMENSCOPE_BINARY, dir, {"/no_online_check"}, c.env, {}, noDisplay);
        EXPECT_EQ(run.exitCode, 1) << c.why;
        EXPECT_NE(run.errorText.find("Lumenscope cannot open its window: "), std::string::npos) << run.errorText;
        EXPECT_NE(run.errorText.find(c.why), std::string::npos) << run.errorText;
        EXPECT_NE(run.errorText.find("/exp_txt_report"), std::string::npos) << run.errorText;
        ASSERT_FALSE(run.logLines.empty()) << c.why;
        EXPECT_EQ(logMessage(run.logLines.back()).rfind("No display: ", 0), 0u) << run.logLines.back();
        EXPECT_EQ(indexOf(run.logLines, "Lumenscope startup ok."), -1);
    }
}

TEST_F(SpineTest, ASecondRunOverwritesTheLog) {
    const ProgramRun first = runProgram(LUMENSCOPE_BINARY, dir, {"/exp_txt_report"});
    const ProgramRun second = runProgram(LUMENSCOPE_BINARY, dir, {"/exp_txt_report"});
    EXPECT_EQ(first.logLines.size(), second.logLines.size());
    EXPECT_EQ(std::count_if(second.logLines.begin(), second.logLines.end(),
                            [](const std::string& l) { return logMessage(l) == "Lumenscope shutdown ok."; }),
              1);
}

// /proc takes no new files, not even from root, so this stands for a read-only working directory. No log can
// land there, so what shows is the run itself: it ends normally and says which reports are missing.
TEST_F(SpineTest, UnwritableWorkingDirectoryStillExitsZeroAndNamesTheMissingReports) {
    const ProgramRun run = runProgram(LUMENSCOPE_BINARY, "/proc", {"/exp_txt_report", "/exp_xml_report"});
    EXPECT_EQ(run.exitCode, 0);
    for (const char* file : {"report.txt", "report.xml"})
        EXPECT_NE(run.errorText.find(std::string("Lumenscope: could not write ") + file + ": "), std::string::npos)
            << run.errorText;
}

}  // namespace
