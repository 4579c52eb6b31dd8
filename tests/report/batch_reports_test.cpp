#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "integration/program_runner.h"

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
    EXPECT_EQ(xml.rfind("<?xml version=\"1.0\" encoding=\"ISO-8859-1\" standalone=\"yes\"?>\n", 0), 0u);
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

// The system part comes from this machine; a GPU without PCI ids, bus or known bus width shows no such rows.
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
    for (const nlohmann::json& gpu : parsed["gpus"]) {
        if (!gpu["vendor_id"].is_null()) continue;
        EXPECT_EQ(text.find("  - Device ID:    0-   0"), std::string::npos);
        EXPECT_EQ(text.find("  - Bus Id: -1"), std::string::npos);
        EXPECT_EQ(text.find("  - Memory bus width: 0-bit"), std::string::npos);
    }
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

}  // namespace
