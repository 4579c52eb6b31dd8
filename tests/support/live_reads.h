#pragma once

#include "kalidor/kalidor.h"

// Every live read the facade offers, on one GPU. Each output starts at a sentinel (-5 or 5), so a failed read
// that scribbled over one shows.
struct LiveReadOutcome {
    int answered = 0;             // reads that said true
    bool outputsTouched = false;  // some output left its sentinel
};

inline LiveReadOutcome readEveryLiveValue(Kalidornm::Kalidor& library, int gpu) {
    float a = -5, b = -5, c = -5, d = -5;
    uint32_t u = 5, v = 5, w = 5;
    uint8_t board[16] = {5};
    LiveReadOutcome outcome;
    int& n = outcome.answered;
    n += library.readGpuTemperatures(gpu, &a, &b, &c, &d);
    n += library.readGpuFanSpeed(gpu, &a, &b);
    n += library.readGpuLoad(gpu, &a, &b);
    n += library.readGpuCurrentClocks(gpu, nullptr, &a, &b, &c, &d);
    for (uint32_t type : {0u, 1u, 2u}) n += library.readGpuClockFrequencies(gpu, type, &a, &b);
    n += library.readGpuClockOffsets(gpu, &a, &b, &c);
    n += library.readGpuPowerUsage(gpu, &a, &u);
    n += library.readGpuPowerPolicy(gpu, &a, &u, &b, &v, &c, &w);
    n += library.readGpuPowerTarget(gpu, &a, &u);
    n += library.readGpuMemoryUsage(gpu, &u, &v, &a);
    n += library.readGpuPerfLimiters(gpu);
    n += library.readGpuBoardInfo(gpu, board);
    outcome.outputsTouched = a != -5 || b != -5 || c != -5 || d != -5 || u != 5 || v != 5 || w != 5 || board[0] != 5;
    return outcome;
}
