#include "sky_hdr.h"

#include <cmath>
#include <vector>

#include "engine/vx_cube_cross.h"
#include "noise.h"
#include "rgbe_writer.h"

namespace media {

namespace {

using Vantalux_nsp::vxVec3;

// Radiance in a direction: a blue dome paling to the horizon, clouds, a sun of about 60 times the sky,
// and a dim green-brown land below the horizon. The sun is a bare disc: any glow around it in a picture is
// the work of the renderer's bright pass. It stands where the HDR demo's circling camera sees it in its
// first seconds, low in the upper left of the window, clear of the knot.
vxVec3 sky(vxVec3 d) {
    d = d.normalized();
    const vxVec3 sun = vxVec3{-0.902f, 0.302f, 0.308f}.normalized();
    const float toSun = std::fmax(d.dot(sun), 0.0f);
    if (d.y < 0.0f) {
        const float n = fbm(d.x * 8, d.z * 8, 0, 5, 201);
        const float haze = std::exp(d.y * 12.0f);
        const vxVec3 land{0.12f + 0.08f * n, 0.16f + 0.08f * n, 0.07f + 0.03f * n};
        return land * (1 - haze) + vxVec3{0.75f, 0.8f, 0.85f} * haze;
    }
    const float height = std::pow(d.y, 0.45f);
    vxVec3 c = vxVec3{0.9f, 0.92f, 0.95f} * (1 - height) + vxVec3{0.12f, 0.3f, 0.8f} * height;
    // Clouds on a plane above the viewer.
    if (d.y > 0.02f) {
        const float px = d.x / d.y, pz = d.z / d.y;
        const float clearing = 1.0f - std::pow(toSun, 6.0f);  // no cloud across the sun
        const float cover =
            clamp01((fbm(px * 0.6f + 3, pz * 0.6f, 0, 6, 202) - 0.5f) * 3.0f) * clamp01(d.y * 6) * clearing;
        c = c * (1 - cover) + vxVec3{1.1f, 1.1f, 1.12f} * cover;
    }
    if (toSun > std::cos(2.5f * 0.0174533f)) c = c + vxVec3{60.0f, 56.0f, 48.0f};
    return c;
}

}  // namespace

bool writeSkyCross(const std::string& path, int tileSize) {
    const int width = 3 * tileSize, height = 4 * tileSize;
    std::vector<float> rgb(size_t(width) * size_t(height) * 3, 0.0f);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            vxVec3 d;
            if (!Vantalux_nsp::vxCubeCross::directionForPixel(x, y, tileSize, d)) continue;
            const vxVec3 c = sky(d);
            float* out = &rgb[(size_t(y) * size_t(width) + size_t(x)) * 3];
            out[0] = c.x, out[1] = c.y, out[2] = c.z;
        }
    return writeRgbe(path, width, height, rgb);
}

}  // namespace media
