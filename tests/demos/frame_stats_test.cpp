#include <gtest/gtest.h>

#include <vector>

#include "demos/harness/frame_stats.h"

namespace {

// Runs the frame loop's bookkeeping over rounds at the given timer values, as the harness does: advance,
// leave when the duration is reached, else count the frame. Returns the number of frames drawn.
uint32_t runRounds(FrameStats& stats, const std::vector<uint32_t>& timerValues, int32_t durationMs) {
    uint32_t drawn = 0;
    for (uint32_t now : timerValues) {
        stats.advanceTo(now);
        if (benchDurationReached(stats, durationMs)) break;
        ++drawn;
        stats.countPresentedFrame();
    }
    return drawn;
}

std::vector<uint32_t> steps(uint32_t from, uint32_t to, uint32_t step) {
    std::vector<uint32_t> values;
    for (uint32_t t = from; t <= to; t += step) values.push_back(t);
    return values;
}

TEST(FrameStats, ARunOfOneSecondOrLessTakesNoSample) {
    // With a duration of 1000 ms the loop leaves at the round that reaches 1000 ms, before that round
    // would take the first sample: a one-second benchmark reports no frame rate.
    for (uint32_t step : {1u, 7u, 16u, 333u}) {
        FrameStats stats;
        const uint32_t drawn = runRounds(stats, steps(0, 5000, step), 1000);
        EXPECT_GT(drawn, 0u);
        EXPECT_FALSE(stats.statsValid) << step;
        EXPECT_EQ(stats.avgFps, 0u);
        EXPECT_EQ(stats.minFps, 10000u);
        EXPECT_EQ(stats.maxFps, 0u);
        EXPECT_GE(stats.elapsedMs, 1000u);
    }
}

TEST(FrameStats, SamplesCountFramesPerStretchAndDropTheOverhang) {
    FrameStats stats;
    // 10 ms frames for the first stretch: 100 rounds reach 1000 ms at the 100th frame.
    runRounds(stats, steps(10, 1000, 10), 0);
    ASSERT_TRUE(stats.statsValid);
    EXPECT_EQ(stats.currentFps, 100u);
    EXPECT_EQ(stats.msThisSecond, 0u);
    // Then 300 ms frames: the stretch closes at 1200 ms with 4 frames, and the 200 ms beyond the second are
    // not carried into the next stretch.
    runRounds(stats, {1300, 1600, 1900, 2200}, 0);
    EXPECT_EQ(stats.currentFps, 4u);
    EXPECT_EQ(stats.msThisSecond, 0u);
    EXPECT_EQ(stats.sampleCount, 2u);
    EXPECT_EQ(stats.minFps, 4u);
    EXPECT_EQ(stats.maxFps, 100u);
    EXPECT_EQ(stats.avgFps, 52u);
    EXPECT_EQ(stats.totalFrames, 104u);
    // A third sample of 3 frames: the average divides as integers, (100 + 4 + 3) / 3 = 35.
    runRounds(stats, {2600, 3000, 3400}, 0);
    EXPECT_EQ(stats.currentFps, 3u);
    EXPECT_EQ(stats.avgFps, 35u);
    EXPECT_EQ(stats.minFps, 3u);
}

TEST(FrameStats, DurationOfZeroOrLessNeverEndsTheRun) {
    FrameStats stats;
    EXPECT_EQ(runRounds(stats, steps(0, 100000, 500), 0), 201u);
    FrameStats negative;
    EXPECT_EQ(runRounds(negative, steps(0, 100000, 500), -5), 201u);
    FrameStats limited;
    EXPECT_EQ(runRounds(limited, steps(0, 100000, 500), 2500), 5u);
}

TEST(FrameStats, TimerWrapAroundKeepsDeltasSmall) {
    FrameStats stats;
    stats.lastTimeMs = 0xFFFFFFF0u;
    EXPECT_EQ(stats.advanceTo(0x00000010u), 0x20u);
    EXPECT_EQ(stats.elapsedMs, 0x20u);
}

}  // namespace
