#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

// Inputs that stand for several texts (files of one device, a list and the ids to look up) hold them one
// after another, each ended by a NUL byte; text after the last NUL is the last part. A text with a NUL of its
// own cannot be expressed, which no sysfs or proc file needs.
inline std::vector<std::string_view> splitFuzzInput(const uint8_t* data, size_t size) {
    std::vector<std::string_view> parts;
    const std::string_view all(reinterpret_cast<const char*>(data), size);
    size_t start = 0;
    while (start < all.size()) {
        const size_t end = all.find('\0', start);
        if (end == std::string_view::npos) {
            parts.push_back(all.substr(start));
            break;
        }
        parts.push_back(all.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}
