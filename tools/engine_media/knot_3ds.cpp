#include "knot_3ds.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <vector>

namespace media {

namespace {

constexpr float kScale = 3500;  // the program scales the model by 0.016: about 190 units across
constexpr float kTube = 0.42f;  // tube radius in knot units
constexpr float kTwoPi = 6.2831853f;

struct V3 {
    float x, y, z;
};
V3 operator+(V3 a, V3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
V3 operator-(V3 a, V3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
V3 operator*(V3 a, float s) { return {a.x * s, a.y * s, a.z * s}; }
V3 cross(V3 a, V3 b) { return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x}; }
float dot(V3 a, V3 b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
V3 unit(V3 a) { return a * (1.0f / std::sqrt(dot(a, a))); }

// The knot's centre line. 3DS files stand Z up; the knot lies in their XZ plane so that it faces the
// viewer once the importer turns the file's Z up into Y up.
V3 curve(float t) {
    const float r = 2.0f + std::cos(3.0f * t);
    return {r * std::cos(2.0f * t), std::sin(3.0f * t), r * std::sin(2.0f * t)};
}

// A chunk: 16-bit id, 32-bit length of the whole chunk, content; numbers little-endian.
class Chunk {
public:
    explicit Chunk(uint16_t id) { u16(id).u32(0); }
    Chunk& u8(uint8_t v) {
        m_data.push_back(v);
        return *this;
    }
    Chunk& u16(uint16_t v) { return u8(uint8_t(v)).u8(uint8_t(v >> 8)); }
    Chunk& u32(uint32_t v) { return u16(uint16_t(v)).u16(uint16_t(v >> 16)); }
    Chunk& f32(float v) {
        uint32_t bits;
        std::memcpy(&bits, &v, 4);
        return u32(bits);
    }
    Chunk& text(const char* s) {
        for (; *s; ++s) u8(uint8_t(*s));
        return u8(0);
    }
    Chunk& child(const Chunk& c) {
        m_data.insert(m_data.end(), c.m_data.begin(), c.m_data.end());
        return *this;
    }
    // Writes the length in; call once the content is complete.
    Chunk& close() {
        const uint32_t length = uint32_t(m_data.size());
        for (int i = 0; i < 4; ++i) m_data[size_t(2 + i)] = uint8_t(length >> (8 * i));
        return *this;
    }
    const std::vector<uint8_t>& data() const { return m_data; }

private:
    std::vector<uint8_t> m_data;
};

Chunk color(uint16_t id, uint8_t r, uint8_t g, uint8_t b) {
    Chunk rgb(0x0011);
    rgb.u8(r).u8(g).u8(b).close();
    return std::move(Chunk(id).child(rgb).close());
}

Chunk percent(uint16_t id, uint16_t value) {
    Chunk p(0x0030);
    p.u16(value).close();
    return std::move(Chunk(id).child(p).close());
}

struct Geometry {
    std::vector<V3> positions;
    std::vector<float> uv;
    std::vector<uint16_t> faces;  // three indices a face
};

Geometry knot(int along, int around) {
    Geometry g;
    for (int i = 0; i <= along; ++i) {
        const float t = kTwoPi * float(i % along) / float(along);
        const float h = 1e-3f;
        const V3 c = curve(t);
        const V3 tangent = unit(curve(t + h) - curve(t - h));
        // Frenet frame: the torus knot's curvature never vanishes.
        const V3 bend = curve(t + h) + curve(t - h) - c * 2.0f;
        const V3 normal = unit(bend - tangent * dot(bend, tangent));
        const V3 binormal = cross(tangent, normal);
        for (int j = 0; j <= around; ++j) {
            const float a = kTwoPi * float(j % around) / float(around);
            const V3 p = c + (normal * std::cos(a) + binormal * std::sin(a)) * kTube;
            g.positions.push_back(p * kScale);
            g.uv.push_back(4.0f * float(i) / float(along));
            g.uv.push_back(float(j) / float(around));
        }
    }
    const int row = around + 1;
    for (int i = 0; i < along; ++i)
        for (int j = 0; j < around; ++j) {
            const auto a = uint16_t(i * row + j), b = uint16_t(a + row);
            g.faces.insert(g.faces.end(), {a, b, uint16_t(b + 1), a, uint16_t(b + 1), uint16_t(a + 1)});
        }
    // Faces wind counter-clockwise seen from outside, which gives a closed surface a positive volume.
    double volume = 0;
    for (size_t f = 0; f < g.faces.size(); f += 3)
        volume += dot(g.positions[g.faces[f]], cross(g.positions[g.faces[f + 1]], g.positions[g.faces[f + 2]]));
    if (volume < 0)
        for (size_t f = 0; f < g.faces.size(); f += 3) std::swap(g.faces[f + 1], g.faces[f + 2]);
    return g;
}

}  // namespace

bool writeKnot3ds(const std::string& path, int along, int around) {
    if (along < 3 || around < 3 || (along + 1) * (around + 1) > 65535) return false;
    const Geometry g = knot(along, around);
    const auto vertexCount = uint16_t(g.positions.size());
    const auto faceCount = uint16_t(g.faces.size() / 3);

    Chunk material(0xAFFF);
    material.child(Chunk(0xA000).text("knot_mat").close())
        .child(color(0xA010, 60, 60, 70))
        .child(color(0xA020, 200, 200, 210))
        .child(color(0xA030, 255, 255, 255))
        .child(percent(0xA040, 60))
        .close();

    Chunk vertices(0x4110);
    vertices.u16(vertexCount);
    for (const V3& p : g.positions) vertices.f32(p.x).f32(p.y).f32(p.z);
    vertices.close();
    Chunk mapping(0x4140);
    mapping.u16(vertexCount);
    for (float f : g.uv) mapping.f32(f);
    mapping.close();
    Chunk local(0x4160);
    for (float f : {1.f, 0.f, 0.f, 0.f, 1.f, 0.f, 0.f, 0.f, 1.f, 0.f, 0.f, 0.f}) local.f32(f);
    local.close();
    Chunk faceMaterial(0x4130);
    faceMaterial.text("knot_mat").u16(faceCount);
    for (uint16_t f = 0; f < faceCount; ++f) faceMaterial.u16(f);
    faceMaterial.close();
    Chunk smoothing(0x4150);
    for (uint16_t f = 0; f < faceCount; ++f) smoothing.u32(1);
    smoothing.close();
    Chunk faces(0x4120);
    faces.u16(faceCount);
    for (size_t f = 0; f < g.faces.size(); f += 3) faces.u16(g.faces[f]).u16(g.faces[f + 1]).u16(g.faces[f + 2]).u16(7);
    faces.child(faceMaterial).child(smoothing).close();

    Chunk mesh(0x4100);
    mesh.child(vertices).child(mapping).child(local).child(faces).close();
    Chunk object(0x4000);
    object.text("knot").child(mesh).close();
    Chunk editor(0x3D3D);
    editor.child(Chunk(0x3D3E).u32(3).close()).child(material).child(Chunk(0x0100).f32(1.0f).close()).child(object).close();
    // The keyframer's one node names the object, so that a reader's node tree calls it "knot" too.
    Chunk nodeHeader(0xB010);
    nodeHeader.text("knot").u16(0).u16(0).u16(0xFFFF).close();
    Chunk position(0xB020), rotation(0xB021), scaling(0xB022);
    position.u16(0).u32(0).u32(0).u32(1).u32(0).u16(0).f32(0).f32(0).f32(0).close();
    rotation.u16(0).u32(0).u32(0).u32(1).u32(0).u16(0).f32(0).f32(0).f32(0).f32(1).close();
    scaling.u16(0).u32(0).u32(0).u32(1).u32(0).u16(0).f32(1).f32(1).f32(1).close();
    Chunk node(0xB002);
    node.child(Chunk(0xB030).u16(0).close())
        .child(nodeHeader)
        .child(Chunk(0xB013).f32(0).f32(0).f32(0).close())
        .child(position)
        .child(rotation)
        .child(scaling)
        .close();
    Chunk keyframer(0xB000);
    keyframer.child(Chunk(0xB00A).u16(5).text("knot").u32(100).close())
        .child(Chunk(0xB008).u32(0).u32(100).close())
        .child(node)
        .close();

    Chunk main(0x4D4D);
    main.child(Chunk(0x0002).u32(3).close()).child(editor).child(keyframer).close();

    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return false;
    const bool written = std::fwrite(main.data().data(), 1, main.data().size(), file) == main.data().size();
    return std::fclose(file) == 0 && written;
}

}  // namespace media
