#include "compute/opencl_records.h"

#include <cstring>

namespace compute {

namespace {
constexpr size_t kMinimumNameLength = 3;
constexpr char kNameSeparators[] = " \t\r\n";
}  // namespace

ClExtensionList tokeniseClExtensions(const char* text) {
    ClExtensionList names;
    if (!text) return names;
    const char* start = text;
    for (const char* blank = std::strchr(start, ' '); blank; blank = std::strchr(start, ' ')) {
        const size_t length = size_t(blank - start);
        if (length >= kMinimumNameLength) names.emplace_back(start, length < kClMaxTextLength ? length : kClMaxTextLength);
        start = blank + 1;
    }
    return names;
}

ClExtensionList splitClExtensions(const char* text) {
    ClExtensionList names;
    if (!text) return names;
    for (const char* start = text; *start;) {
        const size_t length = std::strcspn(start, kNameSeparators);
        if (length > 0) names.emplace_back(start, length);
        start += length;
        if (*start) ++start;
    }
    return names;
}

}  // namespace compute
