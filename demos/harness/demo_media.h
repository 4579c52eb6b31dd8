#pragma once

#include <string>

// The demos' data files, found by absolute path so that no demo changes the working directory: in the
// "media" folder beside the running binary, then in the data folder of an installed one
// (<prefix>/bin/../share/lumenscope/media), then in the source tree the program was built from.

// The media folder, ending with '/'; empty when none of the three exists.
std::string demoMediaDirectory();

// The absolute path of `relativeName` ("particles.cl", "textures/stone.png") in the media folder; empty when
// there is no media folder.
std::string demoMediaPath(const char* relativeName);

// The whole file as text; false when it cannot be opened or read.
bool readDemoMediaText(const char* relativeName, std::string* text);
