#pragma once

class DesktopShell;

// The whole run of the program, from entry to the return value of main: start-up, the batch reports or the
// main window through `desktop`, and shutdown. Returns 0, but 1 when the window was asked for and no display
// can show it (`desktop` null counts as no display).
// When a demo or the update check was still running at the end (gApp.threadOutlivedShutdown()), what it
// uses was not released and the caller must end the process with std::_Exit before destroying `desktop`.
int runLumenscope(int argc, const char* const* argv, DesktopShell* desktop);
