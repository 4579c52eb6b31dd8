// The shapes meshes are made as: what a draw relies on (indices in range, front faces outward, unit
// normals) and the sizes the demos count triangles by.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "engine/vx_mesh_data.h"

using namespace Vantalux_nsp;

namespace {

// Six times the enclosed volume; positive when every face winds counter-clockwise seen from outside.
double signedVolume(const vxMeshData& mesh) {
    double sum = 0;
    for (size_t i = 0; i + 2 < mesh.indices.size(); i += 3) {
        const vxVec3 a = mesh.positions[mesh.indices[i]], b = mesh.positions[mesh.indices[i + 1]],
                     c = mesh.positions[mesh.indices[i + 2]];
        sum += a.dot(b.cross(c));
    }
    return sum;
}

void expectDrawable(const vxMeshData& mesh) {
    ASSERT_EQ(mesh.normals.size(), mesh.positions.size());
    ASSERT_EQ(mesh.texCoords.size(), mesh.positions.size());
    EXPECT_TRUE(std::all_of(mesh.indices.begin(), mesh.indices.end(), [&](uint32_t i) { return i < mesh.vertexCount(); }));
    for (const vxVec3& n : mesh.normals) EXPECT_NEAR(n.length(), 1.0f, 1e-4f);
    ASSERT_EQ(mesh.primitive, vxMeshData::kTriangles);  // only triangles have faces to turn
    // Each non-degenerate face turns its front the way its vertices' normals point.
    size_t facing = 0, counted = 0;
    for (size_t i = 0; i + 2 < mesh.indices.size(); i += 3) {
        const vxVec3 a = mesh.positions[mesh.indices[i]], b = mesh.positions[mesh.indices[i + 1]],
                     c = mesh.positions[mesh.indices[i + 2]];
        const vxVec3 faceNormal = (b - a).cross(c - a);
        if (faceNormal.length() < 1e-6f) continue;  // the poles of a sphere
        ++counted;
        const vxVec3 n = mesh.normals[mesh.indices[i]] + mesh.normals[mesh.indices[i + 1]] + mesh.normals[mesh.indices[i + 2]];
        if (faceNormal.dot(n) > 0) ++facing;
    }
    EXPECT_GT(counted, 0u);
    EXPECT_EQ(facing, counted);
}

}  // namespace

TEST(MeshBuilders, ClosedShapesFaceOutwardWithIndicesInRange) {
    const vxMeshData box = vxMeshBuilders::box({80, 80, 80}, 8, 8, 8);
    const vxMeshData sphere = vxMeshBuilders::sphere(50, 30, 30);
    const vxMeshData torus = vxMeshBuilders::torus(30, 10, 80, 40);
    for (const vxMeshData* mesh : {&box, &sphere, &torus}) {
        expectDrawable(*mesh);
        EXPECT_GT(signedVolume(*mesh), 0.0);
    }
    // The box's volume is exact: 80^3, times 6.
    EXPECT_NEAR(signedVolume(box), 6.0 * 80 * 80 * 80, 1.0);
}

TEST(MeshBuilders, FaceCountsTheDemosReport) {
    // The asteroid of the instancing demo: a sphere of 20 by 20 segments is 800 triangles.
    EXPECT_EQ(vxMeshBuilders::sphere(1.1f, 20, 20).faceCount(), 800u);
    EXPECT_EQ(vxMeshBuilders::grid(400, 400, 20).faceCount(), 0u);  // lines are not triangles
}

TEST(MeshBuilders, LargePlaneNeedsIndicesBeyondSixteenBits) {
    // The displacement demo's plane: 500 by 500 cells.
    const vxMeshData plane = vxMeshBuilders::plane(400, 400, 500, 500);
    EXPECT_EQ(plane.faceCount(), 500u * 500u * 2u);
    EXPECT_GT(*std::max_element(plane.indices.begin(), plane.indices.end()), 65535u);
    expectDrawable(plane);
    for (const vxVec3& n : plane.normals) EXPECT_EQ(n.y, 1.0f);
    // It spans the size asked for, centred.
    const auto [minX, maxX] = std::minmax_element(plane.positions.begin(), plane.positions.end(),
                                                  [](const vxVec3& a, const vxVec3& b) { return a.x < b.x; });
    EXPECT_FLOAT_EQ(minX->x, -200.0f);
    EXPECT_FLOAT_EQ(maxX->x, 200.0f);
}

TEST(MeshBuilders, DivisionsBelowOneMakeOneCellInsteadOfNothingOrACrash) {
    for (int divisions : {0, -1, -100000}) {
        const vxMeshData box = vxMeshBuilders::box({1, 1, 1}, divisions, divisions, divisions);
        EXPECT_EQ(box.faceCount(), 12u);
        expectDrawable(box);
        EXPECT_EQ(vxMeshBuilders::sphere(1, divisions, divisions).faceCount(), 2u);
        EXPECT_EQ(vxMeshBuilders::torus(2, 1, divisions, divisions).faceCount(), 2u);
        EXPECT_EQ(vxMeshBuilders::plane(1, 1, divisions, divisions).faceCount(), 2u);
        const vxMeshData grid = vxMeshBuilders::grid(10, 10, divisions);
        EXPECT_EQ(grid.indices.size(), 8u);  // two lines each way
        for (const vxVec3& p : grid.positions) EXPECT_TRUE(std::isfinite(p.x) && std::isfinite(p.z));
    }
}
