#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/fixture_library.h"

namespace {

using namespace Kalidornm;

// The live-only start finds the same cards and reads the same live values as the full start, and leaves out
// what the monitor and the metrics have no use for: the CPU clock (whose measurement waits out a window), the
// OpenGL facts and the display mode.
TEST(LiveOnlyStart, FindsTheSameCardsAndLiveValuesWithoutTheCpuClockOrOpenGl) {
    const FixtureMachineSources machine{"nvidia-desktop", std::string(NVML_FIXTURES) + "/nvidia-desktop.conf", true};
    MachineSnapshot full, liveOnly;
    {
        FixtureLibrary started(machine);
        ASSERT_TRUE(started.started());
        EXPECT_FALSE(started.library().isLiveOnly());
        started.library().refreshLiveSample();
        full = started.library().snapshot();
    }
    {
        setenv("FAKE_NVML_CONFIG", machine.nvmlSettings.c_str(), 1);
        Kalidor::setSources(FixtureLibrary::sourcesFor(machine));
        Kalidor* library = Kalidor::getInstance();
        ASSERT_NE(library, nullptr);
        ASSERT_TRUE(library->startupLiveOnly());
        EXPECT_TRUE(library->isLiveOnly());
        library->refreshLiveSample();
        liveOnly = library->snapshot();
        FixtureLibrary::stop();
        unsetenv("FAKE_NVML_CONFIG");
        EXPECT_FALSE(Kalidor::getInstance()->isLiveOnly());
        Kalidor::destroyInstance();
    }
#if defined(__x86_64__) || defined(__i386__)
    EXPECT_GT(full.system.cpuSpeedMhz, 0);
#endif
    EXPECT_EQ(liveOnly.system.cpuSpeedMhz, 0);
    EXPECT_TRUE(liveOnly.gl.renderer.empty());
    EXPECT_TRUE(liveOnly.gl.catalogue.empty());
    EXPECT_EQ(liveOnly.displayMode.width, 0);

    ASSERT_EQ(liveOnly.gpus.size(), full.gpus.size());
    ASSERT_EQ(liveOnly.gpus.size(), 1u);
    for (size_t i = 0; i < full.gpus.size(); ++i) {
        const GpuSnapshot &a = full.gpus[i], &b = liveOnly.gpus[i];
        EXPECT_EQ(b.name, a.name);
        EXPECT_EQ(b.pciAddress, a.pciAddress);
        EXPECT_EQ(b.live.coreTemperatureC, a.live.coreTemperatureC);
        EXPECT_EQ(b.live.currentGpuClockMhz, a.live.currentGpuClockMhz);
        EXPECT_EQ(b.live.powerWatts, a.live.powerWatts);
        EXPECT_EQ(b.live.memoryUsedMb, a.live.memoryUsedMb);
    }
    EXPECT_EQ(liveOnly.gpus[0].pciAddress, "0000:01:00.0");
    EXPECT_TRUE(liveOnly.gpus[0].live.powerWatts);
}

}  // namespace
