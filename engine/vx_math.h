#pragma once

#include <cmath>

namespace Vantalux_nsp {

constexpr float kVxDegToRad = 0.017453292519943295f;

struct vxVec2 {
    float x = 0, y = 0;
};

struct vxVec3 {
    float x = 0, y = 0, z = 0;

    constexpr vxVec3() = default;
    constexpr vxVec3(float ax, float ay, float az) : x(ax), y(ay), z(az) {}

    vxVec3 operator+(const vxVec3& o) const { return {x + o.x, y + o.y, z + o.z}; }
    vxVec3 operator-(const vxVec3& o) const { return {x - o.x, y - o.y, z - o.z}; }
    vxVec3 operator-() const { return {-x, -y, -z}; }
    vxVec3 operator*(float s) const { return {x * s, y * s, z * s}; }
    float dot(const vxVec3& o) const { return x * o.x + y * o.y + z * o.z; }
    vxVec3 cross(const vxVec3& o) const { return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x}; }
    float length() const { return std::sqrt(dot(*this)); }
    // A vector of length 0 stays zero.
    vxVec3 normalized() const {
        const float l = length();
        return l > 0.0f ? *this * (1.0f / l) : vxVec3{};
    }
};

// RGBA, each channel from 0 to 1 (HDR values may go above).
struct vxColor {
    float r = 0, g = 0, b = 0, a = 1;

    constexpr vxColor() = default;
    constexpr vxColor(float ar, float ag, float ab, float aa = 1.0f) : r(ar), g(ag), b(ab), a(aa) {}
    // A grey of the given level, opaque.
    static constexpr vxColor grey(float level) { return {level, level, level, 1.0f}; }
    const float* data() const { return &r; }
};

// 4x4 matrix in OpenGL's column order: element (row r, column c) is m[c * 4 + r].
struct vxMat4 {
    float m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};

    static vxMat4 identity() { return {}; }
    static vxMat4 translation(const vxVec3& t);
    static vxMat4 scaling(const vxVec3& s);
    static vxMat4 rotationX(float degrees);
    static vxMat4 rotationY(float degrees);
    static vxMat4 rotationZ(float degrees);
    // Yaw about Y, then pitch about X, then roll about Z, as an object turns: Ry * Rx * Rz.
    static vxMat4 rotationEuler(const vxVec3& pitchYawRollDegrees);
    // The spin of the GL 3 and OpenCL demos' tori, in degrees: each angle alone turns about its own axis
    // (X, Y, Z), but together they compose in the order those demos were drawn with, not rotationEuler's.
    static vxMat4 rotationAboutXYZ(float aboutX, float aboutY, float aboutZ);
    static vxMat4 perspective(float fovYDegrees, float aspect, float zNear, float zFar);
    static vxMat4 orthographic(float left, float right, float bottom, float top, float zNear, float zFar);
    static vxMat4 lookAt(const vxVec3& eye, const vxVec3& target, const vxVec3& up);

    vxMat4 operator*(const vxMat4& o) const;
    vxVec3 transformPoint(const vxVec3& p) const;
    vxVec3 transformDirection(const vxVec3& d) const;
    // The inverse of a general matrix; the identity when the matrix is singular.
    vxMat4 inverse() const;
    vxVec3 translationPart() const { return {m[12], m[13], m[14]}; }
    float at(int row, int column) const { return m[column * 4 + row]; }
    const float* data() const { return m; }
};

struct vxQuaternion {
    float x = 0, y = 0, z = 0, w = 1;

    // The rotation rotationEuler gives for the same angles, in degrees.
    static vxQuaternion EulerAnglesToQuaternion(float pitchDegrees, float yawDegrees, float rollDegrees);
    vxQuaternion operator*(const vxQuaternion& o) const;
    vxMat4 toMatrix() const;
};

}  // namespace Vantalux_nsp
