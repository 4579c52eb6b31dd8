#pragma once

#include <string>

// The folder of the demos' media, ending with '/': beside an installed binary first (the data directory that
// the install puts next to bin/), then the source tree the program was built from. Empty when neither exists.
// `executableDirectory` is AppState::exeDirectory: the running binary's folder, ending with '/'.
std::string findMediaDirectory(const std::string& executableDirectory);
