#pragma once

#include <string>

// The few process-level facts and actions the shell needs from the operating system.
namespace lumenscope::platform {

// Directory of the running executable, ending with '/'; empty if it cannot be told.
std::string executableDirectory();

// Number of processors online.
unsigned processorCount();

// Hands a web address or a file to the desktop's opener and returns at once; the opener is never waited for
// and its result is not looked at.
void openWithDesktop(const char* target);

}  // namespace lumenscope::platform
