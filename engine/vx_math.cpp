#include "engine/vx_math.h"

namespace Vantalux_nsp {

vxMat4 vxMat4::translation(const vxVec3& t) {
    vxMat4 r;
    r.m[12] = t.x, r.m[13] = t.y, r.m[14] = t.z;
    return r;
}

vxMat4 vxMat4::scaling(const vxVec3& s) {
    vxMat4 r;
    r.m[0] = s.x, r.m[5] = s.y, r.m[10] = s.z;
    return r;
}

vxMat4 vxMat4::rotationX(float degrees) {
    const float c = std::cos(degrees * kVxDegToRad), s = std::sin(degrees * kVxDegToRad);
    vxMat4 r;
    r.m[5] = c, r.m[6] = s, r.m[9] = -s, r.m[10] = c;
    return r;
}

vxMat4 vxMat4::rotationY(float degrees) {
    const float c = std::cos(degrees * kVxDegToRad), s = std::sin(degrees * kVxDegToRad);
    vxMat4 r;
    r.m[0] = c, r.m[2] = -s, r.m[8] = s, r.m[10] = c;
    return r;
}

vxMat4 vxMat4::rotationZ(float degrees) {
    const float c = std::cos(degrees * kVxDegToRad), s = std::sin(degrees * kVxDegToRad);
    vxMat4 r;
    r.m[0] = c, r.m[1] = s, r.m[4] = -s, r.m[5] = c;
    return r;
}

vxMat4 vxMat4::rotationEuler(const vxVec3& a) { return rotationY(a.y) * rotationX(a.x) * rotationZ(a.z); }

vxMat4 vxMat4::rotationAboutXYZ(float aboutX, float aboutY, float aboutZ) {
    const float sa = std::sin(aboutX * kVxDegToRad), ca = std::cos(aboutX * kVxDegToRad);
    const float sb = std::sin(aboutY * kVxDegToRad), cb = std::cos(aboutY * kVxDegToRad);
    const float sc = std::sin(aboutZ * kVxDegToRad), cc = std::cos(aboutZ * kVxDegToRad);
    vxMat4 r;
    r.m[0] = sa * sb * sc + cb * cc, r.m[4] = -ca * sc, r.m[8] = sa * cb * sc - sb * cc;
    r.m[1] = cb * sc - sa * sb * cc, r.m[5] = ca * cc, r.m[9] = -sb * sc - sa * cb * cc;
    r.m[2] = ca * sb, r.m[6] = sa, r.m[10] = ca * cb;
    return r;
}

vxMat4 vxMat4::perspective(float fovYDegrees, float aspect, float zNear, float zFar) {
    vxMat4 r;
    const float f = 1.0f / std::tan(fovYDegrees * 0.5f * kVxDegToRad);
    const float depth = zFar - zNear;
    r.m[0] = aspect != 0.0f ? f / aspect : f;
    r.m[5] = f;
    r.m[10] = depth != 0.0f ? -(zFar + zNear) / depth : -1.0f;
    r.m[11] = -1.0f;
    r.m[14] = depth != 0.0f ? -2.0f * zFar * zNear / depth : 0.0f;
    r.m[15] = 0.0f;
    return r;
}

vxMat4 vxMat4::orthographic(float left, float right, float bottom, float top, float zNear, float zFar) {
    vxMat4 r;
    r.m[0] = 2.0f / (right - left);
    r.m[5] = 2.0f / (top - bottom);
    r.m[10] = -2.0f / (zFar - zNear);
    r.m[12] = -(right + left) / (right - left);
    r.m[13] = -(top + bottom) / (top - bottom);
    r.m[14] = -(zFar + zNear) / (zFar - zNear);
    return r;
}

vxMat4 vxMat4::lookAt(const vxVec3& eye, const vxVec3& target, const vxVec3& up) {
    const vxVec3 z = (eye - target).normalized();
    const vxVec3 x = up.cross(z).normalized();
    const vxVec3 y = z.cross(x);
    vxMat4 r;
    r.m[0] = x.x, r.m[4] = x.y, r.m[8] = x.z;
    r.m[1] = y.x, r.m[5] = y.y, r.m[9] = y.z;
    r.m[2] = z.x, r.m[6] = z.y, r.m[10] = z.z;
    r.m[12] = -x.dot(eye), r.m[13] = -y.dot(eye), r.m[14] = -z.dot(eye);
    return r;
}

vxMat4 vxMat4::operator*(const vxMat4& o) const {
    vxMat4 r;
    for (int c = 0; c < 4; ++c)
        for (int row = 0; row < 4; ++row) {
            float sum = 0.0f;
            for (int k = 0; k < 4; ++k) sum += m[k * 4 + row] * o.m[c * 4 + k];
            r.m[c * 4 + row] = sum;
        }
    return r;
}

vxVec3 vxMat4::transformPoint(const vxVec3& p) const {
    const float w = m[3] * p.x + m[7] * p.y + m[11] * p.z + m[15];
    const vxVec3 v{m[0] * p.x + m[4] * p.y + m[8] * p.z + m[12], m[1] * p.x + m[5] * p.y + m[9] * p.z + m[13],
                   m[2] * p.x + m[6] * p.y + m[10] * p.z + m[14]};
    return w != 0.0f && w != 1.0f ? v * (1.0f / w) : v;
}

vxVec3 vxMat4::transformDirection(const vxVec3& d) const {
    return {m[0] * d.x + m[4] * d.y + m[8] * d.z, m[1] * d.x + m[5] * d.y + m[9] * d.z,
            m[2] * d.x + m[6] * d.y + m[10] * d.z};
}

vxMat4 vxMat4::inverse() const {
    // Cofactors of the 4x4, as in the classic expansion by 2x2 minors.
    const float* a = m;
    float inv[16];
    inv[0] = a[5] * a[10] * a[15] - a[5] * a[11] * a[14] - a[9] * a[6] * a[15] + a[9] * a[7] * a[14] +
             a[13] * a[6] * a[11] - a[13] * a[7] * a[10];
    inv[4] = -a[4] * a[10] * a[15] + a[4] * a[11] * a[14] + a[8] * a[6] * a[15] - a[8] * a[7] * a[14] -
             a[12] * a[6] * a[11] + a[12] * a[7] * a[10];
    inv[8] = a[4] * a[9] * a[15] - a[4] * a[11] * a[13] - a[8] * a[5] * a[15] + a[8] * a[7] * a[13] +
             a[12] * a[5] * a[11] - a[12] * a[7] * a[9];
    inv[12] = -a[4] * a[9] * a[14] + a[4] * a[10] * a[13] + a[8] * a[5] * a[14] - a[8] * a[6] * a[13] -
              a[12] * a[5] * a[10] + a[12] * a[6] * a[9];
    inv[1] = -a[1] * a[10] * a[15] + a[1] * a[11] * a[14] + a[9] * a[2] * a[15] - a[9] * a[3] * a[14] -
             a[13] * a[2] * a[11] + a[13] * a[3] * a[10];
    inv[5] = a[0] * a[10] * a[15] - a[0] * a[11] * a[14] - a[8] * a[2] * a[15] + a[8] * a[3] * a[14] +
             a[12] * a[2] * a[11] - a[12] * a[3] * a[10];
    inv[9] = -a[0] * a[9] * a[15] + a[0] * a[11] * a[13] + a[8] * a[1] * a[15] - a[8] * a[3] * a[13] -
             a[12] * a[1] * a[11] + a[12] * a[3] * a[9];
    inv[13] = a[0] * a[9] * a[14] - a[0] * a[10] * a[13] - a[8] * a[1] * a[14] + a[8] * a[2] * a[13] +
              a[12] * a[1] * a[10] - a[12] * a[2] * a[9];
    inv[2] = a[1] * a[6] * a[15] - a[1] * a[7] * a[14] - a[5] * a[2] * a[15] + a[5] * a[3] * a[14] +
             a[13] * a[2] * a[7] - a[13] * a[3] * a[6];
    inv[6] = -a[0] * a[6] * a[15] + a[0] * a[7] * a[14] + a[4] * a[2] * a[15] - a[4] * a[3] * a[14] -
             a[12] * a[2] * a[7] + a[12] * a[3] * a[6];
    inv[10] = a[0] * a[5] * a[15] - a[0] * a[7] * a[13] - a[4] * a[1] * a[15] + a[4] * a[3] * a[13] +
              a[12] * a[1] * a[7] - a[12] * a[3] * a[5];
    inv[14] = -a[0] * a[5] * a[14] + a[0] * a[6] * a[13] + a[4] * a[1] * a[14] - a[4] * a[2] * a[13] -
              a[12] * a[1] * a[6] + a[12] * a[2] * a[5];
    inv[3] = -a[1] * a[6] * a[11] + a[1] * a[7] * a[10] + a[5] * a[2] * a[11] - a[5] * a[3] * a[10] -
             a[9] * a[2] * a[7] + a[9] * a[3] * a[6];
    inv[7] = a[0] * a[6] * a[11] - a[0] * a[7] * a[10] - a[4] * a[2] * a[11] + a[4] * a[3] * a[10] +
             a[8] * a[2] * a[7] - a[8] * a[3] * a[6];
    inv[11] = -a[0] * a[5] * a[11] + a[0] * a[7] * a[9] + a[4] * a[1] * a[11] - a[4] * a[3] * a[9] -
              a[8] * a[1] * a[7] + a[8] * a[3] * a[5];
    inv[15] = a[0] * a[5] * a[10] - a[0] * a[6] * a[9] - a[4] * a[1] * a[10] + a[4] * a[2] * a[9] +
              a[8] * a[1] * a[6] - a[8] * a[2] * a[5];
    const float det = a[0] * inv[0] + a[1] * inv[4] + a[2] * inv[8] + a[3] * inv[12];
    if (det == 0.0f || !std::isfinite(det)) return identity();
    vxMat4 r;
    for (int i = 0; i < 16; ++i) r.m[i] = inv[i] / det;
    return r;
}

vxQuaternion vxQuaternion::EulerAnglesToQuaternion(float pitchDegrees, float yawDegrees, float rollDegrees) {
    auto axisAngle = [](float ax, float ay, float az, float degrees) {
        const float h = degrees * 0.5f * kVxDegToRad, s = std::sin(h);
        return vxQuaternion{ax * s, ay * s, az * s, std::cos(h)};
    };
    return axisAngle(0, 1, 0, yawDegrees) * axisAngle(1, 0, 0, pitchDegrees) * axisAngle(0, 0, 1, rollDegrees);
}

vxQuaternion vxQuaternion::operator*(const vxQuaternion& o) const {
    return {w * o.x + x * o.w + y * o.z - z * o.y, w * o.y - x * o.z + y * o.w + z * o.x,
            w * o.z + x * o.y - y * o.x + z * o.w, w * o.w - x * o.x - y * o.y - z * o.z};
}

vxMat4 vxQuaternion::toMatrix() const {
    vxMat4 r;
    r.m[0] = 1 - 2 * (y * y + z * z), r.m[1] = 2 * (x * y + z * w), r.m[2] = 2 * (x * z - y * w);
    r.m[4] = 2 * (x * y - z * w), r.m[5] = 1 - 2 * (x * x + z * z), r.m[6] = 2 * (y * z + x * w);
    r.m[8] = 2 * (x * z + y * w), r.m[9] = 2 * (y * z - x * w), r.m[10] = 1 - 2 * (x * x + y * y);
    return r;
}

}  // namespace Vantalux_nsp
