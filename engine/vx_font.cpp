#include "engine/vx_font.h"

#include <cstdarg>
#include <cstdio>

namespace Vantalux_nsp {

const vxGlyph& vxGlyphAtlas::glyph(char c) const {
    const int code = static_cast<unsigned char>(c);
    const int index = code >= kFirst && code <= kLast ? code - kFirst : '?' - kFirst;
    return glyphs[size_t(index)];
}

void vxFont::setText(const char* format, ...) {
    if (!format) {
        m_text.clear();
        return;
    }
    char line[512];
    va_list args;
    va_start(args, format);
    const int n = std::vsnprintf(line, sizeof line, format, args);
    va_end(args);
    m_text.assign(line, n < 0 ? 0 : size_t(n) < sizeof line ? size_t(n) : sizeof line - 1);
}

int vxFont::measure(const std::string& text) const {
    int width = 0;
    for (char c : text) width += m_atlas.glyph(c).advance;
    return width;
}

}  // namespace Vantalux_nsp
