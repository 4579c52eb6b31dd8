// The CPU side of MeshGL: allocation and the four builders. Nothing here touches OpenGL.
#include <cmath>
#include <limits>
#include <new>

#include "demos/gl_utility/mesh_gl.h"

namespace {

constexpr float kTwoPi = 6.2831853f;
// Far above anything a demo asks for; keeps a wild segment count from asking for terabytes.
constexpr uint64_t kMaxVertices = 64u * 1024u * 1024u;

void setVec4(float* array, uint32_t index, float x, float y, float z, float w) {
    float* v = array + size_t(index) * 4;
    v[0] = x, v[1] = y, v[2] = z, v[3] = w;
}

void normalize3(float& x, float& y, float& z) {
    const float length = std::sqrt(x * x + y * y + z * z);
    if (length == 0.0f) return;
    x /= length, y /= length, z /= length;
}

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
    const uint64_t sx = uint64_t(segmentsX < 1 ? 1 : segmentsX);
    const uint64_t sz = uint64_t(segmentsZ < 1 ? 1 : segmentsZ);
    if (!_allocate((sx + 1) * (sz + 1), 2 * sx * sz)) return false;
    const uint32_t columns = uint32_t(sx) + 1;
    for (uint32_t j = 0; j <= sz; ++j) {
        for (uint32_t i = 0; i <= sx; ++i) {
            const uint32_t v = j * columns + i;
            const float u = float(i) / float(sx), w = float(j) / float(sz);
            setVec4(positions.get(), v, u * width - width / 2, 0.0f, w * depth - depth / 2, 1.0f);
            setVec4(normals.get(), v, 0.0f, 1.0f, 0.0f, 0.0f);
            setVec4(texCoords.get(), v, u, float(sz - j) / float(sz), 0.0f, 1.0f);
        }
    }
    uint32_t face = 0;
    for (uint32_t j = 0; j < sz; ++j) {
        for (uint32_t i = 0; i < sx; ++i) {
            const uint32_t a = j * columns + i;
            _setFace(face++, a, a + columns, a + 1);
            _setFace(face++, a + 1, a + columns, a + columns + 1);
        }
    }
    const float white[4] = {1, 1, 1, 1};
    setAllColors(white);
    return true;
}

bool MeshGL::makeTorus(float radius, float tubeRadius, int segments) {
    if (segments < 1) return false;
    const uint32_t n = uint32_t(segments);
    if (!_allocate(uint64_t(n + 1) * (n + 1), 2 * uint64_t(n) * n)) return false;
    // The first ring is a circle of the tube in the XY plane around (radius, 0, 0); the others are it
    // turned about the Y axis.
    for (uint32_t i = 0; i <= n; ++i) {
        const float a = float(i) / float(n) * kTwoPi;
        const float x = tubeRadius * std::cos(a), y = tubeRadius * std::sin(a);
        float nx = x, ny = y, nz = 0.0f;
        normalize3(nx, ny, nz);
        setVec4(positions.get(), i, x + radius, y, 0.0f, 1.0f);
        setVec4(normals.get(), i, nx, ny, nz, 0.0f);
        setVec4(texCoords.get(), i, 0.0f, float(i) / float(n), 0.0f, 1.0f);
    }
    for (uint32_t j = 1; j <= n; ++j) {
        const float b = float(j) / float(n) * kTwoPi;
        const float cb = std::cos(b), sb = std::sin(b);
        for (uint32_t i = 0; i <= n; ++i) {
            const float* p = positions.get() + size_t(i) * 4;
            const float x = p[0], y = p[1], z = p[2];
            float nx = (x - radius) * cb + z * sb, ny = y, nz = z * cb - (x - radius) * sb;
            normalize3(nx, ny, nz);
            const uint32_t v = j * (n + 1) + i;
            setVec4(positions.get(), v, x * cb + z * sb, y, z * cb - x * sb, 1.0f);
            setVec4(normals.get(), v, nx, ny, nz, 0.0f);
            setVec4(texCoords.get(), v, 2.0f * float(j) / float(n), texCoords[size_t(i) * 4 + 1], 0.0f, 1.0f);
        }
    }
    uint32_t face = 0;
    for (uint32_t j = 0; j < n; ++j) {
        for (uint32_t i = 0; i < n; ++i) {
            const uint32_t a = j * (n + 1) + i;
            _setFace(face++, a, a + n + 1, a + 1);
            _setFace(face++, a + 1, a + n + 1, a + n + 2);
        }
    }
    const float white[4] = {1, 1, 1, 1};
    setAllColors(white);
    return true;
}
