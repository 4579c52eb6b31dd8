#include <gtest/gtest.h>

#include <array>
#include <cmath>

#include "demos/gl_utility/mat4.h"

namespace {

using Vec4 = std::array<float, 4>;

Vec4 transform(const Mat4& m, const Vec4& v) {
    Vec4 out{};
    for (int row = 0; row < 4; ++row)
        for (int k = 0; k < 4; ++k) out[size_t(row)] += m.at(row, k) * v[size_t(k)];
    return out;
}

// Normalised device coordinates of an eye-space point.
Vec4 project(const Mat4& m, float x, float y, float z) {
    Vec4 clip = transform(m, {x, y, z, 1});
    return {clip[0] / clip[3], clip[1] / clip[3], clip[2] / clip[3], 1};
}

TEST(Mat4, StoresColumnsContiguouslyAsOpenGlReadsThem) {
    Mat4 m;
    for (float value : m.m) EXPECT_EQ(value, 0.0f);  // a new matrix is all zeros
    m.at(1, 3) = 7.0f;                                // row 1, column 3: translation in y
    EXPECT_EQ(m.m[13], 7.0f);
    const Vec4 moved = transform(Mat4::identity() * m, {0, 0, 0, 1});
    EXPECT_EQ(moved[1], 7.0f);
}

TEST(Mat4, MultiplyAppliesTheRightOperandFirst) {
    Mat4 translate = Mat4::identity();
    translate.at(0, 3) = 5.0f;
    const Mat4 turn = Mat4::rotationEuler(0, 0, 90);  // a quarter turn about Z
    // Turn then move: (1, 0) goes to (0, ±1) and then 5 along x; the other order turns the moved point.
    const Vec4 turnFirst = transform(translate * turn, {1, 0, 0, 1});
    const Vec4 moveFirst = transform(turn * translate, {1, 0, 0, 1});
    EXPECT_NEAR(turnFirst[0], 5.0f, 1e-5f);
    EXPECT_NEAR(std::fabs(moveFirst[1]), 6.0f, 1e-5f);
    const Vec4 p{0.3f, -2.0f, 4.0f, 1.0f};
    const Vec4 chained = transform(translate, transform(turn, p));
    const Vec4 combined = transform(translate * turn, p);
    for (size_t i = 0; i < 4; ++i) EXPECT_NEAR(chained[i], combined[i], 1e-5f);
}

TEST(Mat4, PerspectiveMapsTheFrustumOntoTheClipCube) {
    const Mat4 p = Mat4::perspective(60.0f, 2.0f, 1.0f, 500.0f, 1e-5f);
    EXPECT_NEAR(project(p, 0, 0, -1)[2], -1.0f, 1e-5f);    // near plane
    EXPECT_NEAR(project(p, 0, 0, -500)[2], 1.0f, 1e-4f);   // far plane
    // The top edge of a 60 degree view at distance d is d * tan(30 degrees); the aspect widens x.
    const float top = 10.0f * std::tan(30.0f * 3.14159265f / 180.0f);
    EXPECT_NEAR(project(p, 0, top, -10)[1], 1.0f, 1e-4f);
    EXPECT_NEAR(project(p, 2.0f * top, 0, -10)[0], 1.0f, 1e-4f);
}

TEST(Mat4, PerspectiveWithoutFarPlaneKeepsFarPointsInsideTheClipCube) {
    const float epsilon = 1e-5f;
    const Mat4 p = Mat4::perspective(45.0f, 1.0f, 0.5f, -1.0f, epsilon);
    EXPECT_NEAR(project(p, 0, 0, -0.5f)[2], -1.0f, 1e-4f);
    float previous = -1.0f;
    for (float distance : {10.0f, 1e3f, 1e6f}) {
        const float depth = project(p, 0, 0, -distance)[2];
        EXPECT_LT(depth, 1.0f) << distance;
        EXPECT_GT(depth, previous) << distance;  // farther stays farther
        previous = depth;
    }
}

TEST(Mat4, OrthographicMapsTheBoxCornersToTheClipCorners) {
    const Mat4 o = Mat4::orthographic(0, 1, 0, 1, -1, 1);
    const Vec4 low = transform(o, {0, 0, 1, 1});  // eye space looks down -z, so z = +near maps to -1
    const Vec4 high = transform(o, {1, 1, -1, 1});
    EXPECT_NEAR(low[0], -1.0f, 1e-6f);
    EXPECT_NEAR(low[1], -1.0f, 1e-6f);
    EXPECT_NEAR(low[2], -1.0f, 1e-6f);
    EXPECT_NEAR(high[0], 1.0f, 1e-6f);
    EXPECT_NEAR(high[1], 1.0f, 1e-6f);
    EXPECT_NEAR(high[2], 1.0f, 1e-6f);
}

TEST(Mat4, LookAtPutsTheEyeAtTheOriginLookingDownNegativeZ) {
    const float eye[3] = {3, 4, 10}, center[3] = {1, 1, 1}, up[3] = {0, 1, 0};
    const Mat4 view = Mat4::lookAt(eye, center, up);
    const Vec4 eyeInView = transform(view, {eye[0], eye[1], eye[2], 1});
    for (size_t i = 0; i < 3; ++i) EXPECT_NEAR(eyeInView[i], 0.0f, 1e-5f);
    const Vec4 centerInView = transform(view, {center[0], center[1], center[2], 1});
    const float distance = std::sqrt(4.0f + 9.0f + 81.0f);
    EXPECT_NEAR(centerInView[0], 0.0f, 1e-5f);
    EXPECT_NEAR(centerInView[1], 0.0f, 1e-5f);
    EXPECT_NEAR(centerInView[2], -distance, 1e-4f);
    // Up stays up: a point above the centre is above it on screen.
    const Vec4 above = transform(view, {center[0], center[1] + 1, center[2], 1});
    EXPECT_GT(above[1], 0.0f);
}

TEST(Mat4, LookAtWithUpAlongTheViewLeavesTheSideAxisZeroInsteadOfNotANumber) {
    const float eye[3] = {0, 5, 0}, center[3] = {0, 0, 0}, up[3] = {0, 1, 0};
    const Mat4 view = Mat4::lookAt(eye, center, up);
    for (float value : view.m) EXPECT_FALSE(std::isnan(value));
    EXPECT_EQ(view.at(0, 0), 0.0f);
}

TEST(Mat4, RotationEulerIsARotationAndEachAngleTurnsAboutItsAxis) {
    for (const auto& angles : {std::array<float, 3>{10, 20, 30}, {90, -45, 180}, {-120, 75, 5}}) {
        const Mat4 r = Mat4::rotationEuler(angles[0], angles[1], angles[2]);
        // Orthonormal: R times its transpose is the identity, and it does not mirror.
        for (int i = 0; i < 3; ++i) {
            for (int j = 0; j < 3; ++j) {
                float dot = 0;
                for (int k = 0; k < 3; ++k) dot += r.at(i, k) * r.at(j, k);
                EXPECT_NEAR(dot, i == j ? 1.0f : 0.0f, 1e-5f);
            }
        }
        const float det = r.at(0, 0) * (r.at(1, 1) * r.at(2, 2) - r.at(1, 2) * r.at(2, 1)) -
                          r.at(0, 1) * (r.at(1, 0) * r.at(2, 2) - r.at(1, 2) * r.at(2, 0)) +
                          r.at(0, 2) * (r.at(1, 0) * r.at(2, 1) - r.at(1, 1) * r.at(2, 0));
        EXPECT_NEAR(det, 1.0f, 1e-5f);
        EXPECT_EQ(r.at(3, 3), 1.0f);
    }
    // Each angle alone leaves its own axis where it is.
    const Vec4 x = transform(Mat4::rotationEuler(37, 0, 0), {1, 0, 0, 0});
    const Vec4 y = transform(Mat4::rotationEuler(0, 37, 0), {0, 1, 0, 0});
    const Vec4 z = transform(Mat4::rotationEuler(0, 0, 37), {0, 0, 1, 0});
    EXPECT_NEAR(x[0], 1.0f, 1e-6f);
    EXPECT_NEAR(y[1], 1.0f, 1e-6f);
    EXPECT_NEAR(z[2], 1.0f, 1e-6f);
}

}  // namespace
