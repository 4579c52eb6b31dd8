#pragma once

// A 4x4 matrix of floats in OpenGL's column order: element (row r, column c) is at index c * 4 + r, so the
// array goes to glUniformMatrix4fv without transposition. A new Mat4 holds zeros.
struct Mat4 {
    float m[16] = {};

    float& at(int row, int column) { return m[column * 4 + row]; }
    float at(int row, int column) const { return m[column * 4 + row]; }

    static Mat4 identity();
    // left x right: the product applies `right` first.
    static Mat4 multiply(const Mat4& left, const Mat4& right);
    // fovDegrees is the vertical field of view. A `far` of -1 puts the far plane at infinity, where
    // `epsilon` keeps depth values just inside the clip volume.
    static Mat4 perspective(float fovDegrees, float aspect, float nearPlane, float farPlane, float epsilon);
    static Mat4 orthographic(float left, float right, float bottom, float top, float nearPlane, float farPlane);
    // A view from `eye` towards `center`; a degenerate axis (eye on center, up along the view) stays zero.
    static Mat4 lookAt(const float eye[3], const float center[3], const float up[3]);
    // Angles in degrees; `a` turns about X, `b` about Y and `c` about Z, composed as the demos expect.
    static Mat4 rotationEuler(float a, float b, float c);
};

inline Mat4 operator*(const Mat4& left, const Mat4& right) { return Mat4::multiply(left, right); }
