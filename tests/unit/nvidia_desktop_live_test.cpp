#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/fixture_library.h"

namespace {

using namespace Kalidornm;

const std::string kSettings = std::string(NVML_FIXTURES) + "/nvidia-desktop.conf";

// The fixture's settings for GPU 0: each key's value texts, in file order.
std::map<std::string, std::vector<std::string>> gpu0Settings() {
    std::map<std::string, std::vector<std::string>> settings;
    std::ifstream file(kSettings);
    std::string line;
    while (std::getline(file, line)) {
        std::istringstream words(line);
        std::string gpu, index, key, value;
        if (!(words >> gpu >> index >> key) || gpu != "gpu" || index != "0") continue;
        std::getline(words >> std::ws, value);
        settings[key].push_back(value);
    }
    return settings;
}

double number(const std::map<std::string, std::vector<std::string>>& settings, const std::string& key) {
    const auto found = settings.find(key);
    return found == settings.end() ? -1.0 : std::stod(found->second.front(), nullptr);
}

// The desktop machine's P-state rows and live values, each worked out here from the fake driver's settings.
TEST(NvidiaDesktopLive, PstatesAndLiveValuesAreTheDriversInTheirUnits) {
    const auto settings = gpu0Settings();
    ASSERT_TRUE(settings.count("pstate_clocks")) << kSettings;
    FixtureLibrary started({"nvidia-desktop", kSettings});
    Kalidor& library = started.library();
    ASSERT_EQ(library.getGpuCount(), 1u);

    // "<state> <graphics min> <graphics max> <memory min> <memory max>", in ascending state order in the file.
    const std::vector<std::string>& ranges = settings.at("pstate_clocks");
    const std::vector<PerfLevelFacts>& levels = library.snapshot().gpus.at(0).perfLevels;
    ASSERT_EQ(levels.size(), ranges.size());
    for (size_t i = 0; i < ranges.size(); ++i) {
        std::istringstream range(ranges[i]);
        uint32_t id = 0;
        float minGpu = 0, maxGpu = 0, minMem = 0, maxMem = 0;
        range >> id >> minGpu >> maxGpu >> minMem >> maxMem;
        EXPECT_EQ(levels[i].id, id);
        EXPECT_FLOAT_EQ(levels[i].gpuClockMhz, maxGpu) << id;
        EXPECT_FLOAT_EQ(levels[i].memClockMhz, maxMem) << id;
        EXPECT_FLOAT_EQ(levels[i].minGpuClockMhz.value_or(-1), minGpu) << id;
        EXPECT_FLOAT_EQ(levels[i].minMemClockMhz.value_or(-1), minMem) << id;
        EXPECT_FLOAT_EQ(levels[i].vddcVolts, 0.0f) << id;
    }

    library.refreshLiveSample();
    const LiveSample& live = library.snapshot().gpus.at(0).live;
    const double milliwatts = number(settings, "power");
    EXPECT_FLOAT_EQ(live.powerUsagePercent.value_or(-1), float(milliwatts * 100.0 / number(settings, "default_limit")));
    EXPECT_FLOAT_EQ(live.powerWatts.value_or(-1), float(milliwatts / 1000.0));
    EXPECT_FLOAT_EQ(live.powerLimitWatts.value_or(-1), float(number(settings, "enforced") / 1000.0));
    EXPECT_DOUBLE_EQ(live.energyJoules.value_or(-1), number(settings, "energy") / 1000.0);
    EXPECT_EQ(live.memoryTotalMb.value_or(0), uint64_t(number(settings, "memory_mb")));
    EXPECT_EQ(live.memoryUsedMb.value_or(0), uint64_t(number(settings, "memory_mb") - number(settings, "free_mb")));
    ASSERT_EQ(live.temperaturesC.size(), 1u);  // no memory sensor on this card
    EXPECT_EQ(live.temperaturesC[0].name, "edge");
    EXPECT_FLOAT_EQ(live.temperaturesC[0].value, float(number(settings, "temp")));
    EXPECT_EQ(live.throttleReasons, std::vector<std::string>{"gpu_idle"});  // reasons 0x1
    EXPECT_FALSE(live.currentVolts);
    EXPECT_TRUE(live.voltagesV.empty());
}

}  // namespace
