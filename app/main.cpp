#include <cstdio>
#include <string>

#include "app/batch_run.h"
#include "app/command_line.h"
#include "app/command_line_help.h"
#include "app/platform/desktop_module_loader.h"

int main(int argc, char** argv) {
    const std::string commandLine = joinArguments(argc, argv);
    // Answered before anything else runs: asking for help opens no log, touches no hardware, writes no file.
    const std::string information = requestedInformation(commandLine.c_str());
    if (!information.empty()) {
        std::fputs(information.c_str(), stdout);
        return 0;
    }
    if (isBatchRun(commandLine.c_str())) return runBatchReports(argc, argv);
    return runDesktopModule(argc, argv);
}
