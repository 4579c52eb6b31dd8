#pragma once

#include <cstdint>

#include "demos/gl_utility/gpu_program.h"
#include "demos/gl_utility/mesh_gl.h"

// A texture laid over the whole current viewport on a unit quad, through the held textured_quad shaders:
// the corner logo's and the OpenCL demos' window image's one way of showing a picture.
class TexturedQuad {
public:
    TexturedQuad() = default;
    TexturedQuad(const TexturedQuad&) = delete;
    TexturedQuad& operator=(const TexturedQuad&) = delete;

    // `versionLine` starts the shaders ("#version 140", "#version 150 core", "#version 400 core"). False when
    // the program or the quad cannot be made; the compiler's or linker's words are then in errorText().
    bool create(const char* versionLine);
    // Draws `texture` (unit 0) with depth testing, depth writes and face culling off, then turns depth testing
    // and writes back on and culling back to what it was. Blending is the caller's.
    void draw(uint32_t texture);
    void release();
    const char* errorText() const { return m_program.errorText(); }

private:
    GpuProgram m_program;
    MeshGL m_quad;
};
