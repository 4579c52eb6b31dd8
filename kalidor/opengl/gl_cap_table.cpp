#include "kalidor/opengl/gl_cap_table.h"

namespace Kalidornm {

namespace {
constexpr std::array<GlCapRow, kGlCapRows> kRows = {{
#include "kalidor/opengl/gl_cap_table.inc"
}};

constexpr size_t countCoreRows() {
    size_t n = 0;
    while (n < kRows.size() && kRows[n].core) ++n;
    return n;
}
static_assert(kRows.back().name != nullptr, "the catalogue has fewer rows than it should");
static_assert(countCoreRows() == kGlCoreCapRows, "core rows must come first and number 179");
}  // namespace

const std::array<GlCapRow, kGlCapRows> glCapTable = kRows;

}  // namespace Kalidornm
