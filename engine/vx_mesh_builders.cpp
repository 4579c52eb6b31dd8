#include <algorithm>
#include <cmath>

#include "engine/vx_mesh_data.h"

namespace Vantalux_nsp::vxMeshBuilders {

namespace {

constexpr float kTwoPi = 6.2831853071795864f;
constexpr float kPi = 3.14159265358979323f;

// Limits a division count to what makes sense for one mesh: at least 1, and no more than a 32-bit index can
// reach over a whole box.
int divisions(int n) { return std::clamp(n, 1, 4096); }

// Appends a grid of (du + 1) x (dv + 1) vertices spanned from `corner` by `u` and `v`, with u x v pointing
// out of the front side, and its 2 du dv triangles.
void appendPatch(vxMeshData& mesh, const vxVec3& corner, const vxVec3& u, const vxVec3& v, int du, int dv) {
    const uint32_t first = mesh.vertexCount();
    const vxVec3 normal = u.cross(v).normalized();
    for (int j = 0; j <= dv; ++j)
        for (int i = 0; i <= du; ++i) {
            const float s = float(i) / float(du), t = float(j) / float(dv);
            mesh.positions.push_back(corner + u * s + v * t);
            mesh.normals.push_back(normal);
            mesh.texCoords.push_back({s, t});
        }
    for (int j = 0; j < dv; ++j)
        for (int i = 0; i < du; ++i) {
            const uint32_t a = first + uint32_t(j * (du + 1) + i);
            const uint32_t row = uint32_t(du + 1);
            mesh.indices.insert(mesh.indices.end(), {a, a + 1, a + row + 1, a, a + row + 1, a + row});
        }
}

// Triangles over a (du + 1) x (dv + 1) vertex grid already in the mesh, row by row, first row at `first`.
void appendGridFaces(vxMeshData& mesh, uint32_t first, int du, int dv) {
    const uint32_t row = uint32_t(du + 1);
    for (int j = 0; j < dv; ++j)
        for (int i = 0; i < du; ++i) {
            const uint32_t a = first + uint32_t(j) * row + uint32_t(i);
            mesh.indices.insert(mesh.indices.end(), {a, a + 1, a + row + 1, a, a + row + 1, a + row});
        }
}

}  // namespace

vxMeshData box(const vxVec3& size, int divX, int divY, int divZ) {
    divX = divisions(divX), divY = divisions(divY), divZ = divisions(divZ);
    const float x = size.x * 0.5f, y = size.y * 0.5f, z = size.z * 0.5f;
    vxMeshData mesh;
    appendPatch(mesh, {x, -y, z}, {0, 0, -size.z}, {0, size.y, 0}, divZ, divY);    // +X
    appendPatch(mesh, {-x, -y, -z}, {0, 0, size.z}, {0, size.y, 0}, divZ, divY);   // -X
    appendPatch(mesh, {-x, y, z}, {size.x, 0, 0}, {0, 0, -size.z}, divX, divZ);    // +Y
    appendPatch(mesh, {-x, -y, -z}, {size.x, 0, 0}, {0, 0, size.z}, divX, divZ);   // -Y
    appendPatch(mesh, {-x, -y, z}, {size.x, 0, 0}, {0, size.y, 0}, divX, divY);    // +Z
    appendPatch(mesh, {x, -y, -z}, {-size.x, 0, 0}, {0, size.y, 0}, divX, divY);   // -Z
    return mesh;
}

vxMeshData plane(float width, float depth, int cellsX, int cellsZ) {
    vxMeshData mesh;
    appendPatch(mesh, {-width * 0.5f, 0, depth * 0.5f}, {width, 0, 0}, {0, 0, -depth}, divisions(cellsX),
                divisions(cellsZ));
    return mesh;
}

vxMeshData sphere(float radius, int slices, int stacks) {
    slices = divisions(slices), stacks = divisions(stacks);
    vxMeshData mesh;
    for (int j = 0; j <= stacks; ++j) {
        const float latitude = -0.5f * kPi + kPi * float(j) / float(stacks);
        // The poles exactly on the axis, so that their triangles are truly flat rather than slivers of any
        // orientation.
        const bool pole = j == 0 || j == stacks;
        const float ring = pole ? 0.0f : std::cos(latitude), up = pole ? (j == 0 ? -1.0f : 1.0f) : std::sin(latitude);
        for (int i = 0; i <= slices; ++i) {
            const float around = kTwoPi * float(i) / float(slices);
            const vxVec3 n{ring * std::cos(around), up, -ring * std::sin(around)};
            mesh.positions.push_back(n * radius);
            mesh.normals.push_back(n);
            mesh.texCoords.push_back({float(i) / float(slices), float(j) / float(stacks)});
        }
    }
    appendGridFaces(mesh, 0, slices, stacks);
    return mesh;
}

vxMeshData torus(float radius, float tubeRadius, int segments, int tubeSegments) {
    segments = divisions(segments), tubeSegments = divisions(tubeSegments);
    vxMeshData mesh;
    for (int j = 0; j <= tubeSegments; ++j) {
        const float tube = kTwoPi * float(j) / float(tubeSegments);
        for (int i = 0; i <= segments; ++i) {
            const float around = kTwoPi * float(i) / float(segments);
            const vxVec3 radial{std::cos(around), 0.0f, -std::sin(around)};
            const vxVec3 n = radial * std::cos(tube) + vxVec3{0, 1, 0} * std::sin(tube);
            mesh.positions.push_back(radial * radius + n * tubeRadius);
            mesh.normals.push_back(n);
            mesh.texCoords.push_back({2.0f * float(i) / float(segments), float(j) / float(tubeSegments)});
        }
    }
    appendGridFaces(mesh, 0, segments, tubeSegments);
    return mesh;
}

vxMeshData grid(float width, float depth, int divisionCount) {
    const int n = divisions(divisionCount);
    vxMeshData mesh;
    mesh.primitive = vxMeshData::kLines;
    const float x0 = -width * 0.5f, z0 = -depth * 0.5f;
    for (int k = 0; k <= n; ++k) {
        const float s = float(k) / float(n);
        const uint32_t first = mesh.vertexCount();
        mesh.positions.insert(mesh.positions.end(), {{x0 + s * width, 0, z0}, {x0 + s * width, 0, -z0},
                                                     {x0, 0, z0 + s * depth}, {-x0, 0, z0 + s * depth}});
        for (int v = 0; v < 4; ++v) {
            mesh.normals.push_back({0, 1, 0});
            mesh.texCoords.push_back({0, 0});
        }
        mesh.indices.insert(mesh.indices.end(), {first, first + 1, first + 2, first + 3});
    }
    return mesh;
}

}  // namespace Vantalux_nsp::vxMeshBuilders
