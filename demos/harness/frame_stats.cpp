#include "demos/harness/frame_stats.h"

uint32_t FrameStats::advanceTo(uint32_t nowMs) {
    const uint32_t delta = nowMs - lastTimeMs;
    msThisSecond += delta;
    elapsedMs += delta;
    lastTimeMs = nowMs;
    return delta;
}

bool FrameStats::countPresentedFrame() {
    ++framesThisSecond;
    ++totalFrames;
    if (msThisSecond <= 999) return false;
    currentFps = framesThisSecond;
    if (sampleCount == 0) {
        minFps = maxFps = sumFps = avgFps = currentFps;
        sampleCount = 1;
    } else {
        if (currentFps < minFps) minFps = currentFps;
        if (currentFps > maxFps) maxFps = currentFps;
        sumFps += currentFps;
        ++sampleCount;
        avgFps = sumFps / sampleCount;
    }
    statsValid = true;
    framesThisSecond = 0;
    msThisSecond = 0;
    return true;
}

bool benchDurationReached(const FrameStats& stats, int32_t durationMs) {
    return durationMs > 0 && stats.elapsedMs >= uint32_t(durationMs);
}
