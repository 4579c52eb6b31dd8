#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace Kalidornm {

// One catalogue row: the glGet parameter, how it is read, its name and its group (an OpenGL version for core
// rows, else the extension that publishes it).
struct GlCapRow {
    uint32_t pname;
    int32_t valueType;  // GlCap::kInteger, kFloat, kInteger64 or kTriple
    const char* name;
    const char* group;
    bool core;
    int32_t minVersion;  // core rows read only from this context version on (major * 10 + minor); 0 always
};

inline constexpr size_t kGlCapRows = 406;
inline constexpr size_t kGlCoreCapRows = 179;
inline constexpr const char* kGlCapSeparatorName = "GL_CAP_SEPARATOR_01";

extern const std::array<GlCapRow, kGlCapRows> glCapTable;

}  // namespace Kalidornm
