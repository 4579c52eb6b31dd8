#include <gtest/gtest.h>
#include <sys/inotify.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>

#include "integration/monitor_child.h"
#include "integration/program_runner.h"

// The monitor, --json and --textfile of the built program on fixture machines, NVIDIA ones through the fake
// management library. Expected values are worked out here from the fixture's own files.
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

const std::string kFixtures = SYSFS_FIXTURES;
const std::string kRx6800Device = "/sys/devices/pci0000:00/0000:00:01.0/0000:03:00.0";

std::string readWhole(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

double numberIn(const fs::path& path) { return std::stod(readWhole(path)); }

// The MHz of the line a pp_dpm_* file marks with '*' ("1: 1815Mhz *").
double markedClockMhz(const fs::path& path) {
    std::istringstream in(readWhole(path));
    for (std::string line; std::getline(in, line);)
        if (line.find('*') != std::string::npos) return std::stod(line.substr(line.find(':') + 1));
    return -1;
}

// "gpu 0 KEY VALUE" lines of a fake management library setting file.
std::map<std::string, double> nvmlSettings(const fs::path& path) {
    std::map<std::string, double> values;
    std::istringstream in(readWhole(path));
    for (std::string line; std::getline(in, line);) {
        std::istringstream words(line);
        std::string gpu, index, key, value;
        if (words >> gpu >> index >> key >> value && gpu == "gpu" && index == "0")
            values[key] = std::strtod(value.c_str(), nullptr);
    }
    return values;
}

std::vector<std::pair<std::string, std::string>> fakeNvmlEnvironment() {
    const char* inherited = std::getenv("LD_LIBRARY_PATH");
    return {{"LD_LIBRARY_PATH", std::string(FAKE_NVML_LIBRARY_DIR) + (inherited ? std::string(":") + inherited : "")},
            {"FAKE_NVML_CONFIG", std::string(NVML_FIXTURES) + "/nvidia-desktop.conf"}};
}

std::vector<std::string> cellsOf(const std::string& line) {
    std::vector<std::string> cells;
    std::stringstream in(line);
    for (std::string cell; std::getline(in, cell, ',');) cells.push_back(cell);
    if (!line.empty() && line.back() == ',') cells.emplace_back();
    return cells;
}

class MonitorRun : public ::testing::Test {
protected:
    fs::path dir = fs::temp_directory_path() / ("monitor_" + std::to_string(getpid()) + "_" +
                                                ::testing::UnitTest::GetInstance()->current_test_info()->name());
    void SetUp() override {
        fs::remove_all(dir);
        fs::create_directories(dir / "work");
    }
    void TearDown() override {
        if (!HasFailure()) fs::remove_all(dir);
    }
    // The working directory holds nothing afterwards: no log, no report file.
    void expectNothingWritten() {
        EXPECT_TRUE(fs::is_empty(dir / "work")) << fs::directory_iterator(dir / "work")->path();
    }
    std::string errors() { return readWhole(dir / "stderr.txt"); }
};

TEST_F(MonitorRun, CsvGivesAHeaderThenOneLinePerGpuPerTickWithTheFixturesValues) {
    MonitorChild monitor(LUMENSCOPE_BINARY, (dir / "work").string(),
                         {"--monitor", "--count=3", "--interval=100", "--root=" + kFixtures + "/amdgpu-rx6800"}, {},
                         (dir / "stderr.txt").string());
    std::vector<std::string> lines;
    while (auto line = monitor.nextLine(10s)) lines.push_back(*line);
    ASSERT_EQ(monitor.waitForExit(10s), 0) << errors();
    ASSERT_EQ(lines.size(), 1u + 3u) << errors();
    const std::vector<std::string> header = cellsOf(lines[0]);
    const auto column = [&](const std::string& name) {
        const auto at = std::find(header.begin(), header.end(), name);
        EXPECT_NE(at, header.end()) << name;
        return size_t(at - header.begin());
    };
    const fs::path device = kFixtures + "/amdgpu-rx6800" + kRx6800Device;
    const fs::path hwmon = device / "hwmon/hwmon2";
    for (size_t tick = 1; tick < lines.size(); ++tick) {
        const std::vector<std::string> cells = cellsOf(lines[tick]);
        ASSERT_EQ(cells.size(), header.size()) << lines[tick];
        EXPECT_EQ(cells[column("gpu")], "0000:03:00.0");
        EXPECT_EQ(cells[column("suspended")], "0");
        EXPECT_EQ(std::stod(cells[column("core_temperature_c")]), numberIn(hwmon / "temp1_input") / 1000);
        EXPECT_EQ(std::stod(cells[column("fan_rpm")]), numberIn(hwmon / "fan1_input"));
        EXPECT_NEAR(std::stod(cells[column("fan_percent")]),
                    numberIn(hwmon / "pwm1") / numberIn(hwmon / "pwm1_max") * 100, 1e-4);
        EXPECT_EQ(std::stod(cells[column("gpu_load_percent")]), numberIn(device / "gpu_busy_percent"));
        EXPECT_EQ(std::stod(cells[column("current_gpu_clock_mhz")]), markedClockMhz(device / "pp_dpm_sclk"));
        EXPECT_EQ(std::stod(cells[column("current_memory_clock_mhz")]), markedClockMhz(device / "pp_dpm_mclk"));
        // Unknown readings are empty cells, never 0.
        EXPECT_EQ(cells[column("board_temperature_c")], "");
    }
    expectNothingWritten();
    // Nothing of the host's either: its libdrm_amdgpu is not asked on the fixture's stand-in device node.
    EXPECT_EQ(errors(), "");
}

TEST_F(MonitorRun, JsonLinesCarryTheDriversValuesInTheirUnits) {
    MonitorChild monitor(LUMENSCOPE_BINARY, (dir / "work").string(),
                         {"--monitor", "--format=jsonl", "--count=2", "--interval=100",
                          "--root=" + kFixtures + "/nvidia-desktop"},
                         fakeNvmlEnvironment(), (dir / "stderr.txt").string());
    std::vector<std::string> lines;
    while (auto line = monitor.nextLine(10s)) lines.push_back(*line);
    ASSERT_EQ(monitor.waitForExit(10s), 0) << errors();
    ASSERT_EQ(lines.size(), 2u) << errors();
    const std::map<std::string, double> nvml = nvmlSettings(std::string(NVML_FIXTURES) + "/nvidia-desktop.conf");
    for (const std::string& line : lines) {
        const nlohmann::json gpu = nlohmann::json::parse(line);
        EXPECT_EQ(gpu["gpu"], "0000:01:00.0");
        EXPECT_EQ(gpu["suspended"], false);
        EXPECT_EQ(gpu["core_temperature_c"], nvml.at("temp"));
        EXPECT_EQ(gpu["temperatures_c"]["edge"], nvml.at("temp"));
        EXPECT_EQ(gpu["fan_rpm"], nvml.at("rpm"));
        EXPECT_EQ(gpu["fan_percent"], nvml.at("fan"));
        EXPECT_EQ(gpu["gpu_load_percent"], nvml.at("util_gpu"));
        EXPECT_EQ(gpu["current_gpu_clock_mhz"], nvml.at("clock_gfx"));
        EXPECT_EQ(gpu["current_memory_clock_mhz"], nvml.at("clock_mem"));
        EXPECT_EQ(gpu["power_watts"], nvml.at("power") / 1000);     // milliwatts
        EXPECT_EQ(gpu["power_limit_watts"], nvml.at("enforced") / 1000);
        EXPECT_EQ(gpu["energy_joules"], nvml.at("energy") / 1000);  // millijoules
        EXPECT_EQ(gpu["memory_total_mb"], nvml.at("memory_mb"));
        EXPECT_EQ(gpu["memory_used_mb"], nvml.at("memory_mb") - nvml.at("free_mb"));
        EXPECT_TRUE(gpu["board_temperature_c"].is_null());
        // ISO 8601 in UTC with milliseconds.
        EXPECT_EQ(gpu["timestamp"].get<std::string>().size(), 24u) << gpu["timestamp"];
    }
    expectNothingWritten();
}

// The eight-card machine: one line per card per tick, its sleeping card marked, every card its own address.
TEST_F(MonitorRun, EightCardsGiveEightLinesPerTick) {
    std::vector<std::pair<std::string, std::string>> env = fakeNvmlEnvironment();
    env[1].second = std::string(NVML_FIXTURES) + "/eight-gpus.conf";
    MonitorChild monitor(LUMENSCOPE_BINARY, (dir / "work").string(),
                         {"--monitor", "--format=jsonl", "--count=2", "--interval=100",
                          "--root=" + kFixtures + "/eight-gpus"},
                         env, (dir / "stderr.txt").string());
    std::vector<nlohmann::json> lines;
    while (auto line = monitor.nextLine(10s)) lines.push_back(nlohmann::json::parse(*line));
    ASSERT_EQ(monitor.waitForExit(10s), 0) << errors();
    ASSERT_EQ(lines.size(), 16u);
    std::map<std::string, int> linesPerCard;
    int asleep = 0, withPower = 0;
    for (const nlohmann::json& gpu : lines) {
        ++linesPerCard[gpu["gpu"].get<std::string>()];
        asleep += gpu["suspended"].get<bool>();
        withPower += !gpu["power_watts"].is_null();
    }
    EXPECT_EQ(linesPerCard.size(), 8u);
    for (const auto& [card, count] : linesPerCard) EXPECT_EQ(count, 2) << card;
    EXPECT_EQ(asleep, 2);  // the one sleeping card, at each tick
    EXPECT_GE(withPower, 2 * 2);  // the NVIDIA cards at least
}

// Opens of files and folders in a set of directories, as the kernel reports them.
class OpenWatch {
public:
    OpenWatch() : m_fd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}
    ~OpenWatch() {
        if (m_fd >= 0) close(m_fd);
    }
    OpenWatch(const OpenWatch&) = delete;
    OpenWatch& operator=(const OpenWatch&) = delete;
    bool watch(const std::string& path) { return m_fd >= 0 && inotify_add_watch(m_fd, path.c_str(), IN_OPEN) >= 0; }
    size_t opens() {
        size_t count = 0;
        alignas(inotify_event) char buffer[8192];
        for (ssize_t got; (got = read(m_fd, buffer, sizeof buffer)) > 0;)
            for (ssize_t at = 0; at < got;) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
                count += (event->mask & IN_OPEN) != 0;
                at += ssize_t(sizeof(inotify_event) + event->len);
            }
        return count;
    }

