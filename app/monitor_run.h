#pragma once

#include "app/long_options.h"

// The monitor: the live readings of every GPU at each interval on standard output, one flushed line per GPU
// per tick, until the count is reached, SIGINT or SIGTERM comes, or standard output closes (all status 0).
// The hardware library starts live-only; no window, no display, no log file; messages on standard error.
int runMonitor(const LongOptions& options);
