#include "textures.h"

#include <cmath>
#include <cstdio>
#include <functional>

#include "engine/vx_cube_faces.h"
#include "noise.h"
#include "picture.h"

namespace media {

namespace {

constexpr float kPi = 3.14159265f;

Rgb lerp(Rgb a, Rgb b, float t) { return {mix(a.r, b.r, t), mix(a.g, b.g, t), mix(a.b, b.b, t)}; }
Rgb scale(Rgb a, float s) { return {a.r * s, a.g * s, a.b * s}; }

// Tiger-striped fur: dark stripes that wander over an orange coat.
Rgb furColor(float u, float v) {
    const float wander = fbm(u * 4, v * 4, 0, 4, 11, 4) * 3.0f;
    const float stripe = std::sin((u * 7.0f + wander) * 2.0f * kPi);
    const float coat = fbm(u * 16, v * 16, 1, 3, 12, 16);
    const Rgb orange{0.95f, 0.58f + 0.1f * coat, 0.18f};
    return stripe > 0.55f ? scale(orange, 0.12f) : scale(orange, 0.8f + 0.3f * coat);
}

// A grey-brown rock, tiling across u for spheres' seams.
Rgb rock(float u, float v, uint32_t salt, Rgb base) {
    const float n = fbm(u * 8, v * 8, 0, 6, salt, 8);
    const float crack = std::fabs(fbm(u * 4, v * 4, 3, 4, salt + 7, 4) - 0.5f);
    const float shade = 0.55f + 0.7f * (n - 0.5f) - (crack < 0.03f ? 0.25f : 0.0f);
    return scale(base, shade);
}

// Glowing rings around the middle: the translucent belt under the asteroids.
Rgb beltWaves(float u, float v) {
    const float x = u * 2 - 1, y = v * 2 - 1, r = std::sqrt(x * x + y * y);
    const float band = std::exp(-std::pow((r - 0.66f) / 0.14f, 2.0f));
    const float waves = 0.5f + 0.5f * std::sin(r * 90.0f + fbm(x * 3, y * 3, 0, 3, 21) * 6.0f);
    const float glow = band * (0.35f + 0.65f * waves);
    return {0.35f * glow, 0.55f * glow, 1.0f * glow};
}

// Warm marble for the knot.
Rgb marble(float u, float v) {
    const float veins = std::sin((u * 6 + v * 3 + fbm(u * 5, v * 5, 0, 5, 31, 5) * 4.0f) * kPi);
    const float t = 0.5f + 0.5f * veins;
    return lerp({0.85f, 0.35f, 0.12f}, {1.0f, 0.85f, 0.55f}, t * t);
}

Rgb swirl(float u, float v, Rgb a, Rgb b, uint32_t salt) {
    const float t = fbm(u * 6 + fbm(u * 3, v * 3, 0, 3, salt, 3) * 2, v * 6, 0, 5, salt + 1, 6);
    return lerp(a, b, clamp01(t * 1.6f - 0.3f));
}

// Stone slabs with dark joints; the picture tiles.
Rgb groundTiles(float u, float v) {
    const float cu = u * 4, cv = v * 4;
    const float fu = cu - std::floor(cu), fv = cv - std::floor(cv);
    const float joint = std::fmin(std::fmin(fu, 1 - fu), std::fmin(fv, 1 - fv));
    const float stone = fbm(u * 32, v * 32, hash(int(cu), int(cv), 0, 41) * 10, 4, 42, 32);
    const Rgb slab = scale({0.62f, 0.58f, 0.5f}, 0.75f + 0.4f * stone);
    return joint < 0.02f ? scale(slab, 0.25f) : slab;
}

// A soft round spot: the particle sprite.
Rgb sprite(float u, float v) {
    const float x = u * 2 - 1, y = v * 2 - 1, r2 = x * x + y * y;
    const float s = clamp01(std::exp(-r2 * 4.0f) * 1.1f - 0.02f);
    return {s, s, s};
}

// Dark floor with a faint grid: the ground under the particles.
Rgb particleFloor(float u, float v) {
    const float cu = u * 8, cv = v * 8;
    const float fu = cu - std::floor(cu), fv = cv - std::floor(cv);
    const float line = std::fmin(std::fmin(fu, 1 - fu), std::fmin(fv, 1 - fv)) < 0.03f ? 1.0f : 0.0f;
    const float n = fbm(u * 16, v * 16, 0, 4, 51, 16);
    return {0.12f + 0.08f * n + 0.2f * line, 0.13f + 0.08f * n + 0.3f * line, 0.16f + 0.1f * n + 0.45f * line};
}

// Stars over a faint nebula, by direction, so that the six faces meet without seams.
Rgb spaceSky(float x, float y, float z) {
    const float length = std::sqrt(x * x + y * y + z * z);
    x /= length, y /= length, z /= length;
    const float cloud = fbm(x * 2.5f + 10, y * 2.5f, z * 2.5f, 6, 61);
    const float dust = clamp01((cloud - 0.45f) * 2.2f);
    Rgb c{0.02f + 0.4f * dust * dust, 0.01f + 0.12f * dust, 0.05f + 0.45f * dust};
    constexpr float kCells = 180.0f;
    const int cx = int(std::floor(x * kCells)), cy = int(std::floor(y * kCells)), cz = int(std::floor(z * kCells));
    for (int dx = -1; dx <= 1; ++dx)
        for (int dy = -1; dy <= 1; ++dy)
            for (int dz = -1; dz <= 1; ++dz) {
                const int i = cx + dx, j = cy + dy, k = cz + dz;
                if (hash(i, j, k, 62) > 0.06f) continue;
                const float sx = (float(i) + hash(i, j, k, 63)) / kCells, sy = (float(j) + hash(i, j, k, 64)) / kCells,
                            sz = (float(k) + hash(i, j, k, 65)) / kCells;
                const float d2 = ((x - sx) * (x - sx) + (y - sy) * (y - sy) + (z - sz) * (z - sz)) * kCells * kCells;
                const float brightness = std::pow(hash(i, j, k, 66), 3.0f) * 1.4f + 0.15f;
                const float s = brightness * std::exp(-d2 * 18.0f);
                const float tint = hash(i, j, k, 67);
                c.r += s * (0.8f + 0.2f * tint), c.g += s * 0.85f, c.b += s * (1.0f - 0.2f * tint);
            }
    return c;
}

// Dark violet behind the fur.
Rgb furBackground(float u, float v) {
    const float x = u * 2 - 1, y = v * 2 - 1;
    const float glow = clamp01(1.0f - std::sqrt(x * x + y * y) * 0.8f);
    const float n = fbm(u * 6, v * 6, 0, 4, 71);
    return {0.12f + 0.25f * glow + 0.05f * n, 0.08f + 0.12f * glow, 0.2f + 0.35f * glow + 0.05f * n};
}

// Bands of colour stacked around the torus's tube.
Rgb torusStack(float u, float v) {
    constexpr Rgb kBands[] = {{0.9f, 0.3f, 0.2f}, {0.95f, 0.75f, 0.2f}, {0.3f, 0.75f, 0.35f}, {0.2f, 0.5f, 0.9f},
                              {0.6f, 0.3f, 0.8f}};
    const float position = v * 10.0f + fbm(u * 8, v * 2, 0, 3, 81, 8) * 0.8f;
    const int band = int(std::floor(position));
    const float edge = position - float(band);
    const Rgb c = kBands[((band % 5) + 5) % 5];
    return scale(c, edge < 0.08f ? 0.45f : 0.85f + 0.2f * fbm(u * 30, v * 30, 0, 2, 82));
}

// Islands whose brightness rises with height: the displacement follows the luminance, the colours read
// as water, grass, rock and snow.
Rgb terrain(float u, float v) {
    const float x = u * 2 - 1, y = v * 2 - 1;
    const float island = clamp01(1.0f - (x * x + y * y) * 0.9f);
    const float h = clamp01(fbm(u * 5, v * 5, 0, 6, 91) * 1.5f * island - 0.15f);
    if (h < 0.15f) return lerp({0.02f, 0.05f, 0.2f}, {0.05f, 0.2f, 0.45f}, h / 0.15f);
    if (h < 0.45f) return lerp({0.15f, 0.4f, 0.12f}, {0.35f, 0.55f, 0.2f}, (h - 0.15f) / 0.3f);
    if (h < 0.75f) return lerp({0.5f, 0.45f, 0.35f}, {0.65f, 0.6f, 0.55f}, (h - 0.45f) / 0.3f);
    return lerp({0.8f, 0.8f, 0.82f}, {1.0f, 1.0f, 1.0f}, (h - 0.75f) / 0.25f);
}

struct Picture {
    const char* name;
    int size;
    std::function<Rgb(float, float)> shade;
};

bool writeAll(const std::string& dir, const std::vector<Picture>& pictures) {
    for (const Picture& p : pictures) {
        if (!writePicture(dir + "/" + p.name, p.size, p.size, p.shade)) {
            std::fprintf(stderr, "cannot write %s/%s\n", dir.c_str(), p.name);
            return false;
        }
    }
    return true;
}

}  // namespace

bool writeTextures(const std::string& mediaDir, const std::string& heldDir) {
    const std::string textures = mediaDir + "/textures";
    std::vector<Picture> pictures = {
        {"fur_color.jpg", 512, furColor},
        {"rock019.jpg", 512, [](float u, float v) { return rock(u, v, 101, {0.75f, 0.45f, 0.3f}); }},
        {"rock029.jpg", 256, [](float u, float v) { return rock(u, v, 102, {0.6f, 0.58f, 0.55f}); }},
        {"pwave.jpg", 512, beltWaves},
        {"hdr_dof_tex.jpg", 512, marble},
        {"ss_color1.jpg", 256, [](float u, float v) { return swirl(u, v, {0.15f, 0.35f, 0.8f}, {0.9f, 0.95f, 1.0f}, 111); }},
        {"ss_color2.jpg", 256, [](float u, float v) { return swirl(u, v, {0.55f, 0.35f, 0.08f}, {1.0f, 0.85f, 0.35f}, 112); }},
        {"ss_color3.jpg", 512, groundTiles},
        {"ps_color1.jpg", 64, sprite},
        {"ps_color2.jpg", 512, particleFloor},
    };
    if (!writeAll(textures, pictures)) return false;

    // The skybox's faces, each drawn by direction as the skybox shows it.
    constexpr const char* kFaceNames[6] = {"right.jpg", "left.jpg", "top.jpg", "bottom.jpg", "front.jpg", "back.jpg"};
    std::vector<Picture> faces;
    for (int f = 0; f < 6; ++f) {
        const Vantalux_nsp::vxCubeFaceFrame frame = Vantalux_nsp::kVxSkyboxFaceFrames[f];
        faces.push_back({kFaceNames[f], 512, [frame](float u, float v) {
                             const float a = u * 2 - 1, b = 1 - v * 2;
                             return spaceSky(frame.axis.x + frame.right.x * a + frame.up.x * b,
                                             frame.axis.y + frame.right.y * a + frame.up.y * b,
                                             frame.axis.z + frame.right.z * a + frame.up.z * b);
                         }});
    }
    if (!writeAll(textures + "/space_skybox", faces)) return false;

    return writeAll(heldDir, {{"fur_background.jpg", 256, furBackground},
                              {"torus_stack_color.jpg", 256, torusStack},
                              {"vtf_terrain.jpg", 256, terrain}});
}

}  // namespace media
