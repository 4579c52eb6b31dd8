#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Writes an RGBA picture, bottom row first as OpenGL reads it, as a PNG file; alpha is dropped. False when
// the sizes do not fit the bytes or the file cannot be written.
bool writePng(const std::string& path, const std::vector<uint8_t>& rgba, int width, int height);

// The name a demo's captured last frame gets in the working directory.
std::string capturedFrameName(const char* resultName);
