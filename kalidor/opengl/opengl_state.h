#pragma once

#include <cstdint>

namespace Kalidornm {

// What the OpenGL probe learnt: version numbers, strings and limits.
struct OpenGlState {
    float versionNumber = 1.1f;
    int32_t majorVersion = 1;
    int32_t minorVersion = 1;
};

}  // namespace Kalidornm
