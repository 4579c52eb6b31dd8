#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "kalidor/machine_snapshot.h"

namespace Kalidornm {
class Kalidor;
}

// The lines of the OpenGL panel's extension list and the caption above it.
namespace panels {

inline constexpr size_t kExtensionLineSize = 128;  // 127 characters and the terminator

// "name (note)" when the extension table has a note for the name, else "name"; cut to 127 characters.
std::string extensionLine(const char* name);

// One line per extension the library lists, in alphabetical order of the whole line (letters compared
// without regard to case first), so a note takes part in the order.
std::vector<std::string> sortedExtensionLines(const Kalidornm::OpenGlFacts& gl);

// "  OpenGL extensions: <total> (GL=<core and ARB names>, WGL=<names of the window-system binding>)  "
std::string extensionCountCaption(const Kalidornm::OpenGlFacts& gl);

}  // namespace panels
