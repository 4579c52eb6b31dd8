#pragma once

#include <span>
#include <string>
#include <string_view>

// The GLSL sources of media/shaders/, held by the program: each stage's text by its file name.
struct ShaderText {
    std::string_view name;  // "toon.vert"
    std::string_view text;  // ends in a zero byte, not counted
};

// Every held source, sorted by name.
std::span<const ShaderText> shaderTexts();

// The text of media/shaders/<name>; empty (still zero-terminated) when the program holds no such file, which
// the compiler then refuses.
std::string_view shaderText(std::string_view name);

// `prelude` (a #version line, #defines), a line break, then the held text: a stage as the driver gets it.
std::string shaderSource(std::string_view prelude, std::string_view name);
