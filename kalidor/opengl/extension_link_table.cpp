#include "kalidor/opengl/extension_link_table.h"

#include <cstring>

namespace Kalidornm {

namespace {
constexpr std::array<ExtensionLinkEntry, kExtensionLinkRows> kRows = {{
#include "kalidor/opengl/extension_link_table.inc"
}};
static_assert(kRows.back().name != nullptr, "the extension table has fewer rows than it should");
}  // namespace

const std::array<ExtensionLinkEntry, kExtensionLinkRows> extensionLinkTable = kRows;

const char* extensionNote(const char* name) {
    if (!name) return nullptr;
    for (const ExtensionLinkEntry& row : extensionLinkTable) {
        if (std::strncmp(row.name, name, 127) != 0) continue;
        return row.note[0] ? row.note : nullptr;
    }
    return nullptr;
}

int findLinkRowInText(const char* text) {
    if (!text) return -1;
    for (size_t i = 0; i < extensionLinkTable.size(); ++i)
        if (std::strstr(text, extensionLinkTable[i].name)) return static_cast<int>(i);
    return -1;
}

}  // namespace Kalidornm
