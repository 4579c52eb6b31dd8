#pragma once

#include <string>

// The name a demo's captured last frame gets in the working directory.
std::string capturedFrameName(const char* resultName);
