#pragma once

// The whole run of the program, from entry to the return value of main: start-up, the batch reports or the
// main window, and shutdown. Returns 0 in every case.
int runLumenscope(int argc, const char* const* argv);
