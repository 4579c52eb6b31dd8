#pragma once

#include <array>
#include <cstddef>

namespace Kalidornm {

// One known extension: the note shown behind its name and the address of the document that defines it.
struct ExtensionLinkEntry {
    const char* name;
    const char* note;  // may be empty
    const char* link;  // may be empty
};

inline constexpr size_t kExtensionLinkRows = 394;

// Generated from tools/gl_db/extension_links.txt. Table order matters: both lookups take the first hit.
extern const std::array<ExtensionLinkEntry, kExtensionLinkRows> extensionLinkTable;

// The note of the first row named `name` (127 characters compared), null when the row has none or no row fits.
const char* extensionNote(const char* name);

// Index of the first row whose name occurs anywhere in `text`, -1 when none does.
int findLinkRowInText(const char* text);

}  // namespace Kalidornm
