// The OpenGL side of MeshGL: static buffers made at the first draw, then only binds.
#include <GL/glew.h>

#include "demos/gl_utility/mesh_gl.h"

namespace {

// A location of -1 (an input the shader compiler dropped) arrives here as the largest u32 value.
constexpr uint32_t kNoAttrib = 0xFFFFFFFFu;

void bindAttribute(uint32_t& buffer, const float* data, uint32_t vertexCount, uint32_t attrib) {
    if (attrib == kNoAttrib) return;
    if (buffer == 0) {
        glGenBuffers(1, &buffer);
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
        glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(vertexCount) * 16, data, GL_STATIC_DRAW);
    } else {
        glBindBuffer(GL_ARRAY_BUFFER, buffer);
    }
    glEnableVertexAttribArray(attrib);
    glVertexAttribPointer(attrib, 4, GL_FLOAT, GL_FALSE, 0, nullptr);
}

void deleteBuffer(uint32_t& buffer) {
    if (buffer != 0 && glDeleteBuffers) glDeleteBuffers(1, &buffer);
    buffer = 0;
}

}  // namespace

void MeshGL::draw(const MeshDrawOptions& options) {
    if (!positions || faceCount == 0) return;
    bindAttribute(positionBuffer, positions.get(), vertexCount, positionAttrib);
    if (options.useNormals && normals) bindAttribute(normalBuffer, normals.get(), vertexCount, normalAttrib);
    if (options.useColors && colors) bindAttribute(colorBuffer, colors.get(), vertexCount, colorAttrib);
    if (options.useTexCoords && texCoords) bindAttribute(texCoordBuffer, texCoords.get(), vertexCount, texCoordAttrib);

    const bool wide = indexKind == kIndices32;
    if (indexBuffer == 0) {
        glGenBuffers(1, &indexBuffer);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indexBuffer);
        const GLsizeiptr bytes = GLsizeiptr(faceCount) * (wide ? 12 : 6);
        glBufferData(GL_ELEMENT_ARRAY_BUFFER, bytes, wide ? static_cast<const void*>(indices32.get())
                                                          : static_cast<const void*>(indices16.get()),
                     GL_STATIC_DRAW);
    } else {
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, indexBuffer);
    }
    glDrawElements(options.patches ? GL_PATCHES : GL_TRIANGLES, GLsizei(faceCount) * 3,
                   wide ? GL_UNSIGNED_INT : GL_UNSIGNED_SHORT, nullptr);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    for (uint32_t attrib : {positionAttrib, normalAttrib, colorAttrib, texCoordAttrib})
        if (attrib != kNoAttrib) glDisableVertexAttribArray(attrib);
}

void MeshGL::release() {
    _deleteBuffers();
    _freeArrays();
}

void MeshGL::_deleteBuffers() {
    deleteBuffer(positionBuffer);
    deleteBuffer(normalBuffer);
    deleteBuffer(colorBuffer);
    deleteBuffer(texCoordBuffer);
    deleteBuffer(indexBuffer);
}
