#include "lifecycle.h"
#include "panels/qt_desktop_shell.h"

int main(int argc, char** argv) {
    panels::QtDesktopShell desktop(argc, argv);
    return runLumenscope(argc, argv, &desktop);
}
