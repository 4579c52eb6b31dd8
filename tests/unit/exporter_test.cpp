#include <gtest/gtest.h>
#include <sys/wait.h>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "exporter/metrics_text.h"
#include "exporter/monitor_lines.h"
#include "exporter/shared_live_sample.h"
#include "exporter/text_file_writer.h"

namespace {

using namespace Kalidornm;
namespace fs = std::filesystem;

// An awake NVIDIA card with most readings, a name that needs escaping, and a sleeping AMD card.
MachineSnapshot twoCards() {
    MachineSnapshot machine;
    GpuSnapshot awake;
    awake.name = "Board \"A\\B\"\nrev";
    awake.pciAddress = "0000:01:00.0";
    awake.hasPciIds = true;
    awake.vendorId = 0x10DE;
    awake.driverVersion = "535.104.05";
    awake.biosVersion = "94.02.42.00.A9";
    LiveSample& l = awake.live;
    l.temperaturesC = {{"edge", 38.0f}, {"junction", 51.5f}};
    l.hotspotTemperatureC = 51.5f;
    l.fanPercent = 35.0f;
    l.fanRpm = 1250.0f;
    l.gpuLoadPercent = 4.0f;
    l.currentGpuClockMhz = 210.0f;
    l.requestedGpuClockMhz = 1395.0f;
    l.currentMemClockMhz = 405.0f;
    l.voltagesV = {{"vddgfx", 0.862f}};
    l.powerWatts = 32.0f;
    l.powerLimitWatts = 350.0f;
    l.energyJoules = 86400.0;
    l.memoryUsedMb = 1576;
    l.memoryTotalMb = 24576;
    l.throttleReasons = {"gpu_idle", "sw_power_cap"};
    machine.gpus.push_back(awake);

    GpuSnapshot asleep;
    asleep.name = "AMD Radeon RX 6600";
    asleep.pciAddress = "0000:03:00.0";
    asleep.hasPciIds = true;
    asleep.vendorId = 0x1002;
    asleep.live.suspended = true;
    machine.gpus.push_back(asleep);
    return machine;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

// Sample lines by series text ("name{labels}") and the families' HELP and TYPE counts.
struct Exposition {
    std::map<std::string, std::string> samples;
    std::map<std::string, int> helps, types;
};

Exposition parsed(const std::string& text) {
    Exposition e;
    for (const std::string& line : linesOf(text)) {
        if (line.rfind("# HELP ", 0) == 0) ++e.helps[line.substr(7, line.find(' ', 7) - 7)];
        else if (line.rfind("# TYPE ", 0) == 0) ++e.types[line.substr(7, line.find(' ', 7) - 7)];
        else e.samples[line.substr(0, line.rfind(' '))] = line.substr(line.rfind(' ') + 1);
    }
    return e;
}

TEST(MetricsText, WritesBaseUnitsLeavesOutTheUnknownAndGivesASleepingGpuItsInfoAndSuspendedOnly) {
    const std::string text = exporter::renderMetricsText(twoCards(), 0.25);
    const Exposition e = parsed(text);
    const std::string gpu = "gpu=\"0000:01:00.0\"";
    EXPECT_EQ(e.samples.at("lumenscope_gpu_temperature_celsius{" + gpu + ",sensor=\"edge\"}"), "38.0");
    EXPECT_EQ(e.samples.at("lumenscope_gpu_temperature_celsius{" + gpu + ",sensor=\"junction\"}"), "51.5");
    EXPECT_EQ(std::stod(e.samples.at("lumenscope_gpu_fan_speed_ratio{" + gpu + "}")), 0.35);
    EXPECT_EQ(std::stod(e.samples.at("lumenscope_gpu_fan_speed_rpm{" + gpu + "}")), 1250);
    EXPECT_EQ(std::stod(e.samples.at("lumenscope_gpu_utilization_ratio{" + gpu + "}")), 0.04);
    EXPECT_EQ(std::stod(e.samples.at("lumenscope_gpu_clock_hertz{" + gpu + ",clock=\"graphics\"}")), 210e6);
    EXPECT_EQ(std::stod(e.samples.at("lumenscope_gpu_clock_hertz{" + gpu + ",clock=\"graphics_requested\"}")),
              1395e6);
    EXPECT_EQ(std::stod(e.samples.at("lumenscope_gpu_clock_hertz{" + gpu + ",clock=\"memory\"}")), 405e6);
    EXPECT_EQ(std::stod(e.samples.at("lumenscope_gpu_voltage_volts{" + gpu + ",rail=\"vddgfx\"}")), 0.862);
    EXPECT_EQ(std::stod(e.samples.at("lumenscope_gpu_power_watts{" + gpu + "}")), 32);
    EXPECT_EQ(std::stod(e.samples.at("lumenscope_gpu_power_limit_watts{" + gpu + "}")), 350);
    EXPECT_EQ(std::stod(e.samples.at("lumenscope_gpu_energy_joules_total{" + gpu + "}")), 86400);
    EXPECT_EQ(std::stod(e.samples.at("lumenscope_gpu_memory_used_bytes{" + gpu + "}")), 1576.0 * 1048576);
    EXPECT_EQ(std::stod(e.samples.at("lumenscope_gpu_memory_total_bytes{" + gpu + "}")), 24576.0 * 1048576);
    EXPECT_EQ(e.samples.at("lumenscope_gpu_throttled{" + gpu + ",reason=\"sw_power_cap\"}"), "1.0");
    EXPECT_EQ(e.samples.at("lumenscope_gpu_suspended{" + gpu + "}"), "0.0");
    EXPECT_EQ(e.samples.at("lumenscope_scrape_duration_seconds"), "0.25");
    EXPECT_EQ(e.samples.count("lumenscope_gpu_info{" + gpu +
                              ",vendor=\"nvidia\",name=\"Board \\\"A\\\\B\\\"\\nrev\",driver=\"535.104.05\","
                              "vbios=\"94.02.42.00.A9\"}"),
              1u)
        << text;

    // The sleeping card: its info and suspended 1, nothing else; nothing written as 0 for want of a value.
    size_t sleeping = 0;
    for (const auto& [series, value] : e.samples) {
        if (series.find("0000:03:00.0") == std::string::npos) continue;
        ++sleeping;
        EXPECT_TRUE(series.rfind("lumenscope_gpu_info{", 0) == 0 || series.rfind("lumenscope_gpu_suspended{", 0) == 0)
            << series;
    }
    EXPECT_EQ(sleeping, 2u);
    EXPECT_EQ(e.samples.at("lumenscope_gpu_suspended{gpu=\"0000:03:00.0\"}"), "1.0");

    for (const auto& [family, count] : e.helps) {
        EXPECT_EQ(count, 1) << family;
        EXPECT_EQ(e.types.at(family), 1) << family;
    }
    EXPECT_EQ(e.helps.size(), 15u);
    EXPECT_NE(text.find("# TYPE lumenscope_gpu_energy_joules_total counter\n"), std::string::npos);
}

// promtool, from the prometheus package, reads the exposition as Prometheus would and reports every lint.
TEST(MetricsText, PassesPromtoolsCheck) {
    const fs::path file = fs::path(::testing::TempDir()) / ("exposition_" + std::to_string(getpid()) + ".prom");
    std::ofstream(file) << exporter::renderMetricsText(twoCards(), 0.001);
    const std::string command = "promtool check metrics < " + file.string() + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string output;
    char chunk[512];
    while (size_t n = std::fread(chunk, 1, sizeof chunk, pipe)) output.append(chunk, n);
    const int status = pclose(pipe);
    fs::remove(file);
    ASSERT_TRUE(WIFEXITED(status));
    ASSERT_NE(WEXITSTATUS(status), 127) << "promtool is missing: tools/install_deps.sh installs prometheus";
    EXPECT_EQ(WEXITSTATUS(status), 0) << output;
    EXPECT_EQ(output, "");
}

TEST(MonitorLines, CsvHasOneColumnPerReadingAndSensorFixedAtTheFirstTickAndEmptyCellsForTheUnknown) {
    const MachineSnapshot machine = twoCards();
    const exporter::MonitorColumns columns = exporter::monitorColumns(machine);
    EXPECT_EQ(columns.sensors, (std::vector<std::string>{"edge", "junction"}));
    EXPECT_EQ(columns.rails, std::vector<std::string>{"vddgfx"});

    std::vector<std::string> header;
    std::stringstream headerText(exporter::csvHeader(columns));
    for (std::string cell; std::getline(headerText, cell, ',');) header.push_back(cell);
    ASSERT_EQ(header.size(), 4u + 20u + 2u + 1u + 1u);
    EXPECT_EQ(header.back(), "throttle_reasons\n");
    const auto column = [&](const std::string& name) {
        return size_t(std::find(header.begin(), header.end(), name) - header.begin());
    };

    // A sensor that appears after the first tick gets no column; one that disappears leaves its cell empty.
    MachineSnapshot later = machine;
    later.gpus[0].live.temperaturesC = {{"junction", 52.0f}, {"vram", 60.0f}};
    const auto cells = [](const std::string& line) {
        std::vector<std::string> out;
        std::string cell;
        bool quoted = false;
        for (char c : line.substr(0, line.size() - 1)) {
            if (c == '"') quoted = !quoted;
            if (c == ',' && !quoted) out.push_back(std::exchange(cell, ""));
            else cell += c;
        }
        out.push_back(cell);
        return out;
    };
    const std::vector<std::string> awake = cells(exporter::csvLine(columns, later.gpus[0], "T"));
    ASSERT_EQ(awake.size(), header.size());
    EXPECT_EQ(awake[column("gpu")], "0000:01:00.0");
    EXPECT_EQ(awake[column("name")], "\"Board \"\"A\\B\"\"\nrev\"");
    EXPECT_EQ(awake[column("temperatures_c.edge")], "");
    EXPECT_EQ(awake[column("temperatures_c.junction")], "52.0");
    EXPECT_EQ(awake[column("power_watts")], "32.0");
    EXPECT_EQ(awake[column("core_temperature_c")], "");
    EXPECT_EQ(awake[column("memory_used_mb")], "1576");
    EXPECT_EQ(awake.back(), "gpu_idle;sw_power_cap");

    const std::vector<std::string> asleep = cells(exporter::csvLine(columns, later.gpus[1], "T"));
    ASSERT_EQ(asleep.size(), header.size());
    EXPECT_EQ(asleep[column("suspended")], "1");
    for (size_t i = column("suspended") + 1; i < asleep.size(); ++i) EXPECT_EQ(asleep[i], "") << header[i];
}

TEST(MonitorLines, JsonLinesGiveEveryReadingNullWhenUnknownAndMarkASleepingGpu) {
    const MachineSnapshot machine = twoCards();
    const std::string line = exporter::jsonLine(machine.gpus[0], "2026-11-25T05:39:10.123Z");
    ASSERT_EQ(line.back(), '\n');
    ASSERT_EQ(line.find('\n'), line.size() - 1);
    const nlohmann::json awake = nlohmann::json::parse(line);
    EXPECT_EQ(awake["timestamp"], "2026-11-25T05:39:10.123Z");
    EXPECT_EQ(awake["gpu"], "0000:01:00.0");
    EXPECT_EQ(awake["suspended"], false);
    EXPECT_EQ(awake["power_watts"], 32.0);
    EXPECT_EQ(awake["energy_joules"], 86400.0);
    EXPECT_TRUE(awake["core_temperature_c"].is_null());
    EXPECT_EQ(awake["temperatures_c"]["junction"], 51.5);
    EXPECT_EQ(awake["voltages_v"]["vddgfx"], 0.862);
    EXPECT_EQ(awake["throttle_reasons"], nlohmann::json({"gpu_idle", "sw_power_cap"}));

    const nlohmann::json asleep = nlohmann::json::parse(exporter::jsonLine(machine.gpus[1], "T"));
    EXPECT_EQ(asleep["suspended"], true);
    EXPECT_EQ(asleep.size(), awake.size());
    for (const auto& [key, value] : asleep.items()) {
        if (key != "timestamp" && key != "gpu" && key != "name" && key != "suspended") {
            EXPECT_TRUE(value.is_null()) << key;
        }
    }

    using namespace std::chrono;
    EXPECT_EQ(exporter::isoTimestamp(system_clock::time_point(milliseconds(1795585150007))),
              "2026-11-25T05:39:10.007Z");
}

// However many threads ask at once, the machine is read once per second; the clock is the test's.
TEST(SharedLiveSample, ReadsAtMostOnceASecondHoweverManyCallersAsk) {
    std::atomic<int64_t> nowMs{0};
    std::atomic<int> reads{0};
    exporter::SharedLiveSample shared(
        [&] {
            ++reads;
            return twoCards();
        },
        std::chrono::seconds(1),
        [&] { return std::chrono::steady_clock::time_point(std::chrono::milliseconds(nowMs.load())); });

    std::vector<std::thread> scrapers;
    std::atomic<int> badAnswers{0};
    for (int t = 0; t < 8; ++t)
        scrapers.emplace_back([&] {
            for (int i = 0; i < 200; ++i)
                if (shared.metricsText().find("lumenscope_gpu_power_watts{") == std::string::npos) ++badAnswers;
        });
    for (std::thread& t : scrapers) t.join();
    EXPECT_EQ(reads.load(), 1);
    EXPECT_EQ(badAnswers.load(), 0);

    nowMs = 999;
    shared.metricsText();
    EXPECT_EQ(reads.load(), 1);
    nowMs = 1000;
    shared.metricsText();
    shared.metricsText();
    EXPECT_EQ(reads.load(), 2);
    EXPECT_EQ(shared.readCount(), 2u);
}

TEST(TextFileWriter, ReplacesTheFileWholeAndLeavesNoTemporaryFileBehind) {
    const fs::path dir = fs::path(::testing::TempDir()) / ("textfile_" + std::to_string(getpid()));
    fs::remove_all(dir);
    fs::create_directories(dir);
    const fs::path target = dir / "lumenscope.prom";
    std::ofstream(target) << "old\n";
    std::string error;
    ASSERT_TRUE(exporter::writeTextFileAtomically(target.string(), "new text\n", &error)) << error;
    std::ifstream in(target);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "new text\n");
    EXPECT_EQ(fs::status(target).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read | fs::perms::others_read);
    EXPECT_EQ(std::distance(fs::directory_iterator(dir), fs::directory_iterator()), 1);

    EXPECT_FALSE(exporter::writeTextFileAtomically((dir / "missing" / "x.prom").string(), "x", &error));
    EXPECT_NE(error.find("missing"), std::string::npos) << error;
    fs::remove_all(dir);
}

}  // namespace
