#pragma once

// Binds the OpenGL entry points (GLEW's process-wide table) for the context current on this thread; the
// same addresses serve every context of the process. Serialised, so that demo threads starting together do
// not write the table at the same time. False when the context cannot even report its version.
bool bindGlEntryPoints();
