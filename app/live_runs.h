#pragma once

#include <cstdio>

#include "app/long_options.h"

// The runs for scripts besides the monitor. None writes a log file; messages go to standard error.

struct AppState;
namespace Kalidornm {
class Kalidor;
}

// Points the hardware library at the machine folder of --root, where one is given.
void useMachineRoot(const LongOptions& options);

// report.json's text on standard output, from the same start-up and snapshot as the batch reports; no file.
// `argc`/`argv` hold the older options only. A library that would not start is told on standard error and
// the report of what is known without it is printed still. 0, or 1 when nothing could be printed.
int runJsonReport(int argc, const char* const* argv);

// report.json's text of the started `library` on `out`; where it is null (it would not start), the report of
// the program and compute discovery alone. 0, or 1 with a message when the text could not be written.
int printJsonReport(const AppState& state, Kalidornm::Kalidor* library, std::FILE* out);

// The metrics exposition written once to options.textfile, atomically. 0, or 1 with a message.
int runMetricsTextFile(const LongOptions& options);

// The metrics endpoint (--serve-metrics) until SIGINT or SIGTERM, every scrape answered from one sample read
// at most once a second. Built into the metrics module only (app/metrics_module.h).
int runMetricsEndpoint(const LongOptions& options);
