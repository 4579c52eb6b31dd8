// What each builder the demos and the engine use makes today, held as counts, a hash of the indices and
// weighted sums of every attribute: a builder that changes its vertex order, its triangles or its numbers
// beyond rounding fails here. Only the last bits of a float may move (its order of operations may differ).
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "demos/gl_utility/mesh_gl.h"
#include "engine/vx_mesh_data.h"

using namespace Vantalux_nsp;

namespace {

// Counts, the index hash and the sums of one mesh; four attributes of up to four floats a vertex.
struct MeshRecord {
    const char* name;
    uint32_t vertices;
    uint32_t indices;
    uint64_t indexHash;
    double sums[4];  // positions, normals, texture coordinates, colours (0 where the mesh has none)
};

// Weighs each float by where it stands, so that two vertices or two components trading places change the sum.
struct WeightedSum {
    double sum = 0, magnitude = 0;
    uint64_t at = 0;
    void add(float value) {
        const double weight = 1.0 + double(at++ % 17);
        sum += double(value) * weight;
        magnitude += std::fabs(double(value)) * weight;
    }
};

uint64_t fnv1a(const std::vector<uint32_t>& indices) {
    uint64_t hash = 14695981039346656037ull;
    for (uint32_t index : indices) {
        for (int shift = 0; shift < 32; shift += 8) hash = (hash ^ ((index >> shift) & 0xffu)) * 1099511628211ull;
    }
    return hash;
}

struct Measured {
    uint32_t vertices = 0;
    std::vector<uint32_t> indices;
    WeightedSum sums[4];
};

Measured measure(const MeshGL& mesh) {
    Measured m;
    m.vertices = mesh.vertexCount;
    for (uint32_t f = 0; f < mesh.faceCount; ++f)
        for (int corner = 0; corner < 3; ++corner) m.indices.push_back(mesh.faceIndex(f, corner));
    const float* arrays[4] = {mesh.positions.get(), mesh.normals.get(), mesh.texCoords.get(), mesh.colors.get()};
    for (int a = 0; a < 4; ++a)
        for (size_t i = 0; i < size_t(mesh.vertexCount) * 4; ++i) m.sums[a].add(arrays[a][i]);
    return m;
}

Measured measure(const vxMeshData& mesh) {
    Measured m;
    m.vertices = mesh.vertexCount();
    m.indices = mesh.indices;
    for (const vxVec3& p : mesh.positions) m.sums[0].add(p.x), m.sums[0].add(p.y), m.sums[0].add(p.z);
    for (const vxVec3& n : mesh.normals) m.sums[1].add(n.x), m.sums[1].add(n.y), m.sums[1].add(n.z);
    for (const vxVec2& t : mesh.texCoords) m.sums[2].add(t.x), m.sums[2].add(t.y);
    return m;
}

void expectRecord(const Measured& m, const MeshRecord& record) {
    SCOPED_TRACE(record.name);
    char row[256];
    std::snprintf(row, sizeof row, "{\"%s\", %u, %zu, 0x%016llxull, {%.17g, %.17g, %.17g, %.17g}},", record.name,
                  m.vertices, m.indices.size(), (unsigned long long)fnv1a(m.indices), m.sums[0].sum, m.sums[1].sum,
                  m.sums[2].sum, m.sums[3].sum);
    EXPECT_EQ(m.vertices, record.vertices) << row;
    EXPECT_EQ(m.indices.size(), record.indices) << row;
    EXPECT_EQ(fnv1a(m.indices), record.indexHash) << row;
    for (int a = 0; a < 4; ++a) EXPECT_NEAR(m.sums[a].sum, record.sums[a], 1e-6 * m.sums[a].magnitude + 1e-9) << row;
}

// The parameters are the ones the demos pass (the surface deformer's grid at its default 511 by 511 and at
// one cell).
const MeshRecord kDemoMeshes[] = {
    {"quad", 4, 6, 0xb00afd5f696047b7ull, {78, 40, 78, 136}},
    {"triangle", 3, 3, 0x756241e1be8c9396ull, {30, 24, 49, 42}},
    {"grid 511x511", 262144, 1566726, 0x52f75acd6aac20d4ull, {2359300.1601114273, 2359292, 4718576.0173723251, 9437176}},
    {"grid 1x1", 4, 6, 0x4e764369d8bb5d66ull, {160, 32, 66, 136}},
    {"grid 7x3", 32, 126, 0xa1aeb13373eaf48aull, {272.47620695829391, 280, 548.52381457388401, 1116}},
    {"torus 4 1.5 200", 40401, 240000, 0xc2c493c825064816ull, {370877.8227653174, 13.522104845304966, 909036.62499006186, 1454421}},
    {"torus 20 8 100", 10201, 60000, 0x8b71369410f0883cull, {109806.37755409355, -0.40511556851255648, 229501.40998967551, 367210}},
    {"torus 1 0.25 5", 36, 150, 0x947d4352f98aa6aeull, {362.28762911553838, 10.667951926973117, 777.40000742673874, 1260}},
};

const std::function<bool(MeshGL&)> kDemoBuilds[] = {
    [](MeshGL& m) { return m.makeQuad(); },
    [](MeshGL& m) { return m.makeTriangle(); },
    [](MeshGL& m) { return m.makeGrid(10, 10, 511, 511); },
    [](MeshGL& m) { return m.makeGrid(10, 10, 1, 1); },
    [](MeshGL& m) { return m.makeGrid(6, 2, 7, 3); },
    [](MeshGL& m) { return m.makeTorus(4, 1.5f, 200); },
    [](MeshGL& m) { return m.makeTorus(20, 8, 100); },
    [](MeshGL& m) { return m.makeTorus(1, 0.25f, 5); },
};

const MeshRecord kEngineMeshes[] = {
    {"box 600x10x600 10 10 4", 462, 2160, 0x1f27db865050e612ull, {-25562, -6, 4160.900012716651, 0}},
    {"box 80 8 8 8", 486, 2304, 0x4d7c7e7b4dd90d66ull, {-2840, -8, 4386.375, 0}},
    {"box 79 4 4 4", 150, 576, 0xa8d2c33a41964015ull, {118.5, 2, 1366.5, 0}},
    {"plane 300 4 4", 25, 96, 0xf674d47cf387a0b5ull, {-2925, 219, 239.25, 0}},
    {"plane 400 500 500", 251001, 1500000, 0xf5096e302615a0bbull, {2406.399787902832, 2258999, 2258986.9803047781, 0}},
    {"sphere 50 30 30", 961, 5400, 0x4e8a2648b9482108ull, {8942.5598364887028, 178.85118897755603, 8653.8333768881857, 0}},
    {"sphere 1.1 20 20", 441, 2400, 0x8099484270d5ed26ull, {133.43866219683696, 121.30788288718644, 3971.5000050514936, 0}},
    {"sphere 50 40 40", 1681, 9600, 0xa0160c0385d817f7ull, {11507.822550258523, 230.15640343497051, 15122.150003567338, 0}},
    {"torus 30 10 80 80", 6561, 38400, 0xf7a99e2ba03d4346ull, {21710.31240186801, 2.8442659005256417, 88567.875007736497, 0}},
    {"torus 100 20 80 40", 3321, 19200, 0xa7381c74b1b2e765ull, {36904.649120065376, 8.2161974753065863, 44834.400007169694, 0}},
    {"torus 65 15 60 30", 1891, 10800, 0x20b3eb1a6e120760ull, {17155.273120513335, -5.3123025416658436, 25510.900065407157, 0}},
    {"torus 130 60 30 30", 961, 5400, 0x4e8a2648b9482108ull, {34416.765504565359, -1.7289828625535506, 12978.733398485929, 0}},
    {"torus 50 15 100 100", 10201, 60000, 0x9da6431afd68f250ull, {45113.05339269447, 1.923538500828073, 137694.34998868778, 0}},
    {"grid 200 100 20", 84, 84, 0xad46ad96b3020505ull, {1560.0003414154053, 749, 0, 0}},
};

const std::function<vxMeshData()> kEngineBuilds[] = {
    [] { return vxMeshBuilders::box({600, 10, 600}, 10, 10, 4); },
    [] { return vxMeshBuilders::box({80, 80, 80}, 8, 8, 8); },
    [] { return vxMeshBuilders::box({79, 79, 79}, 4, 4, 4); },
    [] { return vxMeshBuilders::plane(300, 300, 4, 4); },
    [] { return vxMeshBuilders::plane(400, 400, 500, 500); },
    [] { return vxMeshBuilders::sphere(50, 30, 30); },
    [] { return vxMeshBuilders::sphere(1.1f, 20, 20); },
    [] { return vxMeshBuilders::sphere(50, 40, 40); },
    [] { return vxMeshBuilders::torus(30, 10, 80, 80); },
    [] { return vxMeshBuilders::torus(100, 20, 80, 40); },
    [] { return vxMeshBuilders::torus(65, 15, 60, 30); },
    [] { return vxMeshBuilders::torus(130, 60, 30, 30); },
    [] { return vxMeshBuilders::torus(50, 15, 100, 100); },
    [] { return vxMeshBuilders::grid(200, 100, 20); },
};

static_assert(std::size(kDemoMeshes) == std::size(kDemoBuilds));
static_assert(std::size(kEngineMeshes) == std::size(kEngineBuilds));

TEST(MeshRecord, TheDemosMeshesComeOutAsRecorded) {
    for (size_t i = 0; i < std::size(kDemoMeshes); ++i) {
        MeshGL mesh;
        ASSERT_TRUE(kDemoBuilds[i](mesh)) << kDemoMeshes[i].name;
        expectRecord(measure(mesh), kDemoMeshes[i]);
    }
}

TEST(MeshRecord, TheEnginesMeshesComeOutAsRecorded) {
    for (size_t i = 0; i < std::size(kEngineMeshes); ++i) {
        const vxMeshData mesh = kEngineBuilds[i]();
        EXPECT_EQ(mesh.primitive, i + 1 == std::size(kEngineMeshes) ? vxMeshData::kLines : vxMeshData::kTriangles);
        expectRecord(measure(mesh), kEngineMeshes[i]);
    }
}

}  // namespace
