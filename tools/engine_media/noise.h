#pragma once

// Deterministic value noise for the procedural media: the same picture on every machine and every run.
#include <cmath>
#include <cstdint>

namespace media {

inline float hash(int x, int y, int z, uint32_t salt) {
    uint32_t h = salt * 0x9E3779B1u ^ uint32_t(x) * 0x85EBCA77u ^ uint32_t(y) * 0xC2B2AE3Du ^ uint32_t(z) * 0x27D4EB2Fu;
    h ^= h >> 15;
    h *= 0x2C1B3C6Du;
    h ^= h >> 12;
    h *= 0x297A2D39u;
    h ^= h >> 15;
    return float(h & 0xFFFFFF) / float(0xFFFFFF);
}

inline float smooth(float t) { return t * t * (3.0f - 2.0f * t); }
inline float mix(float a, float b, float t) { return a + (b - a) * t; }

// Noise in 0 to 1 over 3D space, one lattice cell a unit; `period` > 0 makes it tile in x and y.
inline float valueNoise(float x, float y, float z, uint32_t salt, int period = 0) {
    const int x0 = int(std::floor(x)), y0 = int(std::floor(y)), z0 = int(std::floor(z));
    const float fx = smooth(x - float(x0)), fy = smooth(y - float(y0)), fz = smooth(z - float(z0));
    auto at = [&](int i, int j, int k) {
        int xi = x0 + i, yj = y0 + j;
        if (period > 0) xi = ((xi % period) + period) % period, yj = ((yj % period) + period) % period;
        return hash(xi, yj, z0 + k, salt);
    };
    const float a = mix(mix(at(0, 0, 0), at(1, 0, 0), fx), mix(at(0, 1, 0), at(1, 1, 0), fx), fy);
    const float b = mix(mix(at(0, 0, 1), at(1, 0, 1), fx), mix(at(0, 1, 1), at(1, 1, 1), fx), fy);
    return mix(a, b, fz);
}

// Fractal sum of octaves, 0 to 1; with `period` the result tiles over that many base cells.
inline float fbm(float x, float y, float z, int octaves, uint32_t salt, int period = 0) {
    float sum = 0.0f, amplitude = 0.5f, total = 0.0f;
    for (int o = 0; o < octaves; ++o) {
        sum += amplitude * valueNoise(x, y, z, salt + uint32_t(o) * 101u, period);
        total += amplitude;
        x *= 2.0f, y *= 2.0f, z *= 2.0f, amplitude *= 0.5f;
        if (period > 0) period *= 2;
    }
    return sum / total;
}

inline float clamp01(float v) { return v < 0.0f ? 0.0f : v > 1.0f ? 1.0f : v; }

}  // namespace media
