#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "app/command_line.h"

// The options spelt with two dashes. They are taken out of the command line before the older options are
// looked for, so the text of a value ("--textfile=/srv/bench_log_results.prom") never switches on an older
// option it happens to contain.

enum class MonitorFormat { csv, jsonl };

struct LongOptions {
    bool json = false;     // report.json's text on standard output
    bool monitor = false;  // one line per GPU per tick on standard output
    int intervalMs = 1000;
    std::optional<long> count;  // ticks before the monitor ends; none: until stopped
    MonitorFormat format = MonitorFormat::csv;
    std::optional<std::string> textfile;  // the metrics exposition, written once
    bool serveMetrics = false;
    std::string metricsAddress;  // "ADDRESS:PORT"; empty: the endpoint's default
    std::optional<std::string> metricsTlsCert, metricsTlsKey, metricsAuthFile;
    std::optional<std::string> root;  // read the machine from this folder instead of /
};

inline constexpr int kMinMonitorIntervalMs = 100;

struct SplitCommandLine {
    LongOptions options;
    std::vector<std::string> otherArguments;  // every argument that does not begin with "--", in order
    std::string error;                        // empty when every "--" argument was understood
};

// Sorts the arguments (without the program name) into the two-dash options and the rest. --help and --version
// are known here too; they are answered from the whole line before this runs.
SplitCommandLine splitCommandLine(int argc, const char* const* argv);

// The two-dash options as --help and the manual page list them, after the older ones.
std::vector<OptionDescription> describedLongOptions();
size_t longOptionCount();
