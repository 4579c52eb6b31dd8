#include <gtest/gtest.h>

#include "report/online/submission_facts_from_snapshot.h"

namespace {

using namespace online;
using namespace Kalidornm;

// A read that answered sends what it gave and 0 for what it left unknown; a read that did not answer, and
// every live read of a sleeping GPU, sends nothing. The body's format has no "unknown" of its own.
TEST(SubmissionFactsFromSnapshot, AnsweredReadsSendZeroForUnknownsAndUnansweredOnesSendNothing) {
    MachineSnapshot m;
    GpuSnapshot& answered = m.gpus.emplace_back();
    answered.live.temperaturesRead = true;
    answered.live.coreTemperatureC = 61.0f;  // memory and VRM unknown
    answered.live.fanRead = true;
    answered.live.fanPercent = 35.0f;  // no tachometer
    answered.live.loadRead = true;
    answered.live.gpuLoadPercent = 12.0f;
    GpuSnapshot& asleep = m.gpus.emplace_back();
    asleep.live.suspended = true;

    const SubmissionFacts f = submissionFactsFrom(m, {});
    ASSERT_EQ(f.gpus.size(), 2u);
    ASSERT_TRUE(f.gpus[0].temperatures);
    EXPECT_EQ(f.gpus[0].temperatures->coreC, 61.0f);
    EXPECT_EQ(f.gpus[0].temperatures->memoryC, 0.0f);
    EXPECT_EQ(f.gpus[0].fanPercent, 35.0f);
    EXPECT_EQ(f.gpus[0].fanRpm, 0.0f);
    EXPECT_EQ(f.gpus[0].gpuLoadPercent, 12.0f);
    EXPECT_EQ(f.gpus[0].memoryLoadPercent, 0.0f);
    const SubmitGpu& sleeping = f.gpus[1];
    EXPECT_FALSE(sleeping.temperatures || sleeping.fanPercent || sleeping.fanRpm || sleeping.gpuLoadPercent ||
                 sleeping.memoryLoadPercent || sleeping.powerUsagePercent);
}

// The driver's clock and power tables travel as the pairs the body writes; the report's substitution of the
// primary Intel GPU's BIOS is the report's, not the submission's: it sends the GPU's own values.
TEST(SubmissionFactsFromSnapshot, NvidiaTablesGoAsPairsAndEachGpuSendsItsOwnFigures) {
    MachineSnapshot m;
    m.primary.biosVersion = "summary BIOS";
    m.primary.vendorId = 0x8086;
    GpuSnapshot& intel = m.gpus.emplace_back();
    intel.hasPciIds = true, intel.vendorId = 0x8086;
    intel.biosVersion = "own BIOS";
    intel.memoryBusWidthBits.reset();
    GpuSnapshot& nvidia = m.gpus.emplace_back();
    nvidia.nvidia.baseClockMhz = 1395.0f;
    nvidia.nvidia.memoryClockMhz = 9751.0f;
    nvidia.nvidia.boostClockMhz = 1695.0f;  // the driver gave no boost memory clock
    nvidia.nvidia.minPowerTargetPercent = 28.0f;
    nvidia.nvidia.maxPowerTargetPercent = 114.0f;
    nvidia.nvidia.defaultPowerTargetPercent = 100.0f;
    nvidia.perfLevels.push_back(PerfLevelFacts{8, 210.0f, 405.0f, 0.0f, 0.65f, 210.0f, 405.0f});

    const SubmissionFacts f = submissionFactsFrom(m, {});
    EXPECT_EQ(f.gpus[0].biosVersion, "own BIOS");
    EXPECT_EQ(f.gpus[0].memoryBusWidthBits, 0u);
    EXPECT_FALSE(f.gpus[0].baseClocks || f.gpus[0].powerPolicy || f.gpus[0].p0Clocks);
    EXPECT_EQ(f.primary.biosVersion, "summary BIOS");
    EXPECT_EQ(f.primary.vendorId, 0x8086);

    const SubmitGpu& g = f.gpus[1];
    ASSERT_TRUE(g.baseClocks && g.boostClocks && g.powerPolicy);
    EXPECT_EQ(g.baseClocks->gpuMhz, 1395.0f);
    EXPECT_EQ(g.baseClocks->memoryMhz, 9751.0f);
    EXPECT_EQ(g.boostClocks->memoryMhz, 0.0f);
    EXPECT_EQ(g.powerPolicy->defaultPercent, 100.0f);
    ASSERT_EQ(g.perfLevels.size(), 1u);
    EXPECT_EQ(g.perfLevels[0].volts, 0.65f);
}

}  // namespace
