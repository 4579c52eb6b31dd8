// vxCheck3dsChunks: the 3DS chunk tree walked before the importer sees it, so that a damaged file is refused
// by our own bounds checks rather than read past its end.
#include <cstring>

#include "engine/vx_model_data.h"

namespace Vantalux_nsp {

namespace {

constexpr uint16_t kMain = 0x4D4D;
constexpr uint16_t kEditor = 0x3D3D;
constexpr uint16_t kObject = 0x4000;
constexpr uint16_t kTriangleMesh = 0x4100;
constexpr uint16_t kLight = 0x4600;
constexpr uint16_t kCamera = 0x4700;
constexpr uint16_t kVertexList = 0x4110;
constexpr uint16_t kFaceList = 0x4120;
constexpr uint16_t kFaceMaterial = 0x4130;
constexpr uint16_t kMappingList = 0x4140;
constexpr uint16_t kSmoothingGroups = 0x4150;
constexpr uint16_t kMaterial = 0xAFFF;
constexpr uint16_t kMaterialName = 0xA000;
constexpr uint16_t kKeyframer = 0xB000;
constexpr uint16_t kFirstNodeTag = 0xB001;  // ambient, object, camera, target, light, spot nodes
constexpr uint16_t kLastNodeTag = 0xB007;
constexpr uint16_t kNodeHeader = 0xB010;
constexpr uint16_t kFirstTrack = 0xB020;  // position, rotation, scale, field of view, roll, ... tracks
constexpr uint16_t kLastTrack = 0xB029;
constexpr int kMaxDepth = 12;

uint16_t u16(const uint8_t* p) { return uint16_t(p[0] | (p[1] << 8)); }
uint32_t u32(const uint8_t* p) { return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24; }

// Length of a zero-terminated string at the start of [p, p + size), terminator included; 0 when unterminated.
size_t stringLength(const uint8_t* p, size_t size) {
    const void* end = std::memchr(p, 0, size);
    return end ? size_t(static_cast<const uint8_t*>(end) - p) + 1 : 0;
}

// What one triangle mesh declares, checked against itself once all its chunks are read.
struct MeshCounts {
    uint32_t vertices = 0;
    uint32_t mappings = 0;
    bool haveVertices = false;
    uint32_t faces = 0;
    uint16_t largestIndex = 0;
    bool haveFaces = false;
};

class Walker {
public:
    bool walk(const uint8_t* p, size_t size, uint16_t parent, int depth) {
        if (depth > kMaxDepth) return false;
        size_t offset = 0;
        while (offset < size) {
            if (size - offset < 6) return false;
            const uint16_t id = u16(p + offset);
            const uint32_t length = u32(p + offset + 2);
            if (length < 6 || length > size - offset) return false;
            if (!chunk(id, p + offset + 6, length - 6, parent, depth)) return false;
            offset += length;
        }
        return true;
    }

private:
    bool chunk(uint16_t id, const uint8_t* p, size_t size, uint16_t parent, int depth) {
        switch (id) {
            case kMain:
            case kEditor:
            case kMaterial:
            case kKeyframer: return walk(p, size, id, depth + 1);
            case kMaterialName: return parent != kMaterial || stringLength(p, size) > 0;
            case kNodeHeader: {
                const size_t name = stringLength(p, size);
                return name > 0 && size - name >= 6;  // two flag words and the parent's index
            }
            case kObject: {
                // Objects are triangle meshes here: the importer loses the memory of a light or a camera
                // (and of an object with nothing in it), and the program draws neither.
                const size_t name = stringLength(p, size);
                m_objectHasMesh = false;
                return name > 0 && walk(p + name, size - name, id, depth + 1) && m_objectHasMesh;
            }
            case kLight:
            case kCamera: return parent != kObject;
            case kTriangleMesh: {
                m_objectHasMesh = true;
                m_mesh = {};
                if (!walk(p, size, id, depth + 1)) return false;
                return meshConsistent();
            }
            case kVertexList:
                if (parent != kTriangleMesh) return true;
                if (size < 2 || m_mesh.haveVertices) return false;
                m_mesh.vertices = u16(p);
                m_mesh.haveVertices = true;
                return size >= 2 + size_t(m_mesh.vertices) * 12;
            case kMappingList:
                if (parent != kTriangleMesh) return true;
                if (size < 2) return false;
                m_mesh.mappings = u16(p);
                return size >= 2 + size_t(m_mesh.mappings) * 8;
            case kFaceList: {
                if (parent != kTriangleMesh) return true;
                if (size < 2 || m_mesh.haveFaces) return false;
                m_mesh.faces = u16(p);
                m_mesh.haveFaces = true;
                const size_t faceBytes = 2 + size_t(m_mesh.faces) * 8;
                if (size < faceBytes) return false;
                for (uint32_t f = 0; f < m_mesh.faces; ++f)
                    for (int k = 0; k < 3; ++k) {
                        const uint16_t index = u16(p + 2 + f * 8 + uint32_t(k) * 2);
                        if (index > m_mesh.largestIndex) m_mesh.largestIndex = index;
                    }
                return walk(p + faceBytes, size - faceBytes, id, depth + 1);
            }
            case kFaceMaterial: {
                if (parent != kFaceList) return true;
                const size_t name = stringLength(p, size);
                if (name == 0 || size - name < 2) return false;
                const uint16_t count = u16(p + name);
                if (size - name - 2 < size_t(count) * 2) return false;
                for (uint16_t i = 0; i < count; ++i)
                    if (u16(p + name + 2 + size_t(i) * 2) >= m_mesh.faces) return false;
                return true;
            }
            case kSmoothingGroups: return parent != kFaceList || size >= size_t(m_mesh.faces) * 4;
            default:
                if (id >= kFirstNodeTag && id <= kLastNodeTag && parent == kKeyframer) return walk(p, size, id, depth + 1);
                if (id >= kFirstTrack && id <= kLastTrack) return trackFits(id, p, size);
                return true;  // other chunks are skipped whole, by the importer as here
        }
    }

    // A track: flags, eight unused bytes, a key count, then each key's frame number, spline flags (each set
    // flag adds a float) and value. The count must fit the chunk, since readers reserve room for it.
    static bool trackFits(uint16_t id, const uint8_t* p, size_t size) {
        if (size < 14) return false;
        const uint32_t keys = u32(p + 10);
        size_t valueBytes = 4;
        if (id == 0xB020 || id == 0xB022) valueBytes = 12;
        else if (id == 0xB021) valueBytes = 16;
        else if (id == 0xB029) valueBytes = 0;  // hide track: the frame alone
        return keys <= (size - 14) / (6 + valueBytes);
    }

    bool meshConsistent() const {
        if (m_mesh.faces > 0 && (!m_mesh.haveVertices || m_mesh.largestIndex >= m_mesh.vertices)) return false;
        // Texture coordinates are looked up by vertex index.
        return m_mesh.mappings == 0 || m_mesh.mappings >= m_mesh.vertices;
    }

    MeshCounts m_mesh;
    bool m_objectHasMesh = false;
};

}  // namespace

bool vxCheck3dsChunks(const uint8_t* data, size_t size) {
    if (!data || size < 6 || u16(data) != kMain) return false;
    Walker walker;
    return walker.walk(data, size, 0, 0);
}

}  // namespace Vantalux_nsp
