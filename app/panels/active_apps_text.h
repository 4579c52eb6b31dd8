#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace panels {

struct ActiveApp {
    std::string name;
    uint32_t pid = 0;
};

inline constexpr size_t kActiveAppsTextLimit = 4095;  // characters, as the box's text buffer holds 4,096 bytes

// The text of the "Active 3D Apps" box: a heading, one line per application and the monitoring hint, with
// "\n\r" (line feed first) between lines. Each application's line is cut at 255 characters;
// lines that would push the hint past the limit are left out, so the hint always closes the text.
std::string activeAppsText(const std::vector<ActiveApp>& apps);

// The text shown when no application uses the GPU.
inline constexpr const char* kNoActiveAppsText =
    "No 3D application detected.\n\r\n\rReal time monitoring available in Ferritewatch!";

}  // namespace panels
