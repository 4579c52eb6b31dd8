#include "base/text_format.h"

#include <cstdarg>
#include <cstdio>

namespace base {

std::string formatText(const char* format, ...) {
    va_list args;
    va_start(args, format);
    va_list again;
    va_copy(again, args);
    const int length = std::vsnprintf(nullptr, 0, format, args);
    va_end(args);
    std::string text;
    if (length > 0) {
        text.resize(size_t(length));
        std::vsnprintf(text.data(), text.size() + 1, format, again);
    }
    va_end(again);
    return text;
}

std::string versionText(int major, int minor, int patch, int build) {
    return formatText("%d.%d.%d.%d", major, minor, patch, build);
}

}  // namespace base
