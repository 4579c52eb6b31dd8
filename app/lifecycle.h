#pragma once

class DesktopShell;

// The interactive run of the program, from entry to the return value of main: start-up, the main window
// through `desktop` (or, without a display, the demo the command line starts), and shutdown. The batch
// reports never come here (batch_run.h). Returns 0, but 1 when the window was asked for and no display
// can show it (`desktop` null counts as no display).
// When a demo or the update check was still running at the end (gApp.threadOutlivedShutdown()), what it
// uses was not released and the caller must end the process with std::_Exit before destroying `desktop`.
int runLumenscope(int argc, const char* const* argv, DesktopShell* desktop);
