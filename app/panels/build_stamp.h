#pragma once

namespace panels {

// When this program was built, as the compiler wrote it: "Mar  5 2025" and "14:03:59".
const char* buildDate();
const char* buildTime();

}  // namespace panels
