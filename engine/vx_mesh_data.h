#pragma once

#include <cstdint>
#include <vector>

#include "engine/vx_math.h"

namespace Vantalux_nsp {

// The geometry of a mesh on the processor: one position, normal and texture coordinate per vertex, and
// triangles (three indices each) or lines (two each). Front faces wind counter-clockwise.
struct vxMeshData {
    enum Primitive { kTriangles, kLines };

    Primitive primitive = kTriangles;
    std::vector<vxVec3> positions;
    std::vector<vxVec3> normals;
    std::vector<vxVec2> texCoords;
    std::vector<uint32_t> indices;

    uint32_t vertexCount() const { return uint32_t(positions.size()); }
    // Triangles; a line mesh has none.
    uint32_t faceCount() const { return primitive == kTriangles ? uint32_t(indices.size() / 3) : 0; }
    void clear() { *this = vxMeshData{}; }
};

// The shapes a mesh can be made as. A division count below 1 counts as 1; sizes are full extents, centred on
// the origin.
namespace vxMeshBuilders {

// A box with each side cut into a grid: the X sides divY by divZ cells, the Y sides divX by divZ, the Z
// sides divX by divY. Each side has its own vertices, so edges stay sharp.
vxMeshData box(const vxVec3& size, int divX, int divY, int divZ);
// A flat rectangle in the XZ plane facing +Y, texture coordinates 0 to 1 over it.
vxMeshData plane(float width, float depth, int cellsX, int cellsZ);
// A UV sphere: `slices` around Y, `stacks` from pole to pole; the pole rows keep their degenerate
// triangles, so the face count is 2 x slices x stacks.
vxMeshData sphere(float radius, int slices, int stacks);
// A ring about the Y axis: `segments` around it, `tubeSegments` around the tube.
vxMeshData torus(float radius, float tubeRadius, int segments, int tubeSegments);
// Reference lines in the XZ plane, `divisions` cells a side.
vxMeshData grid(float width, float depth, int divisions);

}  // namespace vxMeshBuilders

}  // namespace Vantalux_nsp
