#include "engine/vx_mesh.h"

#include <GL/glew.h>

#include <algorithm>

#include "engine/vx_material.h"

namespace Vantalux_nsp {

vxMesh::vxMesh(std::string name) : vxObject(std::move(name), kMesh) {}

vxMesh::~vxMesh() { _freeBuffers(); }

void vxMesh::makeBox(const vxVec3& size, int divX, int divY, int divZ) {
    setData(vxMeshBuilders::box(size, divX, divY, divZ));
}
void vxMesh::makePlane(float width, float depth, int cellsX, int cellsZ) {
    setData(vxMeshBuilders::plane(width, depth, cellsX, cellsZ));
}
void vxMesh::makeSphere(float radius, int slices, int stacks) {
    setData(vxMeshBuilders::sphere(radius, slices, stacks));
}
void vxMesh::makeTorus(float radius, float tubeRadius, int segments, int tubeSegments) {
    setData(vxMeshBuilders::torus(radius, tubeRadius, segments, tubeSegments));
}
void vxMesh::makeGrid(float width, float depth, int divisions) { setData(vxMeshBuilders::grid(width, depth, divisions)); }

bool vxMesh::setData(vxMeshData data) {
    const uint32_t vertices = data.vertexCount();
    const size_t perPrimitive = data.primitive == vxMeshData::kTriangles ? 3 : 2;
    if (data.indices.size() % perPrimitive != 0) return false;
    if (data.normals.size() != vertices || data.texCoords.size() != vertices) return false;
    if (std::any_of(data.indices.begin(), data.indices.end(), [&](uint32_t i) { return i >= vertices; })) return false;
    m_data = std::move(data);
    m_boundsMin = m_boundsMax = m_data.positions.empty() ? vxVec3{} : m_data.positions.front();
    for (const vxVec3& p : m_data.positions) {
        m_boundsMin = {std::min(m_boundsMin.x, p.x), std::min(m_boundsMin.y, p.y), std::min(m_boundsMin.z, p.z)};
        m_boundsMax = {std::max(m_boundsMax.x, p.x), std::max(m_boundsMax.y, p.y), std::max(m_boundsMax.z, p.z)};
    }
    // Old ranges may name faces the new geometry lacks: they are cut to it.
    const uint32_t faces = m_data.faceCount();
    m_ranges.erase(std::remove_if(m_ranges.begin(), m_ranges.end(), [&](const FaceRange& r) { return r.first >= faces; }),
                   m_ranges.end());
    for (FaceRange& r : m_ranges) r.count = std::min(r.count, faces - r.first);
    m_buffersStale = true;
    return true;
}

bool vxMesh::assignMaterialToFaces(vxMaterial* material, uint32_t firstFace, uint32_t lastFace) {
    const uint32_t faces = getNumFaces();
    if (firstFace > lastFace || lastFace >= faces) return false;
    const uint32_t end = lastFace + 1;
    std::vector<FaceRange> kept;
    for (const FaceRange& r : m_ranges) {
        const uint32_t rEnd = r.first + r.count;
        if (rEnd <= firstFace || r.first >= end) {
            kept.push_back(r);
            continue;
        }
        if (r.first < firstFace) kept.push_back({r.material, r.first, firstFace - r.first});
        if (rEnd > end) kept.push_back({r.material, end, rEnd - end});
    }
    kept.push_back({material, firstFace, end - firstFace});
    std::sort(kept.begin(), kept.end(), [](const FaceRange& a, const FaceRange& b) { return a.first < b.first; });
    m_ranges = std::move(kept);
    return true;
}

vxMaterial* vxMesh::getMaterial() const {
    for (const FaceRange& r : m_ranges)
        if (r.first == 0) return r.material;
    return nullptr;
}

void vxMesh::setTexCoordTiling(int unit, float u, float v) {
    if (unit < 0 || unit >= kTexCoordUnits) return;
    m_tiling[size_t(unit)] = {u, v};
    m_buffersStale = true;
}

void vxMesh::_freeBuffers() {
    std::vector<GLuint> names{m_positionBuffer, m_normalBuffer, m_indexBuffer};
    for (uint32_t& b : m_texCoordBuffers) names.push_back(b), b = 0;
    names.erase(std::remove(names.begin(), names.end(), 0u), names.end());
    if (!names.empty()) glDeleteBuffers(GLsizei(names.size()), names.data());
    m_positionBuffer = m_normalBuffer = m_indexBuffer = 0;
}

bool vxMesh::buildBuffers() {
    _freeBuffers();
    m_buffersStale = false;
    if (m_data.positions.empty() || m_data.indices.empty()) return false;
    auto upload = [](GLenum target, const void* data, size_t bytes) {
        GLuint buffer = 0;
        glGenBuffers(1, &buffer);
        glBindBuffer(target, buffer);
        glBufferData(target, GLsizeiptr(bytes), data, GL_STATIC_DRAW);
        return buffer;
    };
    const size_t n = m_data.positions.size();
    m_positionBuffer = upload(GL_ARRAY_BUFFER, m_data.positions.data(), n * sizeof(vxVec3));
    m_normalBuffer = upload(GL_ARRAY_BUFFER, m_data.normals.data(), n * sizeof(vxVec3));
    for (int unit = 0; unit < kTexCoordUnits; ++unit) {
        const vxVec2 tiling = m_tiling[size_t(unit)];
        std::vector<vxVec2> scaled(m_data.texCoords);
        for (vxVec2& t : scaled) t.x *= tiling.x, t.y *= tiling.y;
        m_texCoordBuffers[size_t(unit)] = upload(GL_ARRAY_BUFFER, scaled.data(), n * sizeof(vxVec2));
    }
    m_indexBuffer = upload(GL_ELEMENT_ARRAY_BUFFER, m_data.indices.data(), m_data.indices.size() * sizeof(uint32_t));
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    return true;
}

void vxMesh::bindData() {
    if (m_buffersStale) buildBuffers();
    if (!m_positionBuffer) return;
    glBindBuffer(GL_ARRAY_BUFFER, m_positionBuffer);
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, nullptr);
    glBindBuffer(GL_ARRAY_BUFFER, m_normalBuffer);
    glEnableClientState(GL_NORMAL_ARRAY);
    glNormalPointer(GL_FLOAT, 0, nullptr);
    for (int unit = 0; unit < kTexCoordUnits; ++unit) {
        glClientActiveTexture(GLenum(GL_TEXTURE0 + unit));
        glBindBuffer(GL_ARRAY_BUFFER, m_texCoordBuffers[size_t(unit)]);
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        glTexCoordPointer(2, GL_FLOAT, 0, nullptr);
    }
    glClientActiveTexture(GL_TEXTURE0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, m_indexBuffer);
}

