#include "mat4.h"

#include <cmath>

namespace {

constexpr float kDegreesToRadians = 0.017453292f;
// Half a degree in radians: perspective takes the tangent of half the field of view.
constexpr float kHalfDegreeInRadians = 0.008726646f;

void normalize(float v[3]) {
    const float length = std::sqrt(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    if (length == 0.0f) return;
    for (int i = 0; i < 3; ++i) v[i] /= length;
}

void cross(const float a[3], const float b[3], float out[3]) {
    out[0] = a[1] * b[2] - a[2] * b[1];
    out[1] = a[2] * b[0] - a[0] * b[2];
    out[2] = a[0] * b[1] - a[1] * b[0];
}

float dot(const float a[3], const float b[3]) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

}  // namespace

Mat4 Mat4::identity() {
    Mat4 r;
    r.m[0] = r.m[5] = r.m[10] = r.m[15] = 1.0f;
    return r;
}

Mat4 Mat4::multiply(const Mat4& left, const Mat4& right) {
    Mat4 r;
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 4; ++column) {
            float sum = 0.0f;
            for (int k = 0; k < 4; ++k) sum += left.at(row, k) * right.at(k, column);
            r.at(row, column) = sum;
        }
    }
    return r;
}

Mat4 Mat4::perspective(float fovDegrees, float aspect, float nearPlane, float farPlane, float epsilon) {
    Mat4 r;
    const float top = std::tan(fovDegrees * kHalfDegreeInRadians) * nearPlane;
    const float yScale = 2.0f * nearPlane / (2.0f * top);
    r.m[0] = yScale / aspect;
    r.m[5] = yScale;
    r.m[11] = -1.0f;
    r.m[15] = 0.0f;
    if (farPlane != -1.0f) {
        r.m[10] = -(nearPlane + farPlane) / (farPlane - nearPlane);
        r.m[14] = -2.0f * nearPlane * farPlane / (farPlane - nearPlane);
    } else {
        r.m[10] = epsilon - 1.0f;
        r.m[14] = (epsilon - 2.0f) * nearPlane;
    }
    return r;
}

Mat4 Mat4::orthographic(float left, float right, float bottom, float top, float nearPlane, float farPlane) {
    Mat4 r;
    r.m[0] = 2.0f / (right - left);
    r.m[5] = 2.0f / (top - bottom);
    r.m[10] = -2.0f / (farPlane - nearPlane);
    r.m[12] = -(right + left) / (right - left);
    r.m[13] = -(top + bottom) / (top - bottom);
    r.m[14] = -(farPlane + nearPlane) / (farPlane - nearPlane);
    r.m[15] = 1.0f;
    return r;
}

Mat4 Mat4::lookAt(const float eye[3], const float center[3], const float up[3]) {
    float z[3] = {eye[0] - center[0], eye[1] - center[1], eye[2] - center[2]};
    normalize(z);
    float x[3];
    cross(up, z, x);
    normalize(x);
    float y[3];
    cross(z, x, y);
    Mat4 r;
    for (int column = 0; column < 3; ++column) {
        r.at(0, column) = x[column];
        r.at(1, column) = y[column];
        r.at(2, column) = z[column];
    }
    r.m[12] = -dot(x, eye);
    r.m[13] = -dot(y, eye);
    r.m[14] = -dot(z, eye);
    r.m[15] = 1.0f;
    return r;
}

Mat4 Mat4::rotationEuler(float a, float b, float c) {
    const float sa = std::sin(a * kDegreesToRadians), ca = std::cos(a * kDegreesToRadians);
    const float sb = std::sin(b * kDegreesToRadians), cb = std::cos(b * kDegreesToRadians);
    const float sc = std::sin(c * kDegreesToRadians), cc = std::cos(c * kDegreesToRadians);
    Mat4 r = identity();
    r.at(0, 0) = sa * sb * sc + cb * cc;
    r.at(0, 1) = -ca * sc;
    r.at(0, 2) = sa * cb * sc - sb * cc;
    r.at(1, 0) = cb * sc - sa * sb * cc;
    r.at(1, 1) = ca * cc;
    r.at(1, 2) = -sb * sc - sa * cb * cc;
    r.at(2, 0) = ca * sb;
    r.at(2, 1) = sa;
    r.at(2, 2) = ca * cb;
    return r;
}
