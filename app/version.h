#pragma once

#include <cstdint>

// The one place that names the program and its version; every title, log line and request reads it here.
namespace lumenscope {

inline constexpr const char* kDisplayName = "Lumenscope";
inline constexpr int kVersionMajor = 1;
inline constexpr int kVersionMinor = 26;
inline constexpr int kVersionPatch = 0;
inline constexpr int kVersionBuild = 0;

// The four numbers packed one byte each, major highest, for version comparisons.
inline constexpr uint32_t kPackedVersion = (uint32_t(kVersionMajor) << 24) | (uint32_t(kVersionMinor) << 16) |
                                           (uint32_t(kVersionPatch) << 8) | uint32_t(kVersionBuild);

}  // namespace lumenscope
