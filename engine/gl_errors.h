#pragma once

#include <GL/glew.h>

namespace Vantalux_nsp {

// Forgets errors an earlier call left, so that the next check sees only its own. Bounded: a lost context
// may answer with an error forever.
inline void clearGlErrors() {
    for (int i = 0; i < 16 && glGetError() != GL_NO_ERROR; ++i) {
    }
}

}  // namespace Vantalux_nsp
