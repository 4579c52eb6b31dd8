#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "engine/vx_math.h"

namespace Vantalux_nsp {

// Where one character lies in a font's glyph image, and how it sits on the line (pixels).
struct vxGlyph {
    int x = 0, y = 0;          // top left corner in the glyph image
    int width = 0, height = 0;
    int bearingX = 0;          // from the pen to the bitmap's left edge
    int bearingY = 0;          // from the baseline up to the bitmap's top edge
    int advance = 0;           // pen step to the next character
};

// The printable ASCII characters of one face at one size, rasterised into one coverage image (one byte a
// pixel, top row first).
struct vxGlyphAtlas {
    static constexpr int kFirst = 32;
    static constexpr int kLast = 126;

    int width = 0;
    int height = 0;
    int ascender = 0;    // baseline below the top of a line
    int lineHeight = 0;
    std::vector<uint8_t> coverage;
    std::array<vxGlyph, kLast - kFirst + 1> glyphs{};

    // The glyph of a character; characters outside the set show as '?'.
    const vxGlyph& glyph(char c) const;
};

// A line of text to draw in text mode: a face at a size, the text, its place and colour. The glyphs are made
// at create(); the renderer gives them a texture when the font is registered with it.
class vxFont {
public:
    // Asks the system's font configuration for the face and takes what it offers in its place when the face
    // is not installed; `pointSize` at 96 dots an inch. False when no scalable font can be had at all.
    bool create(const char* face, int pointSize);
    bool isCreated() const { return !m_atlas.coverage.empty(); }
    // The file the face came from, and the family it names.
    const std::string& getFontFile() const { return m_file; }
    const std::string& getFamily() const { return m_family; }

    void setText(const char* format, ...) __attribute__((format(printf, 2, 3)));
    const std::string& getText() const { return m_text; }
    // Pixels from the top left corner of the window to the top left of the line.
    void setPosition2D(int x, int y) { m_x = x, m_y = y; }
    int getX() const { return m_x; }
    int getY() const { return m_y; }
    void setColor(float r, float g, float b, float a = 1.0f) { m_color = {r, g, b, a}; }
    const vxColor& getColor() const { return m_color; }

    const vxGlyphAtlas& getAtlas() const { return m_atlas; }
    // Width in pixels of a text drawn in this font.
    int measure(const std::string& text) const;

private:
    vxGlyphAtlas m_atlas;
    std::string m_file;
    std::string m_family;
    std::string m_text;
    int m_x = 0;
    int m_y = 0;
    vxColor m_color{1, 1, 1, 1};
};

}  // namespace Vantalux_nsp
