#include "demos/gl_utility/gl_entry_points.h"

#include <GL/glew.h>

#include <mutex>

bool bindGlEntryPoints() {
    static std::mutex bindLock;
    std::lock_guard<std::mutex> guard(bindLock);
    // Core contexts list their extensions differently; without this GLEW would skip entry points of
    // extensions it cannot see.
    glewExperimental = GL_TRUE;
    // Debian's GLEW looks entry points up through GLX, whose dispatch serves EGL contexts as well. After
    // binding them it asks GLX for the current display, finds none on an EGL context and returns
    // GLEW_ERROR_NO_GLX_DISPLAY, so its result does not tell whether the binding worked.
    (void)glewInit();
    return glGetString(GL_VERSION) != nullptr;
}
