#include "demos/gl_utility/mesh_shapes.h"

#include <cmath>

namespace mesh_shapes {

namespace {

constexpr float kTwoPi = 6.2831853071795864f;
constexpr float kPi = 3.14159265358979323f;

Point3 operator+(Point3 a, Point3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
Point3 operator*(Point3 a, float s) { return {a.x * s, a.y * s, a.z * s}; }
Point3 cross(Point3 a, Point3 b) { return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x}; }
Point3 normalized(Point3 a) {
    const float length = std::sqrt(a.x * a.x + a.y * a.y + a.z * a.z);
    return length > 0.0f ? a * (1.0f / length) : Point3{};
}

// Triangles over a (columns + 1) x (rows + 1) vertex lattice already in the mesh, row by row from `first`.
void appendLatticeFaces(MeshShape& mesh, uint32_t first, int columns, int rows, CellCut cut) {
    const uint32_t row = uint32_t(columns + 1);
    for (int j = 0; j < rows; ++j)
        for (int i = 0; i < columns; ++i) {
            const uint32_t a = first + uint32_t(j) * row + uint32_t(i);
            if (cut == CellCut::kThroughFirstCorner)
                mesh.indices.insert(mesh.indices.end(), {a, a + 1, a + row + 1, a, a + row + 1, a + row});
            else
                mesh.indices.insert(mesh.indices.end(), {a, a + row, a + 1, a + 1, a + row, a + row + 1});
        }
}

// Appends a lattice of (du + 1) x (dv + 1) vertices spanned from `corner` by `u` and `v`, all with `normal`,
// texture coordinates (s, t) or, with `flipV`, (s, 1 - t) counted in whole cells, and its triangles.
void appendPatch(MeshShape& mesh, Point3 corner, Point3 u, Point3 v, Point3 normal, int du, int dv, bool flipV,
                 CellCut cut) {
    const uint32_t first = uint32_t(mesh.positions.size());
    for (int j = 0; j <= dv; ++j)
        for (int i = 0; i <= du; ++i) {
            const float s = float(i) / float(du), t = float(j) / float(dv);
            mesh.positions.push_back(corner + u * s + v * t);
            mesh.normals.push_back(normal);
            mesh.texCoords.push_back({s, flipV ? float(dv - j) / float(dv) : t});
        }
    appendLatticeFaces(mesh, first, du, dv, cut);
}

void appendSide(MeshShape& mesh, Point3 corner, Point3 u, Point3 v, int du, int dv) {
    appendPatch(mesh, corner, u, v, normalized(cross(u, v)), du, dv, false, CellCut::kThroughFirstCorner);
}

}  // namespace

MeshShape box(Point3 size, int divX, int divY, int divZ) {
    const float x = size.x * 0.5f, y = size.y * 0.5f, z = size.z * 0.5f;
    MeshShape mesh;
    appendSide(mesh, {x, -y, z}, {0, 0, -size.z}, {0, size.y, 0}, divZ, divY);   // +X
    appendSide(mesh, {-x, -y, -z}, {0, 0, size.z}, {0, size.y, 0}, divZ, divY);  // -X
    appendSide(mesh, {-x, y, z}, {size.x, 0, 0}, {0, 0, -size.z}, divX, divZ);   // +Y
    appendSide(mesh, {-x, -y, -z}, {size.x, 0, 0}, {0, 0, size.z}, divX, divZ);  // -Y
    appendSide(mesh, {-x, -y, z}, {size.x, 0, 0}, {0, size.y, 0}, divX, divY);   // +Z
    appendSide(mesh, {x, -y, -z}, {-size.x, 0, 0}, {0, size.y, 0}, divX, divY);  // -Z
    return mesh;
}

MeshShape plane(float width, float depth, int cellsX, int cellsZ, PlaneLayout layout) {
    const Point3 across{width, 0, 0}, backToFront{0, 0, -depth};
    const Point3 normal = normalized(cross(across, backToFront));
    MeshShape mesh;
    if (layout.rowsFromFront)
        appendPatch(mesh, {-width * 0.5f, 0, -depth * 0.5f}, across, {0, 0, depth}, normal, cellsX, cellsZ, true,
                    layout.cut);
    else
        appendPatch(mesh, {-width * 0.5f, 0, depth * 0.5f}, across, backToFront, normal, cellsX, cellsZ, false,
                    layout.cut);
    return mesh;
}

MeshShape sphere(float radius, int slices, int stacks) {
    MeshShape mesh;
    for (int j = 0; j <= stacks; ++j) {
        const float latitude = -0.5f * kPi + kPi * float(j) / float(stacks);
        // The poles exactly on the axis, so that their triangles are truly flat rather than slivers of any
        // orientation.
        const bool pole = j == 0 || j == stacks;
        const float ring = pole ? 0.0f : std::cos(latitude), up = pole ? (j == 0 ? -1.0f : 1.0f) : std::sin(latitude);
        for (int i = 0; i <= slices; ++i) {
            const float around = kTwoPi * float(i) / float(slices);
            const Point3 n{ring * std::cos(around), up, -ring * std::sin(around)};
            mesh.positions.push_back(n * radius);
            mesh.normals.push_back(n);
            mesh.texCoords.push_back({float(i) / float(slices), float(j) / float(stacks)});
        }
    }
    appendLatticeFaces(mesh, 0, slices, stacks, CellCut::kThroughFirstCorner);
    return mesh;
}

MeshShape torus(float radius, float tubeRadius, int segments, int tubeSegments, TorusLayout layout) {
    MeshShape mesh;
    const auto appendVertex = [&](int aroundStep, int tubeStep) {
        const float tube = kTwoPi * float(tubeStep) / float(tubeSegments);
        const float around = kTwoPi * float(aroundStep) / float(segments);
        const Point3 radial{std::cos(around), 0.0f, -std::sin(around)};
        const Point3 n = radial * std::cos(tube) + Point3{0, 1, 0} * std::sin(tube);
        mesh.positions.push_back(radial * radius + n * tubeRadius);
        mesh.normals.push_back(n);
        mesh.texCoords.push_back({2.0f * float(aroundStep) / float(segments), float(tubeStep) / float(tubeSegments)});
    };
    if (layout.rowsAroundTube) {
        for (int j = 0; j <= segments; ++j)
            for (int i = 0; i <= tubeSegments; ++i) appendVertex(j, i);
        appendLatticeFaces(mesh, 0, tubeSegments, segments, layout.cut);
    } else {
        for (int j = 0; j <= tubeSegments; ++j)
            for (int i = 0; i <= segments; ++i) appendVertex(i, j);
        appendLatticeFaces(mesh, 0, segments, tubeSegments, layout.cut);
    }
    return mesh;
}

MeshShape lineGrid(float width, float depth, int divisions) {
    MeshShape mesh;
    mesh.primitive = MeshShape::kLines;
    const float x0 = -width * 0.5f, z0 = -depth * 0.5f;
    for (int k = 0; k <= divisions; ++k) {
        const float s = float(k) / float(divisions);
        const uint32_t first = uint32_t(mesh.positions.size());
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

}  // namespace mesh_shapes
