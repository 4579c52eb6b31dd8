// The CPU side of MeshGL: allocation, the quad and the triangle, and the grid and torus of mesh_shapes in
// MeshGL's arrays. Nothing here touches OpenGL.
#include <limits>
#include <new>

#include "demos/gl_utility/mesh_gl.h"
#include "demos/gl_utility/mesh_shapes.h"

namespace {

// Far above anything a demo asks for; keeps a wild segment count from asking for terabytes.
constexpr uint64_t kMaxVertices = 64u * 1024u * 1024u;

void setVec4(float* array, uint32_t index, float x, float y, float z, float w) {
    float* v = array + size_t(index) * 4;
    v[0] = x, v[1] = y, v[2] = z, v[3] = w;
}

// The demos' own grid and torus: vertex rows the other way round from the engine's, cells cut through their
// second corner.
constexpr mesh_shapes::PlaneLayout kGridLayout{.rowsFromFront = true,
                                               .cut = mesh_shapes::CellCut::kThroughSecondCorner};
constexpr mesh_shapes::TorusLayout kTorusLayout{.rowsAroundTube = true,
                                                .cut = mesh_shapes::CellCut::kThroughSecondCorner};

}  // namespace

MeshGL::~MeshGL() { _freeArrays(); }

bool MeshGL::_allocate(uint64_t vertices, uint64_t faces) {
    release();
    if (vertices == 0 || vertices > kMaxVertices || faces > 2 * kMaxVertices) return false;
    const size_t n = size_t(vertices) * 4;
    positions.reset(new (std::nothrow) float[n]);
    normals.reset(new (std::nothrow) float[n]);
    colors.reset(new (std::nothrow) float[n]);
    texCoords.reset(new (std::nothrow) float[n]);
    faceColors.reset(new (std::nothrow) float[size_t(faces) * 4]);
    if (faces < kFacesNeedingWideIndices) {
        indices16.reset(new (std::nothrow) uint16_t[size_t(faces) * 3]);
        indexKind = kIndices16;
    } else {
        indices32.reset(new (std::nothrow) uint32_t[size_t(faces) * 3]);
        indexKind = kIndices32;
    }
    if (!positions || !normals || !colors || !texCoords || !faceColors || (!indices16 && !indices32)) {
        _freeArrays();
        return false;
    }
    vertexCount = uint32_t(vertices);
    faceCount = uint32_t(faces);
    for (uint32_t i = 0; i < vertexCount; ++i) {
        for (float* array : {positions.get(), normals.get(), colors.get(), texCoords.get()})
            setVec4(array, i, 0.0f, 0.0f, 0.0f, 1.0f);
    }
    for (uint32_t f = 0; f < faceCount; ++f) setVec4(faceColors.get(), f, 0.0f, 0.0f, 0.0f, 1.0f);
    return true;
}

void MeshGL::_freeArrays() {
    positions.reset();
    normals.reset();
    colors.reset();
    texCoords.reset();
    indices16.reset();
    indices32.reset();
    faceColors.reset();
    vertexCount = 0;
    faceCount = 0;
    indexKind = kIndices16;
}

void MeshGL::_setFace(uint32_t face, uint32_t a, uint32_t b, uint32_t c) {
    const size_t at = size_t(face) * 3;
    if (indexKind == kIndices16) {
        indices16[at] = uint16_t(a), indices16[at + 1] = uint16_t(b), indices16[at + 2] = uint16_t(c);
    } else {
        indices32[at] = a, indices32[at + 1] = b, indices32[at + 2] = c;
    }
}

uint32_t MeshGL::faceIndex(uint32_t face, int corner) const {
    if (face >= faceCount || corner < 0 || corner > 2) return 0;
    const size_t at = size_t(face) * 3 + size_t(corner);
    return indexKind == kIndices16 ? indices16[at] : indices32[at];
}

void MeshGL::setAllColors(const float color[4]) {
    for (uint32_t i = 0; i < vertexCount; ++i) setVec4(colors.get(), i, color[0], color[1], color[2], color[3]);
}

bool MeshGL::makeQuad() {
    if (!_allocate(4, 2)) return false;
    const float corners[4][2] = {{0, 0}, {0, 1}, {1, 1}, {1, 0}};
    for (uint32_t i = 0; i < 4; ++i) {
        setVec4(positions.get(), i, corners[i][0], corners[i][1], 0.0f, 1.0f);
        setVec4(texCoords.get(), i, corners[i][0], corners[i][1], 0.0f, 1.0f);
    }
    const float white[4] = {1, 1, 1, 1};
    setAllColors(white);
    _setFace(0, 0, 1, 2);
    _setFace(1, 2, 3, 0);
    return true;
}

bool MeshGL::makeTriangle() {
    if (!_allocate(3, 1)) return false;
    setVec4(positions.get(), 0, -1.0f, -1.0f, 0.0f, 1.0f);
    setVec4(positions.get(), 1, 1.0f, -1.0f, 0.0f, 1.0f);
    setVec4(positions.get(), 2, 0.0f, 1.0f, 0.0f, 1.0f);
    setVec4(colors.get(), 0, 1.0f, 0.0f, 0.0f, 1.0f);
    setVec4(colors.get(), 1, 0.0f, 1.0f, 0.0f, 1.0f);
    setVec4(colors.get(), 2, 0.0f, 0.0f, 1.0f, 1.0f);
    setVec4(texCoords.get(), 0, 0.0f, 0.0f, 0.0f, 1.0f);
    setVec4(texCoords.get(), 1, 0.0f, 1.0f, 0.0f, 1.0f);
    setVec4(texCoords.get(), 2, 1.0f, 1.0f, 0.0f, 1.0f);
    _setFace(0, 0, 1, 2);
    return true;
}

bool MeshGL::makeGrid(float width, float depth, int segmentsX, int segmentsZ) {
    const int sx = segmentsX < 1 ? 1 : segmentsX, sz = segmentsZ < 1 ? 1 : segmentsZ;
    if ((uint64_t(sx) + 1) * (uint64_t(sz) + 1) > kMaxVertices) {
        release();
        return false;
    }
    return _fill(mesh_shapes::plane(width, depth, sx, sz, kGridLayout));
}

bool MeshGL::makeTorus(float radius, float tubeRadius, int segments) {
    if (segments < 1) return false;
    if ((uint64_t(segments) + 1) * (uint64_t(segments) + 1) > kMaxVertices) {
        release();
        return false;
    }
    return _fill(mesh_shapes::torus(radius, tubeRadius, segments, segments, kTorusLayout));
}

bool MeshGL::_fill(const mesh_shapes::MeshShape& shape) {
    if (!_allocate(shape.positions.size(), shape.indices.size() / 3)) return false;
    for (uint32_t v = 0; v < vertexCount; ++v) {
        const mesh_shapes::Point3 &p = shape.positions[v], &n = shape.normals[v];
        setVec4(positions.get(), v, p.x, p.y, p.z, 1.0f);
        setVec4(normals.get(), v, n.x, n.y, n.z, 0.0f);
        setVec4(texCoords.get(), v, shape.texCoords[v].u, shape.texCoords[v].v, 0.0f, 1.0f);
    }
    for (uint32_t f = 0; f < faceCount; ++f)
        _setFace(f, shape.indices[size_t(f) * 3], shape.indices[size_t(f) * 3 + 1], shape.indices[size_t(f) * 3 + 2]);
    const float white[4] = {1, 1, 1, 1};
    setAllColors(white);
    return true;
}
