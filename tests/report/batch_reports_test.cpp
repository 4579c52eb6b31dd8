#include <gtest/gtest.h>

#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <nlohmann/json.hpp>
#include <sstream>

#include "integration/program_runner.h"
#include "tests/report/unwritable_directory.h"

namespace {

namespace fs = std::filesystem;

std::string readWhole(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

class BatchReports : public ::testing::Test {
protected:
    fs::path dir = fs::temp_directory_path() / ("batch_reports_" + std::to_string(getpid()));
    void SetUp() override { fs::create_directories(dir); }
    void TearDown() override { fs::remove_all(dir); }
};

TEST_F(BatchReports, AllThreeOptionsWriteAllThreeFilesAndExitZero) {
    const ProgramRun run = runProgram(LUMENSCOPE_BINARY, dir,
                                      {"/exp_txt_report", "/exp_xml_report", "/exp_json_report", "/no_online_check"});
    EXPECT_EQ(run.exitCode, 0);
    const std::string text = readWhole(dir / "report.txt");
    const std::string xml = readWhole(dir / "report.xml");
    const std::string json = readWhole(dir / "report.json");
    EXPECT_EQ(text.rfind("===================================================\nLumenscope v1.26.0.0\n", 0), 0u);
    EXPECT_NE(text.find("===================================[ System / CPU ]\n"), std::string::npos);
    EXPECT_EQ(text.find("Related Graphics Drivers"), std::string::npos);
    EXPECT_EQ(text.find('\r'), std::string::npos);
    EXPECT_EQ(xml.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n", 0), 0u);
    ASSERT_GE(xml.size(), 15u);
    EXPECT_EQ(xml.substr(xml.size() - 15), "\n</lumen_scope>");
    ASSERT_TRUE(nlohmann::json::accept(json));
    const nlohmann::json parsed = nlohmann::json::parse(json);
    EXPECT_EQ(parsed["schema_version"], 1);
    // Both files describe the same GPUs: the text's count line against the JSON's list. Without a display
    // device the text has no GPU part and the list is empty.
    const size_t count = text.find("\n- Num GPUs: ");
    if (parsed["has_display_device"].get<bool>()) {
        ASSERT_NE(count, std::string::npos);
        EXPECT_EQ(std::stoul(text.substr(count + 13)), parsed["gpus"].size());
    } else {
        EXPECT_EQ(count, std::string::npos);
        EXPECT_TRUE(parsed["gpus"].empty());
    }
}

std::string osReleasePrettyName() {
    std::ifstream in("/etc/os-release");
    for (std::string line; std::getline(in, line);)
        if (line.rfind("PRETTY_NAME=", 0) == 0) {
            std::string value = line.substr(12);
            if (value.size() >= 2 && value.front() == '"') value = value.substr(1, value.size() - 2);
            return value;
        }
    return "";
}

// The system part comes from this machine; a GPU without PCI ids, bus or known bus width shows no such rows,
// and no row ever shows a zero vendor id, bus -1 or a zero width: the text holds none whatever GPUs this machine has.
TEST_F(BatchReports, SystemAndGpuPartsDescribeThisMachine) {
    const ProgramRun run = runProgram(LUMENSCOPE_BINARY, dir, {"/exp_txt_report", "/exp_json_report"});
    EXPECT_EQ(run.exitCode, 0);
    const nlohmann::json parsed = nlohmann::json::parse(readWhole(dir / "report.json"), nullptr, false);
    ASSERT_FALSE(parsed.is_discarded());
    const nlohmann::json& system = parsed["system"];
    EXPECT_FALSE(system["cpu_name"].get<std::string>().empty());
    EXPECT_GT(system["cpu_logical_cores"].get<int>(), 0);
    EXPECT_GT(system["cpu_family"].get<int>(), 0);
    EXPECT_GT(system["installed_memory_mb"].get<int>(), 0);
    const std::string pretty = osReleasePrettyName();
    if (!pretty.empty()) {
        EXPECT_NE(system["os_description"].get<std::string>().find(pretty), std::string::npos);
    }

    const std::string text = readWhole(dir / "report.txt");
    EXPECT_NE(text.find("- CPU Name: " + system["cpu_name"].get<std::string>() + "\n"), std::string::npos);
    EXPECT_NE(text.find("- CPU logical cores: " + std::to_string(system["cpu_logical_cores"].get<int>())),
              std::string::npos);
    EXPECT_EQ(text.find("  - Device ID:    0-   0"), std::string::npos);
    EXPECT_EQ(text.find("  - Bus Id: -1"), std::string::npos);
    EXPECT_EQ(text.find("  - Memory bus width: 0-bit"), std::string::npos);
}

TEST_F(BatchReports, EachOptionWritesOnlyItsOwnFile) {
    const ProgramRun run = runProgram(LUMENSCOPE_BINARY, dir, {"/exp_json_report"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(fs::exists(dir / "report.json"));
    EXPECT_FALSE(fs::exists(dir / "report.txt"));
    EXPECT_FALSE(fs::exists(dir / "report.xml"));
    // No window either: the batch branch never reaches the end of the interactive start.
    for (const std::string& line : run.logLines) EXPECT_NE(logMessage(line), "Lumenscope startup ok.");
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

// A report that cannot be written used to vanish without a word; a script now finds one stderr line per file.
TEST_F(BatchReports, AnUnwritableDirectoryGivesOneStderrLinePerReportAndExitsZero) {
    const UnwritableDirectory readOnly("batch_reports_read_only");
    const ProgramRun run = runProgram(LUMENSCOPE_BINARY, readOnly.path(),
                                      {"/exp_txt_report", "/exp_xml_report", "/exp_json_report", "/no_online_check"});
    EXPECT_EQ(run.exitCode, 0);
    const std::vector<std::string> lines = linesOf(run.errorText);
    for (const char* file : {"report.xml", "report.txt", "report.json"}) {
        const auto line = std::find_if(lines.begin(), lines.end(), [file](const std::string& l) {
            return l.rfind(std::string("Lumenscope: could not write ") + file + ": ", 0) == 0;
        });
        ASSERT_NE(line, lines.end()) << file << " in:\n" << run.errorText;
        const std::string reason = line->substr(line->rfind(": ") + 2);
        EXPECT_TRUE(reason == "Permission denied" || reason == "Read-only file system") << *line;
        EXPECT_FALSE(fs::exists(readOnly.path() / file));
    }
}

// On a full disk report.txt used to be cut mid-line and report.json left at 0 bytes.
TEST_F(BatchReports, AWriteRefusedPartWayKeepsThePreviousReports) {
    for (const char* file : {"report.txt", "report.xml", "report.json"})
        std::ofstream(dir / file) << "previous run\n";
    const auto smallFiles = [] {
        signal(SIGXFSZ, SIG_IGN);  // a write past the limit then fails with EFBIG
        const rlimit limit{2048, 2048};
        setrlimit(RLIMIT_FSIZE, &limit);
    };
    const ProgramRun run = runProgram(LUMENSCOPE_BINARY, dir,
                                      {"/exp_txt_report", "/exp_xml_report", "/exp_json_report", "/no_online_check"},
                                      {}, smallFiles);
    EXPECT_EQ(run.exitCode, 0);
    for (const char* file : {"report.txt", "report.xml", "report.json"}) {
        EXPECT_EQ(readWhole(dir / file), "previous run\n") << file;
        EXPECT_NE(run.errorText.find(std::string("Lumenscope: could not write ") + file + ": File too large\n"),
                  std::string::npos)
            << run.errorText;
    }
    for (const auto& entry : fs::directory_iterator(dir))  // no temporary file stays behind
        EXPECT_EQ(entry.path().filename().string().find(".tmp"), std::string::npos) << entry.path();
}

// A link named report.txt used to be followed: the run overwrote the file it pointed at.
TEST_F(BatchReports, ALinkNamedReportTxtIsReplacedNotFollowed) {
    const fs::path victim = dir / "elsewhere.txt";
    std::ofstream(victim) << "not a report\n";
    fs::create_symlink(victim, dir / "report.txt");
    const ProgramRun run = runProgram(LUMENSCOPE_BINARY, dir, {"/exp_txt_report", "/no_online_check"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.errorText, "");
    EXPECT_EQ(readWhole(victim), "not a report\n");
    EXPECT_FALSE(fs::is_symlink(dir / "report.txt"));
    EXPECT_EQ(readWhole(dir / "report.txt").rfind("===================================================\n", 0), 0u);
}

}  // namespace
