#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// The program's one reader and writer of image files, through FreeImage: the engine's textures, the corner
// logo and the demos' captured frames.

// A decoded picture: 8-bit RGBA, bottom row first, as OpenGL takes texture rows.
struct DecodedImage {
    int width = 0;
    int height = 0;
    std::vector<uint8_t> rgba;
};

// Decodes any format FreeImage reads (JPEG, PNG, ...); false for an unknown or damaged file, or one above
// kMaxImageSide a side.
constexpr int kMaxImageSide = 16384;
bool decodeImageFile(const char* path, DecodedImage& image);
bool decodeImageMemory(const uint8_t* data, size_t size, DecodedImage& image);

// Writes an RGBA picture, bottom row first as OpenGL reads it, as a PNG file; alpha is dropped. False when
// the sizes do not fit the bytes or the file cannot be written.
bool writePng(const std::string& path, const std::vector<uint8_t>& rgba, int width, int height);