void vxMesh::_drawFaces(uint32_t first, uint32_t count) {
    if (!m_indexBuffer || count == 0) return;
    const bool lines = m_data.primitive == vxMeshData::kLines;
    const GLenum mode = lines ? GL_LINES : GL_TRIANGLES;
    const uint32_t perFace = lines ? 2 : 3;
    const void* offset = reinterpret_cast<const void*>(uintptr_t(first) * perFace * sizeof(uint32_t));
    if (m_instances > 1) glDrawElementsInstanced(mode, GLsizei(count * perFace), GL_UNSIGNED_INT, offset, m_instances);
    else glDrawElements(mode, GLsizei(count * perFace), GL_UNSIGNED_INT, offset);
}

void vxMesh::drawData() {
    const uint32_t primitives = m_data.primitive == vxMeshData::kLines ? uint32_t(m_data.indices.size() / 2)
                                                                       : m_data.faceCount();
    _drawFaces(0, primitives);
}

void vxMesh::unbindData() {
    glDisableClientState(GL_VERTEX_ARRAY);
    glDisableClientState(GL_NORMAL_ARRAY);
    for (int unit = 0; unit < kTexCoordUnits; ++unit) {
        glClientActiveTexture(GLenum(GL_TEXTURE0 + unit));
        glDisableClientState(GL_TEXTURE_COORD_ARRAY);
    }
    glClientActiveTexture(GL_TEXTURE0);
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
}

void vxMesh::draw(vxRenderer&, vxDrawMode mode, int pass) {
    bindData();
    if (mode == vxDrawMode::kDepthOnly || m_ranges.empty()) {
        if (mode != vxDrawMode::kDepthOnly) {
            // No material: plain unlit colour.
            glDisable(GL_LIGHTING);
            glColor4fv(m_color.data());
        }
        drawData();
    } else {
        const bool keep = mode == vxDrawMode::kPassOverFrameStates;
        uint32_t covered = 0;
        for (const FaceRange& r : m_ranges) {
            if (r.first > covered) {
                glDisable(GL_LIGHTING);
                glColor4fv(m_color.data());
                _drawFaces(covered, r.first - covered);
            }
            if (r.material) r.material->apply(pass, keep);
            if (m_hasColor) glColor4fv(m_color.data());
            _drawFaces(r.first, r.count);
            if (r.material) r.material->unapply(keep);
            covered = r.first + r.count;
        }
        if (covered < getNumFaces()) _drawFaces(covered, getNumFaces() - covered);
    }
    unbindData();
}

bool vxMesh::isTranslucent() const {
    const vxMaterial* material = getMaterial();
    return material && material->isTranslucent();
}

bool vxMesh::getLocalBounds(vxVec3& min, vxVec3& max) const {
    if (m_data.positions.empty()) return false;
    min = m_boundsMin, max = m_boundsMax;
    return true;
}

}  // namespace Vantalux_nsp
