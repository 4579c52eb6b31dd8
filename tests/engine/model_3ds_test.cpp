// The knot model as the HDR demo loads it, and 3DS files damaged in the ways that would make a reader run
// past their end.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <vector>

#include "engine/vx_model_data.h"

using namespace Vantalux_nsp;

namespace {

std::vector<uint8_t> readWhole(const char* path) {
    std::vector<uint8_t> bytes;
    if (FILE* f = std::fopen(path, "rb")) {
        uint8_t block[4096];
        for (size_t n; (n = std::fread(block, 1, sizeof block, f)) > 0;) bytes.insert(bytes.end(), block, block + n);
        std::fclose(f);
    }
    return bytes;
}

uint16_t u16At(const std::vector<uint8_t>& b, size_t at) { return uint16_t(b[at] | b[at + 1] << 8); }
uint32_t u32At(const std::vector<uint8_t>& b, size_t at) { return uint32_t(u16At(b, at)) | uint32_t(u16At(b, at + 2)) << 16; }

// Offset of the first chunk with that id, found by walking the tree through the containers of geometry.
size_t findChunk(const std::vector<uint8_t>& file, uint16_t id, size_t begin, size_t end) {
    for (size_t at = begin; at + 6 <= end;) {
        const uint16_t chunk = u16At(file, at);
        const uint32_t length = u32At(file, at + 2);
        if (chunk == id) return at;
        if (length < 6) return 0;
        size_t content = at + 6;
        if (chunk == 0x4000) content += std::strlen(reinterpret_cast<const char*>(&file[content])) + 1;
        if (chunk == 0x4D4D || chunk == 0x3D3D || chunk == 0x4000 || chunk == 0x4100 || chunk == 0xB000 || chunk == 0xB002)
            if (const size_t found = findChunk(file, id, content, at + length)) return found;
        at += length;
    }
    return 0;
}
size_t findChunk(const std::vector<uint8_t>& file, uint16_t id) { return findChunk(file, id, 0, file.size()); }

const char* kKnot = ENGINE_MEDIA_DIR "/models/knot.3DS";

}  // namespace

TEST(Model3ds, KnotLoadsAsTheHdrDemoNeedsIt) {
    vxModelData model;
    ASSERT_TRUE(vxLoadModelFile(kKnot, model));
    const vxModelData::Node* knot = model.findNode("knot");
    ASSERT_NE(knot, nullptr);
    // 240 rings of 21 vertices along the tube (the seams doubled for their texture coordinates), two
    // triangles a cell: what tools/engine_media/knot_3ds.cpp writes.
    EXPECT_EQ(knot->mesh.vertexCount(), 241u * 21u);
    EXPECT_EQ(knot->mesh.faceCount(), 9600u);
    EXPECT_EQ(model.totalFaces(), 9600u);
    ASSERT_EQ(knot->groups.size(), 1u);
    ASSERT_LT(knot->groups[0].material, model.materials.size());
    EXPECT_EQ(model.materials[knot->groups[0].material].name, "knot_mat");

    // Front faces outward: the importer's normals agree with the winding everywhere.
    const vxMeshData& mesh = knot->mesh;
    for (size_t i = 0; i < mesh.indices.size(); i += 3) {
        const vxVec3 a = mesh.positions[mesh.indices[i]], b = mesh.positions[mesh.indices[i + 1]],
                     c = mesh.positions[mesh.indices[i + 2]];
        ASSERT_GT((b - a).cross(c - a).dot(mesh.normals[mesh.indices[i]]), 0.0f) << "face " << i / 3;
    }

    // Scaled by 0.016 as the demo does, in the world the tree places it, it faces the camera on the Z axis:
    // about 190 units across in X and Y, thinner in Z.
    vxMat4 world = vxMat4::scaling({0.016f, 0.016f, 0.016f}) * model.root.transform * knot->transform;
    vxVec3 lo{1e9f, 1e9f, 1e9f}, hi{-1e9f, -1e9f, -1e9f};
    for (const vxVec3& p : mesh.positions) {
        const vxVec3 w = world.transformPoint(p);
        lo = {std::min(lo.x, w.x), std::min(lo.y, w.y), std::min(lo.z, w.z)};
        hi = {std::max(hi.x, w.x), std::max(hi.y, w.y), std::max(hi.z, w.z)};
    }
    EXPECT_GT(hi.x - lo.x, 150.0f);
    EXPECT_LT(hi.x - lo.x, 450.0f);
    EXPECT_GT(hi.y - lo.y, 150.0f);
    EXPECT_LT(hi.z - lo.z, hi.y - lo.y);
}

