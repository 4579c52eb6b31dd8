#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "kalidor/machine_snapshot.h"

// What the OpenGL caps dialog's tree shows: one branch per heading of a fixed list whose group the catalogue
// holds rows of, one leaf per row.
namespace panels {

struct CapsTreeHeading {
    const char* group;  // a catalogue group: "GL_VERSION_3_3" or the extension that publishes the rows
    const char* note;   // shown behind the heading in parentheses; empty for none
};

// The headings in the order the tree shows them. Some catalogue groups have no heading and are only in the
// report; the notes belong to the tree and may differ from the extension table's.
std::span<const CapsTreeHeading> capsTreeHeadings();

struct CapsTreeBranch {
    std::string text;  // "GL_ARB_compute_shader (OpenGL 4.3)"
    std::vector<std::string> leaves;
};

// A leaf's text by the row's value type: "name: 16", "name: 0.500000", "name: 4294967296", "name: 1/2/3".
std::string capLeafText(const char* name, int32_t valueType, int32_t intValue, const int32_t tripleValue[3],
                        int64_t int64Value, float floatValue);

// The branches for the library's catalogue, in heading order; a heading without rows is left out.
std::vector<CapsTreeBranch> capsTreeBranches(const Kalidornm::OpenGlFacts& gl);

}  // namespace panels
