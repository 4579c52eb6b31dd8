#pragma once

#include <cstdint>

// Frame-rate figures of one demo run. An FPS sample is the number of frames presented in a stretch of at
// least a second; what a stretch runs over a second is dropped, not carried into the next one.
struct FrameStats {
    uint32_t elapsedMs = 0;         // since the frame loop began
    uint32_t totalFrames = 0;       // frames presented
    uint32_t lastTimeMs = 0;        // timer value at the last loop round
    uint32_t framesThisSecond = 0;  // since the last sample
    uint32_t msThisSecond = 0;      // since the last sample
    uint32_t currentFps = 0;        // the last sample
    uint32_t minFps = 10000;
    uint32_t maxFps = 0;
    uint32_t sumFps = 0;
    uint32_t avgFps = 0;  // sumFps / sampleCount, integer division
    uint32_t sampleCount = 0;
    bool statsValid = false;  // true from the first sample on

    // Start of a loop round: moves the clocks to the timer value `nowMs` and returns the milliseconds since
    // the previous round.
    uint32_t advanceTo(uint32_t nowMs);
    // After a frame was presented: counts it, and takes a sample once the stretch has reached a second.
    // True when a sample was taken.
    bool countPresentedFrame();
};

// Whether a benchmark run of `durationMs` is over; 0 or less means the demo runs until it is closed.
bool benchDurationReached(const FrameStats& stats, int32_t durationMs);
