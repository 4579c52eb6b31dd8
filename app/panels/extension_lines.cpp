#include "app/panels/extension_lines.h"

#include <algorithm>
#include <cctype>
#include <cstdio>

#include "kalidor/kalidor.h"
#include "kalidor/opengl/extension_link_table.h"

namespace panels {

namespace {

// A list box's order: case folded first, so "GL_ARB_ES2_compatibility" stands among the e's; the exact
// bytes break ties so that the order is total.
bool listOrder(const std::string& a, const std::string& b) {
    const auto folded = [](unsigned char x, unsigned char y) { return std::tolower(x) < std::tolower(y); };
    if (std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), folded)) return true;
    if (std::lexicographical_compare(b.begin(), b.end(), a.begin(), a.end(), folded)) return false;
    return a < b;
}

}  // namespace

namespace {

std::string lineOf(const char* name, const char* note) {
    char line[kExtensionLineSize];
    if (note && *note)
        std::snprintf(line, sizeof line, "%s (%s)", name, note);
    else
        std::snprintf(line, sizeof line, "%s", name);
    return line;
}

}  // namespace

std::string extensionLine(const char* name) { return name ? lineOf(name, Kalidornm::extensionNote(name)) : std::string(); }

std::vector<std::string> sortedExtensionLines(const Kalidornm::OpenGlFacts& gl) {
    std::vector<std::string> lines;
    lines.reserve(gl.extensions.size());
    for (const Kalidornm::GlExtensionFacts& extension : gl.extensions)
        lines.push_back(lineOf(extension.name.c_str(), extension.note.c_str()));
    std::sort(lines.begin(), lines.end(), listOrder);
    return lines;
}

std::string extensionCountCaption(const Kalidornm::OpenGlFacts& gl) {
    char caption[96];
    std::snprintf(caption, sizeof caption, "  OpenGL extensions: %d (GL=%d, WGL=%d)  ", int(gl.extensionCount),
                  int(gl.glExtensionCount), int(gl.wglExtensionCount));
    return caption;
}

}  // namespace panels
