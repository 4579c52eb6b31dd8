#pragma once

#include <string>
#include <vector>

// The program's two modules: the window and demos (app/desktop_module.h), the metrics endpoint
// (app/metrics_module.h). Each exports one main-like function.
struct ProgramModule {
    const char* file;    // "lumenscope-desktop.so"
    const char* symbol;  // its main
    const char* what;    // for the failure line: "the window and demo module"
};

extern const ProgramModule kDesktopModule;
extern const ProgramModule kMetricsModule;

// Finds `module` and runs its main. When no candidate loads, one line on standard error names each file tried
// and why it failed, and the result is 1.
int runProgramModule(const ProgramModule& module, int argc, char** argv);

// The files tried, in order, for a module file `file` of a program in `programDirectory` (ending with '/'):
// beside the program (the build tree), then the installed module directory `moduleDirectory`, relative to
// the program's directory unless it is absolute.
std::vector<std::string> moduleCandidates(const std::string& programDirectory, const std::string& moduleDirectory,
                                          const char* file);