TEST(Model3ds, RefusesTruncatedFiles) {
    const std::vector<uint8_t> file = readWhole(kKnot);
    ASSERT_GT(file.size(), 1000u);
    for (size_t length : {size_t(0), size_t(5), size_t(6), size_t(100), file.size() / 2, file.size() - 1}) {
        vxModelData model;
        EXPECT_FALSE(vxLoadModelFromMemory(file.data(), length, "3ds", model)) << length;
        EXPECT_EQ(model.totalVertices(), 0u);
    }
}

TEST(Model3ds, RefusesGeometryThatPointsOutsideItself) {
    const std::vector<uint8_t> file = readWhole(kKnot);
    const size_t faces = findChunk(file, 0x4120), mapping = findChunk(file, 0x4140), vertices = findChunk(file, 0x4110);
    ASSERT_NE(faces, 0u);
    ASSERT_NE(mapping, 0u);
    ASSERT_NE(vertices, 0u);

    std::vector<uint8_t> index = file;  // a face naming vertex 65535
    index[faces + 8] = 0xFF, index[faces + 9] = 0xFF;
    std::vector<uint8_t> fewerCoordinates = file;  // texture coordinates for only half of the vertices
    const uint16_t half = uint16_t(u16At(file, vertices + 6) / 2);
    fewerCoordinates[mapping + 6] = uint8_t(half), fewerCoordinates[mapping + 7] = uint8_t(half >> 8);
    std::vector<uint8_t> longChunk = file;  // the vertex list claiming more bytes than its parent holds
    longChunk[vertices + 5] = 0x7F;
    std::vector<uint8_t> manyFaces = file;  // a face count beyond the face list's bytes
    manyFaces[faces + 6] = 0xFF, manyFaces[faces + 7] = 0xFF;
    for (const auto* damaged : {&index, &fewerCoordinates, &longChunk, &manyFaces}) {
        EXPECT_FALSE(vxCheck3dsChunks(damaged->data(), damaged->size()));
        vxModelData model;
        EXPECT_FALSE(vxLoadModelFromMemory(damaged->data(), damaged->size(), "3ds", model));
    }
    EXPECT_TRUE(vxCheck3dsChunks(file.data(), file.size()));
}

TEST(Model3ds, KeyframeTrackClaimingBillionsOfKeysIsRefusedBeforeTheImporterReservesThem) {
    std::vector<uint8_t> file = readWhole(kKnot);
    const size_t rotation = findChunk(file, 0xB021);
    ASSERT_NE(rotation, 0u);
    // The key count, after the chunk header, the flags and eight unused bytes: 0x34FCFD4D keys of at least
    // 22 bytes, found by the fuzz target as a reservation of 15 GB.
    for (int i = 0; i < 4; ++i) file[rotation + 16 + size_t(i)] = uint8_t(0x34FCFD4Du >> (8 * i));
    EXPECT_FALSE(vxCheck3dsChunks(file.data(), file.size()));
    vxModelData model;
    EXPECT_FALSE(vxLoadModelFromMemory(file.data(), file.size(), "3ds", model));
}

TEST(Model3ds, ObjectThatIsNoMeshIsRefusedSinceTheImporterLosesItsMemory) {
    // The fuzz target found the importer leaking an object that holds a camera instead of a mesh.
    std::vector<uint8_t> file = readWhole(kKnot);
    const size_t mesh = findChunk(file, 0x4100);
    ASSERT_NE(mesh, 0u);
    file[mesh + 1] = 0x47;  // the mesh chunk becomes a camera chunk
    EXPECT_FALSE(vxCheck3dsChunks(file.data(), file.size()));
    vxModelData model;
    EXPECT_FALSE(vxLoadModelFromMemory(file.data(), file.size(), "3ds", model));
}

TEST(Model3ds, MissingOrForeignFilesGiveNoModel) {
    vxModelData model;
    EXPECT_FALSE(vxLoadModelFile(ENGINE_MEDIA_DIR "/models/no_such_model.3DS", model));
    EXPECT_FALSE(vxLoadModelFile(ENGINE_MEDIA_DIR "/textures/galileo_cross.hdr", model));
    EXPECT_FALSE(vxLoadModelFile(nullptr, model));
}
