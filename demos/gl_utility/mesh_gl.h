#pragma once

#include <cstdint>
#include <memory>

namespace mesh_shapes {
struct MeshShape;
}

// What a draw sends besides positions, which always go. Demos zero it, then set what they use.
struct MeshDrawOptions {
    bool useNormals = false;
    bool useTexCoords = false;
    bool useColors = false;
    bool patches = false;  // draw as tessellation patches instead of triangles
};

// A mesh of the demos' own GL layer: four attribute arrays of four floats per vertex, three indices a face,
// uploaded as static buffers at the first draw. Built and drawn on the thread whose context is current.
class MeshGL {
public:
    // Faces from this count on take 32-bit indices; fewer fit 16-bit ones. The test is on faces, not vertices.
    static constexpr uint32_t kFacesNeedingWideIndices = 65536;
    enum IndexKind : uint32_t { kIndices16 = 1, kIndices32 = 2 };

    MeshGL() = default;
    ~MeshGL();
    MeshGL(const MeshGL&) = delete;
    MeshGL& operator=(const MeshGL&) = delete;

    // Unit quad in the XY plane from (0, 0) to (1, 1), white, texture coordinates equal to the positions.
    bool makeQuad();
    // (-1, -1), (1, -1), (0, 1) in red, green and blue.
    bool makeTriangle();
    // A grid in the plane y = 0 centred on the origin; segment counts below 1 become 1.
    bool makeGrid(float width, float depth, int segmentsX, int segmentsZ);
    // A ring of `radius` around the Y axis with a tube of `tubeRadius`; (segments + 1)^2 vertices.
    bool makeTorus(float radius, float tubeRadius, int segments);
    void setAllColors(const float color[4]);

    // Uploads on the first call, then binds and draws; needs a current context.
    void draw(const MeshDrawOptions& options);
    // Frees the arrays and deletes the buffers; needs the context that drew the mesh, if one did.
    void release();

    // Vertex data, four floats a vertex; null until a builder ran.
    std::unique_ptr<float[]> positions, normals, colors, texCoords;
    uint32_t vertexCount = 0;
    uint32_t positionBuffer = 0, normalBuffer = 0, colorBuffer = 0, texCoordBuffer = 0;
    // Attribute locations; demos set the ones they use from their program.
    uint32_t positionAttrib = 0, normalAttrib = 1, colorAttrib = 1, texCoordAttrib = 3;
    std::unique_ptr<uint16_t[]> indices16;
    std::unique_ptr<uint32_t[]> indices32;
    std::unique_ptr<float[]> faceColors;  // four floats a face; nothing draws them
    uint32_t faceCount = 0;
    uint32_t indexKind = kIndices16;
    uint32_t indexBuffer = 0;

    // Index `corner` (0 to 2) of face `face`, whichever index width is in use.
    uint32_t faceIndex(uint32_t face, int corner) const;

private:
    bool _allocate(uint64_t vertices, uint64_t faces);
    // Allocates for `shape` and copies it in, every vertex white.
    bool _fill(const mesh_shapes::MeshShape& shape);
    void _setFace(uint32_t face, uint32_t a, uint32_t b, uint32_t c);
    void _freeArrays();
    void _deleteBuffers();
};