private:
    int m_fd;
};

// While the card sleeps, no tick opens any of its files; once it wakes, the ticks read it. SIGTERM then ends
// the run with status 0.
TEST_F(MonitorRun, ASleepingGpuIsNeverOpenedAndSigtermEndsTheRun) {
    const fs::path root = dir / "machine";
    fs::copy(kFixtures + "/amdgpu-rx6800", root, fs::copy_options::recursive | fs::copy_options::copy_symlinks);
    const fs::path device = root.string() + kRx6800Device;
    std::ofstream(device / "power/runtime_status") << "suspended\n";

    MonitorChild monitor(LUMENSCOPE_BINARY, (dir / "work").string(),
                         {"--monitor", "--interval=100", "--root=" + root.string()}, {}, (dir / "stderr.txt").string());
    ASSERT_TRUE(monitor.nextLine(10s)) << errors();  // the header
    ASSERT_TRUE(monitor.nextLine(10s)) << errors();  // the first tick: start-up is over
    OpenWatch watch;
    ASSERT_TRUE(watch.watch(device.string()));
    size_t watched = 0;
    for (const auto& entry : fs::recursive_directory_iterator(device)) {
        if (!entry.is_directory() || entry.path().filename() == "power") continue;
        ASSERT_TRUE(watch.watch(entry.path().string())) << entry.path();
        ++watched;
    }
    EXPECT_GT(watched, 1u);
    watch.opens();  // the walk above
    for (int tick = 0; tick < 3; ++tick) {
        const std::optional<std::string> line = monitor.nextLine(10s);
        ASSERT_TRUE(line);
        EXPECT_NE(line->find(",0000:03:00.0,"), std::string::npos) << *line;
        EXPECT_EQ(cellsOf(*line)[3], "1") << *line;
        EXPECT_EQ(line->substr(line->find(",1,") + 3).find_first_not_of(','), std::string::npos) << *line;
    }
    EXPECT_EQ(watch.opens(), 0u);

    std::ofstream(device / "power/runtime_status") << "active\n";
    bool awake = false;
    for (int tick = 0; tick < 50 && !awake; ++tick) {
        const std::optional<std::string> line = monitor.nextLine(10s);
        ASSERT_TRUE(line);
        awake = cellsOf(*line)[3] == "0";
    }
    EXPECT_TRUE(awake);
    EXPECT_GT(watch.opens(), 0u);  // the watch sees the reads of an awake card

    kill(monitor.pid(), SIGTERM);
    EXPECT_EQ(monitor.waitForExit(5s), 0) << errors();
    EXPECT_EQ(errors(), "");
}

