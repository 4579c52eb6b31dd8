#include <cstdio>
#include <cstdlib>
#include <string>

#include "app/app_state.h"
#include "app/command_line.h"
#include "app/command_line_help.h"
#include "app/lifecycle.h"
#include "app/panels/qt_desktop_shell.h"

int main(int argc, char** argv) {
    // Answered before anything else runs: asking for help opens no log, touches no hardware, writes no file.
    const std::string information = requestedInformation(joinArguments(argc, argv).c_str());
    if (!information.empty()) {
        std::fputs(information.c_str(), stdout);
        return 0;
    }
    panels::QtDesktopShell desktop(argc, argv);
    const int status = runLumenscope(argc, argv, &desktop);
    // A demo thread that did not stop in time may still be inside OpenCL, the engine or the toolkit, and a
    // detached update check inside libcurl and OpenSSL; exit handlers and destructors (the toolkit's among
    // them) would free what they use under their feet. The log is complete, so the process ends here.
    if (gApp.threadOutlivedShutdown()) {
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}
