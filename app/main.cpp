#include <cstdio>
#include <string>

#include "command_line.h"
#include "command_line_help.h"
#include "lifecycle.h"
#include "panels/qt_desktop_shell.h"

int main(int argc, char** argv) {
    // Answered before anything else runs: asking for help opens no log, touches no hardware, writes no file.
    const std::string information = requestedInformation(joinArguments(argc, argv).c_str());
    if (!information.empty()) {
        std::fputs(information.c_str(), stdout);
        return 0;
    }
    panels::QtDesktopShell desktop(argc, argv);
    return runLumenscope(argc, argv, &desktop);
}
