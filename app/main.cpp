#include <cstdio>
#include <string>
#include <vector>

#include "app/batch_run.h"
#include "app/command_line.h"
#include "app/command_line_help.h"
#include "app/live_runs.h"
#include "app/long_options.h"
#include "app/monitor_run.h"
#include "app/platform/desktop_module_loader.h"

int main(int argc, char** argv) {
    const std::string commandLine = joinArguments(argc, argv);
    // Answered before anything else runs: asking for help opens no log, touches no hardware, writes no file.
    const std::string information = requestedInformation(commandLine.c_str());
    if (!information.empty()) {
        std::fputs(information.c_str(), stdout);
        return 0;
    }
    const SplitCommandLine split = splitCommandLine(argc, argv);
    if (!split.error.empty()) {
        std::fprintf(stderr, "lumenscope: %s\n", split.error.c_str());
        return 2;
    }
    const LongOptions& options = split.options;
    // The metrics module reads the whole line itself.
    if (options.serveMetrics) return runProgramModule(kMetricsModule, argc, argv);
    useMachineRoot(options);
    // The older options see the line without the two-dash options.
    std::vector<const char*> rest = {argv[0]};
    for (const std::string& argument : split.otherArguments) rest.push_back(argument.c_str());
    rest.push_back(nullptr);
    const int restCount = int(rest.size()) - 1;
    char** restArgv = const_cast<char**>(rest.data());
    if (options.json) return runJsonReport(restCount, restArgv);
    if (options.monitor) return runMonitor(options);
    if (options.textfile) return runMetricsTextFile(options);
    if (isBatchRun(joinArguments(restCount, restArgv).c_str())) return runBatchReports(restCount, restArgv);
    return runProgramModule(kDesktopModule, restCount, restArgv);
}
