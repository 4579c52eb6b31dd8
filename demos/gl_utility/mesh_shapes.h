#pragma once

#include <cstdint>
#include <vector>

// The shapes every mesh of the demos and the engine is made from, on the processor: one position, normal and
// texture coordinate per vertex, and triangles (three indices each) or lines (two each). Front faces wind
// counter-clockwise. Sizes are full extents centred on the origin; every division count must be at least 1
// (the callers hold their own limits).
namespace mesh_shapes {

struct Point3 {
    float x = 0, y = 0, z = 0;
};
struct Point2 {
    float u = 0, v = 0;
};

struct MeshShape {
    enum Primitive { kTriangles, kLines };

    Primitive primitive = kTriangles;
    std::vector<Point3> positions;
    std::vector<Point3> normals;
    std::vector<Point2> texCoords;
    std::vector<uint32_t> indices;
};

// The two ways a cell of a vertex lattice is cut into two triangles, a the cell's first corner and `row` the
// vertices in a lattice row: through a and a + row + 1 as (a, a+1, a+row+1), (a, a+row+1, a+row), or through
// a + 1 and a + row as (a, a+row, a+1), (a+1, a+row, a+row+1). The engine cuts the first way, the demos'
// own meshes the second; both are kept so that each draws the triangles it always drew.
enum class CellCut { kThroughFirstCorner, kThroughSecondCorner };

// A box with each side cut into a grid: the X sides divY by divZ cells, the Y sides divX by divZ, the Z
// sides divX by divY. Each side has its own vertices, so edges stay sharp.
MeshShape box(Point3 size, int divX, int divY, int divZ);

// A flat rectangle in the XZ plane facing +Y; texture v runs from 0 at the back edge (+Z) to 1 at the front.
// Vertex rows run from the back edge to the front, or the other way with `rowsFromFront`.
struct PlaneLayout {
    bool rowsFromFront = false;
    CellCut cut = CellCut::kThroughFirstCorner;
};
MeshShape plane(float width, float depth, int cellsX, int cellsZ, PlaneLayout layout = {});

// A UV sphere: `slices` around Y, `stacks` from pole to pole; the pole rows keep their degenerate
// triangles, so the face count is 2 x slices x stacks.
MeshShape sphere(float radius, int slices, int stacks);

// A ring about the Y axis: `segments` around it, `tubeSegments` around the tube. Texture u runs twice around
// the ring, v once around the tube. Vertex rows go around the ring for each step around the tube, or around
// the tube for each step around the ring with `rowsAroundTube`.
struct TorusLayout {
    bool rowsAroundTube = false;
    CellCut cut = CellCut::kThroughFirstCorner;
};
MeshShape torus(float radius, float tubeRadius, int segments, int tubeSegments, TorusLayout layout = {});

// Reference lines in the XZ plane, `divisions` cells a side.
MeshShape lineGrid(float width, float depth, int divisions);

}  // namespace mesh_shapes
