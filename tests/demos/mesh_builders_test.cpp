#include <gtest/gtest.h>

#include <cmath>

#include "demos/gl_utility/mesh_gl.h"

namespace {

struct Vec3 {
    float x, y, z;
};

Vec3 vertex(const float* array, uint32_t index) {
    const float* v = array + size_t(index) * 4;
    return {v[0], v[1], v[2]};
}

Vec3 minus(Vec3 a, Vec3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
Vec3 cross(Vec3 a, Vec3 b) { return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x}; }
float dot(Vec3 a, Vec3 b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
float length(Vec3 a) { return std::sqrt(dot(a, a)); }

// Every index points at a vertex, and every face turns counter-clockwise when seen against its vertices'
// normals (front faces outwards).
void expectFacesFrontOutwards(const MeshGL& mesh) {
    for (uint32_t f = 0; f < mesh.faceCount; ++f) {
        const uint32_t a = mesh.faceIndex(f, 0), b = mesh.faceIndex(f, 1), c = mesh.faceIndex(f, 2);
        ASSERT_LT(a, mesh.vertexCount);
        ASSERT_LT(b, mesh.vertexCount);
        ASSERT_LT(c, mesh.vertexCount);
        const Vec3 pa = vertex(mesh.positions.get(), a);
        const Vec3 faceNormal = cross(minus(vertex(mesh.positions.get(), b), pa), minus(vertex(mesh.positions.get(), c), pa));
        const Vec3 n = vertex(mesh.normals.get(), a);
        ASSERT_GT(dot(faceNormal, n), 0.0f) << "face " << f;
    }
}

TEST(MeshBuilders, CountsAndIndexWidthFollowTheFaceCount) {
    MeshGL mesh;
    ASSERT_TRUE(mesh.makeGrid(10, 10, 511, 511));
    EXPECT_EQ(mesh.vertexCount, 512u * 512u);
    EXPECT_EQ(mesh.faceCount, 522242u);
    EXPECT_EQ(mesh.indexKind, MeshGL::kIndices32);
    EXPECT_TRUE(mesh.indices32 && !mesh.indices16);

    ASSERT_TRUE(mesh.makeTorus(4, 1.5f, 100));
    EXPECT_EQ(mesh.vertexCount, 101u * 101u);
    EXPECT_EQ(mesh.faceCount, 20000u);
    EXPECT_EQ(mesh.indexKind, MeshGL::kIndices16);
    EXPECT_TRUE(mesh.indices16 && !mesh.indices32);

    // The switch is at 65,536 faces, whatever the vertex count.
    ASSERT_TRUE(mesh.makeGrid(1, 1, 128, 256));
    EXPECT_EQ(mesh.faceCount, 65536u);
    EXPECT_EQ(mesh.indexKind, MeshGL::kIndices32);
    ASSERT_TRUE(mesh.makeGrid(1, 1, 1, 32767));
    EXPECT_EQ(mesh.faceCount, 65534u);
    EXPECT_EQ(mesh.vertexCount, 65536u);
    EXPECT_EQ(mesh.indexKind, MeshGL::kIndices16);
    // The last vertex is still reachable through 16-bit indices.
    EXPECT_EQ(mesh.faceIndex(mesh.faceCount - 1, 2), 65535u);

    ASSERT_TRUE(mesh.makeQuad());
    EXPECT_EQ(mesh.vertexCount, 4u);
    EXPECT_EQ(mesh.faceCount, 2u);
    ASSERT_TRUE(mesh.makeTriangle());
    EXPECT_EQ(mesh.vertexCount, 3u);
    EXPECT_EQ(mesh.faceCount, 1u);
}

TEST(MeshBuilders, GridSpansItsSizeAroundTheOriginAndFacesUp) {
    MeshGL grid;
    ASSERT_TRUE(grid.makeGrid(8.0f, 4.0f, 4, 2));
    float minX = 1e9f, maxX = -1e9f, minZ = 1e9f, maxZ = -1e9f;
    for (uint32_t i = 0; i < grid.vertexCount; ++i) {
        const Vec3 p = vertex(grid.positions.get(), i);
        EXPECT_EQ(p.y, 0.0f);
        minX = std::min(minX, p.x), maxX = std::max(maxX, p.x);
        minZ = std::min(minZ, p.z), maxZ = std::max(maxZ, p.z);
        EXPECT_EQ(grid.colors[size_t(i) * 4], 1.0f);  // white
    }
    EXPECT_FLOAT_EQ(minX, -4.0f);
    EXPECT_FLOAT_EQ(maxX, 4.0f);
    EXPECT_FLOAT_EQ(minZ, -2.0f);
    EXPECT_FLOAT_EQ(maxZ, 2.0f);
    expectFacesFrontOutwards(grid);
    // Texture v runs the other way to z: the first row sits at the top of the texture.
    EXPECT_FLOAT_EQ(grid.texCoords[1], 1.0f);
    EXPECT_FLOAT_EQ(grid.texCoords[size_t(grid.vertexCount - 1) * 4 + 1], 0.0f);
}

TEST(MeshBuilders, SegmentCountsBelowOneBecomeOne) {
    MeshGL grid;
    ASSERT_TRUE(grid.makeGrid(1, 1, 0, -7));
    EXPECT_EQ(grid.vertexCount, 4u);
    EXPECT_EQ(grid.faceCount, 2u);
    MeshGL torus;
    EXPECT_FALSE(torus.makeTorus(1, 0.5f, 0));
    EXPECT_EQ(torus.vertexCount, 0u);
}

TEST(MeshBuilders, TorusVerticesLieOnTheTubeWithUnitNormalsPointingOut) {
    const float radius = 4.0f, tube = 1.5f;
    MeshGL torus;
    ASSERT_TRUE(torus.makeTorus(radius, tube, 24));
    for (uint32_t i = 0; i < torus.vertexCount; ++i) {
        const Vec3 p = vertex(torus.positions.get(), i);
        // Distance from the ring's centre circle, which lies in the XZ plane.
        const float ringDistance = std::sqrt(p.x * p.x + p.z * p.z) - radius;
        EXPECT_NEAR(std::sqrt(ringDistance * ringDistance + p.y * p.y), tube, 1e-4f) << i;
        const Vec3 n = vertex(torus.normals.get(), i);
        EXPECT_NEAR(length(n), 1.0f, 1e-5f) << i;
        // The normal points from the centre circle to the vertex.
        const float scale = radius / std::sqrt(p.x * p.x + p.z * p.z);
        const Vec3 fromCircle = {p.x - p.x * scale, p.y, p.z - p.z * scale};
        EXPECT_GT(dot(n, fromCircle), 0.0f) << i;
    }
    expectFacesFrontOutwards(torus);
}

TEST(MeshBuilders, TriangleAndQuadHoldTheirCornersAndColours) {
    MeshGL triangle;
    ASSERT_TRUE(triangle.makeTriangle());
    // Red, green, blue at the three corners, counter-clockwise seen from +z.
    for (uint32_t i = 0; i < 3; ++i) EXPECT_EQ(triangle.colors[size_t(i) * 4 + i], 1.0f);
    const Vec3 a = vertex(triangle.positions.get(), 0), b = vertex(triangle.positions.get(), 1),
               c = vertex(triangle.positions.get(), 2);
    EXPECT_GT(cross(minus(b, a), minus(c, a)).z, 0.0f);

    MeshGL quad;
    ASSERT_TRUE(quad.makeQuad());
    for (uint32_t i = 0; i < 4; ++i) {
        EXPECT_EQ(quad.positions[size_t(i) * 4], quad.texCoords[size_t(i) * 4]);
        EXPECT_EQ(quad.positions[size_t(i) * 4 + 1], quad.texCoords[size_t(i) * 4 + 1]);
    }
}

TEST(MeshBuilders, RebuildingReplacesTheOldArraysAndFaceColoursStartBlack) {
    MeshGL mesh;
    ASSERT_TRUE(mesh.makeGrid(1, 1, 300, 300));
    ASSERT_EQ(mesh.indexKind, MeshGL::kIndices32);
    ASSERT_TRUE(mesh.makeQuad());
    EXPECT_EQ(mesh.indexKind, MeshGL::kIndices16);
    EXPECT_FALSE(mesh.indices32);
    for (uint32_t f = 0; f < mesh.faceCount; ++f) {
        EXPECT_EQ(mesh.faceColors[size_t(f) * 4], 0.0f);
        EXPECT_EQ(mesh.faceColors[size_t(f) * 4 + 3], 1.0f);
    }
    const float grey[4] = {0.5f, 0.5f, 0.5f, 1.0f};
    mesh.setAllColors(grey);
    EXPECT_EQ(mesh.colors[size_t(3) * 4 + 2], 0.5f);
    mesh.release();
    EXPECT_EQ(mesh.vertexCount, 0u);
    EXPECT_FALSE(mesh.positions);
}

}  // namespace
