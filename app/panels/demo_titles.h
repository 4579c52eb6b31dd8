#pragma once

#include <cstddef>

// The titles the two demo pickers of the main window list, in the order of the demo tables; a picker row's
// number is the demo's row.
namespace panels {

size_t glDemoTitleCount();
size_t clDemoTitleCount();
const char* glDemoTitle(size_t row);  // null past the end
const char* clDemoTitle(size_t row);

}  // namespace panels
