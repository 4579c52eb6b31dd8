// Kept to itself so that only this file is compiled again when the stamp changes.
#include "app/panels/build_stamp.h"

namespace panels {

const char* buildDate() { return __DATE__; }
const char* buildTime() { return __TIME__; }

}  // namespace panels
