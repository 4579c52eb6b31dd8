#include <cstdio>
#include <cstdlib>
#include <string>

#include "app_state.h"
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
    int status = 0;
    {
        panels::QtDesktopShell desktop(argc, argv);
        status = runLumenscope(argc, argv, &desktop);
    }
    // A detached update check may still be inside libcurl and OpenSSL, whose exit handlers would free what it
    // uses under its feet. Everything of ours is released and the log is flushed line by line, so the process
    // ends without running those handlers.
    if (gApp.updateThreadOutlivedShutdown) {
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}
