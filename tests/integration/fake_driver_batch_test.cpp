#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <vector>

// The batch program against the fake OpenCL and CUDA drivers and the fake Vulkan loader in each of their
// failure modes. Whatever the drivers answer, it exits 0, writes all three reports, the JSON parses, and the
// counts the log gives are the records the report holds. In the sanitizer build a report from AddressSanitizer, LeakSanitizer or
// UBSan fails the run; leaks of libraries that are not ours are named in tests/sanitizers/lsan.supp.
namespace {

namespace fs = std::filesystem;

struct BatchRun {
    int exitCode = -1;
    std::string errors;  // stderr
};

std::string readWhole(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

BatchRun runBatch(const fs::path& dir, const std::vector<std::pair<std::string, std::string>>& env) {
    const fs::path errorsPath = dir / "stderr.txt";
    const pid_t child = fork();
    if (child == 0) {
        if (chdir(dir.c_str()) != 0) _exit(126);
        const int errors = open(errorsPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        if (errors < 0 || dup2(errors, STDERR_FILENO) < 0) _exit(126);
        for (const auto& [name, value] : env) setenv(name.c_str(), value.c_str(), 1);
        const char* argv[] = {LUMENSCOPE_BINARY, "/exp_txt_report", "/exp_xml_report", "/exp_json_report", nullptr};
        execv(LUMENSCOPE_BINARY, const_cast<char**>(argv));
        _exit(127);
    }
    int status = 0;
    waitpid(child, &status, 0);
    BatchRun run;
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    run.errors = readWhole(errorsPath);
    return run;
}

// The number in the first log line that matches, -1 when there is none.
long loggedCount(const std::string& log, const std::regex& line) {
    std::smatch match;
    return std::regex_search(log, match, line) ? std::stol(match[1]) : -1;
}

// A mode name each fake knows or treats as its normal machine; "system" runs the machine's own drivers.
class FakeDriverBatch : public ::testing::TestWithParam<const char*> {
protected:
    fs::path dir = fs::temp_directory_path() /
                   ("fake_driver_batch_" + std::string(GetParam()) + "_" + std::to_string(getpid()));
    void SetUp() override {
        fs::remove_all(dir);
        fs::create_directories(dir);
    }
    void TearDown() override {
        if (!HasFailure()) fs::remove_all(dir);
    }
};

TEST_P(FakeDriverBatch, WritesEveryReportWithoutASanitizerReport) {
    const std::string mode = GetParam();
    std::vector<std::pair<std::string, std::string>> env = {
        {"ASAN_OPTIONS", "detect_leaks=1:fast_unwind_on_malloc=0:log_path=" + (dir / "asan").string()},
        {"LSAN_OPTIONS", std::string("print_suppressions=0:suppressions=") + LSAN_SUPPRESSIONS},
        {"UBSAN_OPTIONS", "print_stacktrace=1:log_path=" + (dir / "ubsan").string()},
    };
    if (mode != "system") {
        const char* path = std::getenv("LD_LIBRARY_PATH");
        env.push_back({"LD_LIBRARY_PATH", std::string(FAKE_DRIVER_DIR) + (path ? ":" + std::string(path) : "")});
        env.push_back({"LUMENSCOPE_FAKE_CL", mode});
        env.push_back({"LUMENSCOPE_FAKE_CUDA", mode});
        env.push_back({"LUMENSCOPE_VULKAN_LOADER", FAKE_VULKAN_LIBRARY});
        env.push_back({"LUMENSCOPE_FAKE_VULKAN", mode});
    }
    const BatchRun run = runBatch(dir, env);
    EXPECT_EQ(run.exitCode, 0) << run.errors;
    for (const auto& entry : fs::directory_iterator(dir)) {
        const std::string name = entry.path().filename().string();
        EXPECT_TRUE(name.rfind("asan.", 0) != 0 && name.rfind("ubsan.", 0) != 0)
            << name << ":\n" << readWhole(entry.path());
    }
    for (const char* marker : {"ERROR: AddressSanitizer", "ERROR: LeakSanitizer", "runtime error:"})
        EXPECT_EQ(run.errors.find(marker), std::string::npos) << run.errors;

    EXPECT_FALSE(readWhole(dir / "report.txt").empty());
    EXPECT_FALSE(readWhole(dir / "report.xml").empty());
    const nlohmann::json json = nlohmann::json::parse(readWhole(dir / "report.json"), nullptr, false);
    ASSERT_FALSE(json.is_discarded()) << "report.json does not parse";

    const std::string log = readWhole(dir / "Lumenscope_log.txt");
    const long platforms = loggedCount(log, std::regex(R"(Found (\d+) OpenCL-capable platform\.)"));
    EXPECT_EQ(json["opencl"]["platforms"].size(), size_t(std::max(platforms, 0L)));
    const long cudaDevices = loggedCount(log, std::regex(R"(Found (\d+) CUDA-capable devices\.)"));
    EXPECT_EQ(json["cuda"]["devices"].size(), size_t(std::max(cudaDevices, 0L)));
    const long vulkanDevices = loggedCount(log, std::regex(R"(Found (\d+) Vulkan device\(s\)\.)"));
    EXPECT_EQ(json["vulkan"]["devices"].size(), size_t(std::max(vulkanDevices, 0L)));
    if (vulkanDevices < 0) {
        EXPECT_NE(json["vulkan"]["status"], "read") << "a section read without its log line";
    }
    // Vulkan is discovered before the GPUs are logged, but its lines are held back to stand after CUDA's.
    const size_t firstVulkanLine = log.find(">> Vulkan");
    const size_t foundVulkan = log.find(" Vulkan device(s).");
    const size_t vulkanStart = std::min(firstVulkanLine, foundVulkan);
    ASSERT_NE(vulkanStart, std::string::npos) << log;
    for (const char* earlier : {"Detected graphics cards", "CUDA", "libcuda"}) {
        const size_t last = log.rfind(earlier);
        if (last != std::string::npos) {
            EXPECT_GT(vulkanStart, last) << earlier << " after Vulkan's lines:\n" << log;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Modes, FakeDriverBatch,
                         ::testing::Values("normal", "errors", "device_errors", "id_fetch_fails", "platform_ids_fail",
                                           "no_platforms", "zero_counts", "huge_counts", "many_counts",
                                           "negative_count", "stub", "unterminated", "long_strings",
                                           "special_chars", "no_devices", "instance_fails", "incomplete",
                                           "missing_entry_points", "no_create_instance", "memory_counts",
                                           "system"),
                         [](const ::testing::TestParamInfo<const char*>& mode) { return std::string(mode.param); });

}  // namespace
