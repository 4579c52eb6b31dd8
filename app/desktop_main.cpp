#include <cstdio>
#include <cstdlib>

#include "app/app_state.h"
#include "app/desktop_module.h"
#include "app/lifecycle.h"
#include "app/panels/qt_desktop_shell.h"

extern "C" __attribute__((visibility("default"))) int lumenscope_desktop_main(int argc, char** argv) {
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
