#pragma once

#include <string>
#include <vector>

// Finds the window module (app/desktop_module.h) and runs its main. When no candidate loads, one line on
// standard error names each file tried and why it failed, and the result is 1.
int runDesktopModule(int argc, char** argv);

// The files tried, in order, for a program in `programDirectory` (ending with '/'): beside the program (the
// build tree), then the installed module directory `moduleDirectory`, relative to the program's directory
// unless it is absolute.
std::vector<std::string> desktopModuleCandidates(const std::string& programDirectory,
                                                 const std::string& moduleDirectory);
