#pragma once

#include <array>
#include <cstddef>

namespace Kalidornm {

// One known extension: the note shown behind its name and where its specification is read.
struct ExtensionSpecEntry {
    const char* name;
    const char* note;     // may be empty
    const char* specUrl;  // may be empty
};

inline constexpr size_t kExtensionSpecRows = 394;

// Table order matters: both lookups take the first hit.
extern const std::array<ExtensionSpecEntry, kExtensionSpecRows> extensionSpecTable;

// The note of the first row named `name` (127 characters compared), null when the row has none or no row fits.
const char* extensionNote(const char* name);

// Index of the first row whose name occurs anywhere in `text`, -1 when none does.
int findSpecRowInText(const char* text);

}  // namespace Kalidornm