TEST_F(MonitorRun, SigintEndsALongWaitWithStatusZero) {
    MonitorChild monitor(LUMENSCOPE_BINARY, (dir / "work").string(),
                         {"--monitor", "--interval=60000", "--root=" + kFixtures + "/amdgpu-rx6800"}, {},
                         (dir / "stderr.txt").string());
    ASSERT_TRUE(monitor.nextLine(10s));
    ASSERT_TRUE(monitor.nextLine(10s));
    kill(monitor.pid(), SIGINT);
    // Generous: the point is that the minute-long wait does not hold it.
    EXPECT_EQ(monitor.waitForExit(5s), 0) << errors();
}

TEST_F(MonitorRun, EndsWithStatusZeroWhenTheReaderGoesAway) {
    const std::string pipeline = "set -o pipefail; '" + std::string(LUMENSCOPE_BINARY) +
                                 "' --monitor --interval=100 --root='" + kFixtures + "/two-identical' | head -n 3";
    MonitorChild shell("/bin/bash", (dir / "work").string(), {"-c", pipeline}, {}, (dir / "stderr.txt").string());
    std::vector<std::string> lines;
    while (auto line = shell.nextLine(10s)) lines.push_back(*line);
    EXPECT_EQ(lines.size(), 3u);
    EXPECT_EQ(shell.waitForExit(10s), 0) << errors();
    EXPECT_EQ(errors(), "");
}

