#pragma once

// The engine calls OpenGL through the entry points the system's libGL exports; the dispatch behind them
// follows whatever context is current on the thread, EGL's included. Only the engine's sources include this:
// its headers stay free of GL so that callers may use their own loader.
#ifndef GL_GLEXT_PROTOTYPES
#define GL_GLEXT_PROTOTYPES 1
#endif
#include <GL/gl.h>
#include <GL/glext.h>
