#pragma once

#include <string>

namespace base {

// printf into a string of whatever length the text needs.
std::string formatText(const char* format, ...) __attribute__((format(printf, 1, 2)));

// "a.b.c.d": how a four-part version is written everywhere, ours and the ones servers answer.
std::string versionText(int major, int minor, int patch, int build);

}  // namespace base
