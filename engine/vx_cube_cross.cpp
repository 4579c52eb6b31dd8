#include "engine/vx_cube_cross.h"

#include <algorithm>
#include <cmath>

namespace Vantalux_nsp::vxCubeCross {

namespace {

// A tile of the cross: where it lies (in tiles), which way it faces, and the directions of its right and
// upward edges in the picture.
struct Tile {
    int column, row;
    vxVec3 axis, right, up;
};

constexpr Tile kTiles[6] = {
    {1, 0, {0, 1, 0}, {1, 0, 0}, {0, 0, 1}},     // up
    {0, 1, {-1, 0, 0}, {0, 0, -1}, {0, 1, 0}},   // left
    {1, 1, {0, 0, -1}, {1, 0, 0}, {0, 1, 0}},    // front
    {2, 1, {1, 0, 0}, {0, 0, 1}, {0, 1, 0}},     // right
    {1, 2, {0, -1, 0}, {1, 0, 0}, {0, 0, -1}},   // down
    {1, 3, {0, 0, 1}, {1, 0, 0}, {0, -1, 0}},    // back
};

const Tile& tileFor(const vxVec3& d) {
    const float ax = std::fabs(d.x), ay = std::fabs(d.y), az = std::fabs(d.z);
    if (ax >= ay && ax >= az) return d.x >= 0 ? kTiles[3] : kTiles[1];
    if (ay >= az) return d.y >= 0 ? kTiles[0] : kTiles[4];
    return d.z >= 0 ? kTiles[5] : kTiles[2];
}

}  // namespace

vxVec3 faceDirection(int face, float s, float t) {
    const float sc = 2.0f * s - 1.0f, tc = 2.0f * t - 1.0f;
    // OpenGL's table of cube map face selection, solved for the direction.
    switch (face) {
        case 0: return {1, -tc, -sc};
        case 1: return {-1, -tc, sc};
        case 2: return {sc, 1, tc};
        case 3: return {sc, -1, -tc};
        case 4: return {sc, -tc, 1};
        default: return {-sc, -tc, -1};
    }
}

void pixelForDirection(const vxVec3& direction, int tileSize, int& x, int& y) {
    const Tile& tile = tileFor(direction);
    const float major = std::max(direction.dot(tile.axis), 1e-20f);
    const float u = direction.dot(tile.right) / major, v = direction.dot(tile.up) / major;
    const int px = int(std::floor((u + 1.0f) * 0.5f * float(tileSize)));
    const int py = int(std::floor((1.0f - v) * 0.5f * float(tileSize)));
    x = tile.column * tileSize + std::clamp(px, 0, tileSize - 1);
    y = tile.row * tileSize + std::clamp(py, 0, tileSize - 1);
}

bool directionForPixel(int x, int y, int tileSize, vxVec3& direction) {
    if (tileSize < 1 || x < 0 || y < 0) return false;
    const int column = x / tileSize, row = y / tileSize;
    for (const Tile& tile : kTiles) {
        if (tile.column != column || tile.row != row) continue;
        const float u = (float(x - column * tileSize) + 0.5f) / float(tileSize) * 2.0f - 1.0f;
        const float v = 1.0f - (float(y - row * tileSize) + 0.5f) / float(tileSize) * 2.0f;
        direction = tile.axis + tile.right * u + tile.up * v;
        return true;
    }
    return false;
}

bool split(const vxRgbeImage& cross, Faces& faces) {
    faces = {};
    if (cross.width < 3 || cross.width % 3 != 0) return false;
    const int size = cross.width / 3;
    if (cross.height != 4 * size || cross.rgb.size() != size_t(cross.width) * size_t(cross.height) * 3) return false;
    faces.size = size;
    for (int face = 0; face < 6; ++face) {
        std::vector<float>& out = faces.rgb[size_t(face)];
        out.resize(size_t(size) * size_t(size) * 3);
        for (int row = 0; row < size; ++row)
            for (int column = 0; column < size; ++column) {
                const vxVec3 d = faceDirection(face, (float(column) + 0.5f) / float(size), (float(row) + 0.5f) / float(size));
                int x = 0, y = 0;
                pixelForDirection(d, size, x, y);
                const float* source = &cross.rgb[(size_t(y) * size_t(cross.width) + size_t(x)) * 3];
                std::copy_n(source, 3, &out[(size_t(row) * size_t(size) + size_t(column)) * 3]);
            }
    }
    return true;
}

}  // namespace Vantalux_nsp::vxCubeCross
