#pragma once

#include "app/long_options.h"

// The runs for scripts besides the monitor. None writes a log file; messages go to standard error.

// report.json's text on standard output, from the same start-up and snapshot as the batch reports; no file.
// `argc`/`argv` hold the older options only. 0, or 1 when nothing could be printed.
int runJsonReport(int argc, const char* const* argv);

// The metrics exposition written once to options.textfile, atomically. 0, or 1 with a message.
int runMetricsTextFile(const LongOptions& options);

// The metrics endpoint (--serve-metrics) until SIGINT or SIGTERM, every scrape answered from one sample read
// at most once a second (app/metrics_endpoint_run.cpp). 1 with a message where this build has no endpoint.
int runMetricsEndpoint(const LongOptions& options);
