#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "demos/opencl/particle_system_cl.h"

// What the OpenCL demos' kernels compute, worked out on the CPU in double precision from the formulas the
// kernels implement, for the tests to hold the device's results against.
namespace cl_references {

struct Vec3 {
    double x = 0, y = 0, z = 0;
};
inline Vec3 cross(Vec3 a, Vec3 b) { return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x}; }
inline double length(Vec3 a) { return std::sqrt(a.x * a.x + a.y * a.y + a.z * a.z); }
inline Vec3 normalized(Vec3 a) {
    const double l = length(a);
    return l > 0 ? Vec3{a.x / l, a.y / l, a.z / l} : a;
}

// One vertex of the deforming surface at grid point (x, y) and its two load sums.
struct DeformedVertex {
    Vec3 position;
    Vec3 normal;
    double check = 0;  // the value the check buffer holds for the vertex
};

inline DeformedVertex deformedVertex(unsigned x, unsigned y, unsigned width, unsigned height, double frequency,
                                     double time, unsigned sinLoad, unsigned madLoad) {
    const double u = (double(x) / width * 2 - 1) * 2, v = (double(y) / height * 2 - 1) * 2;
    const Vec3 normal{0, 1, 0};
    const Vec3 aroundZ = cross(normal, {0, 0, 1}), aroundY = cross(normal, {0, 1, 0});
    const Vec3 tangent = normalized(length(aroundZ) > length(aroundY) ? aroundZ : aroundY);
    const Vec3 binormal = normalized(cross(normal, tangent));

    const double freq2 = frequency * (4 + 2 * std::cos(0.8 * u));
    const double phase = 2 * time;
    const double dist = std::sqrt(u * u + v * v);
    DeformedVertex out;
    out.position = {u, 0.5 * std::sin(freq2 * dist + phase) + 1 / (dist + 0.6), v};
    const double c = std::cos(freq2 * dist + phase) / (dist + 0.00001);
    auto jacobian = [&](Vec3 d) { return Vec3{d.x, c * u * d.x + d.y + c * v * d.z, d.z}; };
    out.normal = normalized(cross(jacobian(binormal), jacobian(tangent)));

    const double pi = 4 * std::atan(1.0);
    const double a = std::cos(pi * double(float(x))), b = std::sin(pi * double(float(y)));
    const double cs = sinLoad * std::sqrt(a * a + b * b);
    const Vec3& p = out.position;
    const double sum = double(madLoad) * 1000 / (p.x * p.x + p.y * p.y + p.z * p.z + 0.001);
    out.check = cs + sum;
    return out;
}

// One particle after one step of the plain kernel or of its sine forms.
struct MovedParticle {
    double x, y, vx, vy;
};

inline MovedParticle movedParticle(const ParticleRecord& p, const float position[2], double mouseX, double mouseY,
                                   double width, double height, double time, bool sineKernel) {
    const double centerForce = sineKernel ? 0.01 : 0.05, radius = sineKernel ? 100 : 200;
    const double gain = sineKernel ? 1.0 : 0.7;
    double dx = mouseX - position[0], dy = mouseY - position[1];
    const double distSq = dx * dx + dy * dy;
    double fx = (width * 0.5 - position[0]) * centerForce, fy = (height * 0.5 - position[1]) * centerForce;
    if (distSq < radius * radius) {
        const double inv = 1 / (distSq + 0.000001);
        dx *= 300 * inv;
        dy *= 300 * inv;
        fx -= dx * p.mass * gain;
        fy -= dy * p.mass * gain;
    }
    double vx = p.vel[0] + fx * p.mass * gain, vy = p.vel[1] + fy * p.mass * gain;
    MovedParticle out{};
    if (sineKernel) {
        const double turn = std::cos(time * 0.5);
        out.x = position[0] + std::sin(vx * turn);
        out.y = position[1] + std::sin(vy * turn);
    } else {
        out.x = position[0] + vx;
        out.y = position[1] + vy;
    }
    const double damping = sineKernel ? 0.42 : 0.85;
    out.vx = vx * damping;
    out.vy = vy * damping;
    return out;
}

// One pixel of the glow filter over a width x height picture of one uint a pixel.
inline uint32_t glowPixel(const std::vector<uint32_t>& image, int width, int height, int x, int y, int radius,
                          double threshold, double highlight) {
    double sum[3] = {0, 0, 0};
    int count = 0;
    for (int dy = -radius; dy <= radius; ++dy) {
        for (int dx = -radius; dx <= radius; ++dx) {
            if (dx * dx + dy * dy > radius * radius) continue;
            const int px = std::clamp(x + dx, 0, width - 1), py = std::clamp(y + dy, 0, height - 1);
            const uint32_t pixel = image[size_t(py) * width + px];
            double c[3] = {double(pixel & 0xFF), double((pixel >> 8) & 0xFF), double((pixel >> 16) & 0xFF)};
            if ((c[0] + c[1] + c[2]) / (255.0 * 3) > threshold)
                for (double& channel : c) channel *= highlight;
            for (int i = 0; i < 3; ++i) sum[i] += c[i];
            ++count;
        }
    }
    uint32_t out = 0;
    for (int i = 0; i < 3; ++i) out |= uint32_t(std::clamp(sum[i] / count, 0.0, 255.0)) << (8 * i);
    return out;
}

}  // namespace cl_references
