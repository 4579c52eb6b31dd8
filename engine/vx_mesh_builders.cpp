// The engine's shapes are those of the GL utility layer, in the engine's vector types.
#include <algorithm>

#include "demos/gl_utility/mesh_shapes.h"
#include "engine/vx_mesh_data.h"

namespace Vantalux_nsp::vxMeshBuilders {

namespace {

// Limits a division count to what makes sense for one mesh: at least 1, and no more than a 32-bit index can
// reach over a whole box.
int divisions(int n) { return std::clamp(n, 1, 4096); }

vxMeshData meshData(const mesh_shapes::MeshShape& shape) {
    vxMeshData mesh;
    mesh.primitive = shape.primitive == mesh_shapes::MeshShape::kLines ? vxMeshData::kLines : vxMeshData::kTriangles;
    mesh.positions.reserve(shape.positions.size());
    for (const mesh_shapes::Point3& p : shape.positions) mesh.positions.push_back({p.x, p.y, p.z});
    mesh.normals.reserve(shape.normals.size());
    for (const mesh_shapes::Point3& n : shape.normals) mesh.normals.push_back({n.x, n.y, n.z});
    mesh.texCoords.reserve(shape.texCoords.size());
    for (const mesh_shapes::Point2& t : shape.texCoords) mesh.texCoords.push_back({t.u, t.v});
    mesh.indices = shape.indices;
    return mesh;
}

}  // namespace

vxMeshData box(const vxVec3& size, int divX, int divY, int divZ) {
    return meshData(mesh_shapes::box({size.x, size.y, size.z}, divisions(divX), divisions(divY), divisions(divZ)));
}

vxMeshData plane(float width, float depth, int cellsX, int cellsZ) {
    return meshData(mesh_shapes::plane(width, depth, divisions(cellsX), divisions(cellsZ)));
}

vxMeshData sphere(float radius, int slices, int stacks) {
    return meshData(mesh_shapes::sphere(radius, divisions(slices), divisions(stacks)));
}

vxMeshData torus(float radius, float tubeRadius, int segments, int tubeSegments) {
    return meshData(mesh_shapes::torus(radius, tubeRadius, divisions(segments), divisions(tubeSegments)));
}

vxMeshData grid(float width, float depth, int divisionCount) {
    return meshData(mesh_shapes::lineGrid(width, depth, divisions(divisionCount)));
}

}  // namespace Vantalux_nsp::vxMeshBuilders
