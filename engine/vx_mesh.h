#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/vx_mesh_data.h"
#include "engine/vx_object.h"

namespace Vantalux_nsp {

class vxMaterial;

// A mesh in a scene: its geometry, the materials of its faces, and the vertex and index buffers it draws
// from. Buffers are built once (buildBuffers, or the first draw) and a draw costs only binds.
class vxMesh : public vxObject {
public:
    static constexpr int kTexCoordUnits = 2;  // units that get the mesh's texture coordinates

    explicit vxMesh(std::string name);
    ~vxMesh() override;

    void makeBox(const vxVec3& size, int divX, int divY, int divZ);
    void makePlane(float width, float depth, int cellsX, int cellsZ);
    void makeSphere(float radius, int slices, int stacks);
    void makeTorus(float radius, float tubeRadius, int segments, int tubeSegments);
    void makeGrid(float width, float depth, int divisions);
    // Takes any geometry whose indices all name one of its vertices; false (and nothing changed) otherwise.
    bool setData(vxMeshData data);
    const vxMeshData& getData() const { return m_data; }
    uint32_t getNumFaces() const { return m_data.faceCount(); }
    uint32_t getNumVertices() const { return m_data.vertexCount(); }

    // Faces firstFace to lastFace, both included, take the material; ranges cut into those before them.
    // False when the range lies outside the mesh.
    bool assignMaterialToFaces(vxMaterial* material, uint32_t firstFace, uint32_t lastFace);
    // The material of face 0; null when none is assigned.
    vxMaterial* getMaterial() const;

    // Colour of unlit drawing without a material (lines of a reference grid, a plane left plain).
    // With a material, the colour replaces the material's diffuse colour on unlit surfaces.
    void setColor(const vxColor& color) { m_color = color, m_hasColor = true; }
    // Texture coordinates on `unit` scaled by (u, v): a texture repeated over a large surface.
    void setTexCoordTiling(int unit, float u, float v);

    bool buildBuffers();
    // Instances each draw makes; 1 draws plainly, more draw instanced (gl_InstanceID counts them).
    void setNumDrawInstances(int count) { m_instances = count < 1 ? 1 : count; }

    // The three steps of a draw, for callers that draw one mesh many times with their own state.
    void bindData();
    void drawData();
    void unbindData();

    void draw(vxRenderer& renderer, vxDrawMode mode, int pass) override;
    bool isTranslucent() const override;
    bool getLocalBounds(vxVec3& min, vxVec3& max) const override;

private:
    struct FaceRange {
        vxMaterial* material;
        uint32_t first;
        uint32_t count;
    };

    void _freeBuffers();
    void _drawFaces(uint32_t first, uint32_t count);

    vxMeshData m_data;
    std::vector<FaceRange> m_ranges;
    vxColor m_color{1, 1, 1, 1};
    bool m_hasColor = false;
    vxVec3 m_boundsMin;
    vxVec3 m_boundsMax;
    std::array<vxVec2, kTexCoordUnits> m_tiling{{{1, 1}, {1, 1}}};
    int m_instances = 1;
    bool m_buffersStale = true;
    uint32_t m_positionBuffer = 0;
    uint32_t m_normalBuffer = 0;
    std::array<uint32_t, kTexCoordUnits> m_texCoordBuffers{};
    uint32_t m_indexBuffer = 0;
};

}  // namespace Vantalux_nsp