TEST_F(MonitorRun, JsonPrintsTheBatchReportsJsonAndWritesNoFile) {
    const std::string root = "--root=" + kFixtures + "/nvidia-desktop";
    const ProgramRun printed = runProgram(LUMENSCOPE_BINARY, dir / "work", {"--json", root}, fakeNvmlEnvironment());
    ASSERT_EQ(printed.exitCode, 0) << printed.errorText;
    expectNothingWritten();
    fs::create_directories(dir / "batch");
    const ProgramRun batch =
        runProgram(LUMENSCOPE_BINARY, dir / "batch", {"/exp_json_report", root}, fakeNvmlEnvironment());
    ASSERT_EQ(batch.exitCode, 0);
    nlohmann::json fromStdout = nlohmann::json::parse(printed.outputText, nullptr, false);
    nlohmann::json fromFile = nlohmann::json::parse(readWhole(dir / "batch/report.json"), nullptr, false);
    ASSERT_FALSE(fromStdout.is_discarded());
    ASSERT_FALSE(fromFile.is_discarded());
    // Measured anew by every run.
    fromStdout["system"].erase("cpu_speed_mhz");
    fromFile["system"].erase("cpu_speed_mhz");
    EXPECT_EQ(fromStdout, fromFile);
    EXPECT_EQ(fromStdout["gpus"][0]["name"], "NVIDIA GeForce RTX 3090");

    // The monitor's JSON Lines name every live reading as the report does, with the same value.
    const ProgramRun monitor = runProgram(LUMENSCOPE_BINARY, dir / "work",
                                          {"--monitor", "--count=1", "--format=jsonl", root}, fakeNvmlEnvironment());
    ASSERT_EQ(monitor.exitCode, 0) << monitor.errorText;
    const nlohmann::json line = nlohmann::json::parse(monitor.outputText, nullptr, false);
    ASSERT_FALSE(line.is_discarded()) << monitor.outputText;
    const nlohmann::json& live = fromFile["gpus"][0]["live"];
    ASSERT_FALSE(live.empty());
    for (const auto& [key, value] : live.items()) {
        ASSERT_TRUE(line.contains(key)) << key;
        EXPECT_EQ(line[key], value) << key;
    }
}

TEST_F(MonitorRun, TextfileWritesAnExpositionPromtoolAcceptsWithTheDriversValues) {
    const fs::path target = dir / "bench_log_results.prom";
    const ProgramRun run =
        runProgram(LUMENSCOPE_BINARY, dir / "work",
                   {"--textfile=" + target.string(), "--root=" + kFixtures + "/nvidia-desktop"}, fakeNvmlEnvironment());
    ASSERT_EQ(run.exitCode, 0) << run.errorText;
    expectNothingWritten();
    const std::string text = readWhole(target);
    const std::map<std::string, double> nvml = nvmlSettings(std::string(NVML_FIXTURES) + "/nvidia-desktop.conf");
    const std::string power = "lumenscope_gpu_power_watts{gpu=\"0000:01:00.0\"} ";
    ASSERT_NE(text.find(power), std::string::npos) << text;
    EXPECT_EQ(std::stod(text.substr(text.find(power) + power.size())), nvml.at("power") / 1000);

    const ProgramRun check = runProgram("/usr/bin/promtool", dir, {"check", "metrics"}, {}, [&] {
        const int in = open(target.c_str(), O_RDONLY);
        dup2(in, STDIN_FILENO);
    });
    ASSERT_NE(check.exitCode, 127) << "promtool is missing: tools/install_deps.sh installs prometheus";
    EXPECT_EQ(check.exitCode, 0) << check.outputText << check.errorText;
}

TEST_F(MonitorRun, AnUnknownTwoDashOptionIsNamedAndEndsWithStatusTwo) {
    const ProgramRun run = runProgram(LUMENSCOPE_BINARY, dir / "work", {"--monitor", "--interval=fast"});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.errorText, "lumenscope: --interval needs a whole number of milliseconds, at least 100\n");
    EXPECT_EQ(run.outputText, "");
    expectNothingWritten();
}

}  // namespace
