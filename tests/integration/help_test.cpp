#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/command_line_help.h"
#include "integration/captured_run.h"

namespace {

namespace fs = std::filesystem;

class HelpAndVersion : public ::testing::Test {
protected:
    fs::path base = fs::temp_directory_path() / ("help_and_version_" + std::to_string(getpid()));
    fs::path work = base / "work";
    void SetUp() override { fs::create_directories(work); }
    void TearDown() override { fs::remove_all(base); }

    // What a run left in the working directory: a log file, even an empty one, would mean a truncated log.
    std::vector<std::string> writtenFiles() const {
        std::vector<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(work))
            names.push_back(entry.path().filename().string());
        return names;
    }
};

TEST_F(HelpAndVersion, AnswerBeforeStartUpAndWriteNoFileEvenBesideReportOptions) {
    struct Case {
        std::vector<std::string> args;
        std::string expected;
    };
    const Case cases[] = {
        {{"--help"}, helpText()},
        {{"--version"}, versionText()},
        {{"/exp_txt_report", "/exp_xml_report", "/exp_json_report", "--help"}, helpText()},
        {{"--version", "/exp_txt_report"}, versionText()},
        {{"--version", "--help"}, helpText()},
    };
    for (const Case& given : cases) {
        const std::string line = given.args.front() + " ...";
        const CapturedRun run = runCaptured(LUMENSCOPE_BINARY, work, given.args, base / "capture");
        EXPECT_EQ(run.exitCode, 0) << line;
        EXPECT_EQ(run.out, given.expected) << line;
        EXPECT_EQ(run.err, "") << line;
        EXPECT_EQ(writtenFiles(), std::vector<std::string>{}) << line;
        fs::remove_all(work);
        fs::create_directories(work);
    }
}

}  // namespace
