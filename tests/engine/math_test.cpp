// The transforms cameras, lights and instances are built from: what each must do to points, checked by
// where points land rather than by the matrices' entries.
#include <gtest/gtest.h>

#include <cmath>

#include "engine/vx_math.h"

using namespace Vantalux_nsp;

namespace {

void expectNear(const vxVec3& a, const vxVec3& b, float tolerance = 1e-4f) {
    EXPECT_NEAR(a.x, b.x, tolerance);
    EXPECT_NEAR(a.y, b.y, tolerance);
    EXPECT_NEAR(a.z, b.z, tolerance);
}

}  // namespace

TEST(EngineMath, CameraMatricesPutTheEyeAtTheOriginAndTheFrustumIntoTheCube) {
    const vxVec3 eye{500, 200, 0}, target{0, 50, 0};
    const vxMat4 view = vxMat4::lookAt(eye, target, {0, 1, 0});
    expectNear(view.transformPoint(eye), {0, 0, 0});
    // The target lies straight ahead, down -Z, at its distance.
    expectNear(view.transformPoint(target), {0, 0, -(target - eye).length()}, 1e-2f);
    // The inverse goes back, as the shadow pass's texture matrix needs it to.
    const vxMat4 back = view.inverse() * view;
    for (int i = 0; i < 16; ++i) EXPECT_NEAR(back.m[i], i % 5 == 0 ? 1.0f : 0.0f, 1e-3f) << i;
    // A singular matrix gives the identity rather than infinities.
    EXPECT_EQ(vxMat4::scaling({0, 1, 1}).inverse().m[0], 1.0f);

    const vxMat4 projection = vxMat4::perspective(60, 1.5f, 1, 4000);
    EXPECT_NEAR(projection.transformPoint({0, 0, -1}).z, -1.0f, 1e-4f);
    EXPECT_NEAR(projection.transformPoint({0, 0, -4000}).z, 1.0f, 1e-3f);
    // The top of a 60 degree field at distance d lies at d tan 30: the top edge of the window.
    EXPECT_NEAR(projection.transformPoint({0, 100 * 0.57735f, -100}).y, 1.0f, 1e-4f);
    EXPECT_NEAR(projection.transformPoint({150 * 0.57735f, 0, -100}).x, 1.0f, 1e-4f);
}

TEST(EngineMath, QuaternionsTurnAsTheEulerAnglesOfObjectsDo) {
    // The instancing program builds each asteroid's turn from a quaternion; the scene turns objects by the
    // same three angles through matrices. Both must agree.
    for (const vxVec3 angles : {vxVec3{90, 0, 0}, vxVec3{0, 90, 0}, vxVec3{0, 0, 90}, vxVec3{30, -45, 12}, vxVec3{-170, 80, 200}}) {
        const vxMat4 fromMatrix = vxMat4::rotationEuler(angles);
        const vxMat4 fromQuaternion = vxQuaternion::EulerAnglesToQuaternion(angles.x, angles.y, angles.z).toMatrix();
        for (const vxVec3 p : {vxVec3{1, 0, 0}, vxVec3{0, 1, 0}, vxVec3{0.3f, -2, 5}})
            expectNear(fromQuaternion.transformPoint(p), fromMatrix.transformPoint(p));
    }
    // A torus turned 90 degrees about X stands up: its axis, +Y, now points at the viewer down +Z.
    expectNear(vxMat4::rotationEuler({90, 0, 0}).transformDirection({0, 1, 0}), {0, 0, 1});
}

TEST(EngineMath, MatricesAreStoredColumnByColumnAndMultiplyApplyTheRightOperandFirst) {
    // OpenGL reads element (row, column) at column * 4 + row: a translation sits in the last column.
    const vxMat4 move = vxMat4::translation({5, 7, 0});
    EXPECT_EQ(move.at(1, 3), 7.0f);
    EXPECT_EQ(move.m[13], 7.0f);
    const vxMat4 turn = vxMat4::rotationZ(90);
    // Turn then move: (1, 0, 0) goes to (0, 1, 0), then to (5, 8, 0); the other order turns the moved point.
    expectNear((move * turn).transformPoint({1, 0, 0}), {5, 8, 0});
    expectNear((turn * move).transformPoint({1, 0, 0}), {-7, 6, 0});
    const vxVec3 p{0.3f, -2, 4};
    expectNear((move * turn).transformPoint(p), move.transformPoint(turn.transformPoint(p)));
}

TEST(EngineMath, OrthographicAndDegenerateViewsStayFinite) {
    const vxMat4 pixels = vxMat4::orthographic(0, 640, 0, 480, -1, 1);
    expectNear(pixels.transformPoint({0, 0, 0}), {-1, -1, 0});
    expectNear(pixels.transformPoint({640, 480, 1}), {1, 1, -1});
    // Looking straight along the up direction leaves the side axis zero instead of not-a-number.
    const vxMat4 view = vxMat4::lookAt({0, 5, 0}, {0, 0, 0}, {0, 1, 0});
    for (float value : view.m) EXPECT_FALSE(std::isnan(value));
    EXPECT_EQ(view.at(0, 0), 0.0f);
}

TEST(EngineMath, TheTorusSpinIsARotationWhoseAnglesEachTurnAboutTheirOwnAxis) {
    for (const vxVec3 angles : {vxVec3{10, 20, 30}, vxVec3{90, -45, 180}, vxVec3{-120, 75, 5}}) {
        const vxMat4 r = vxMat4::rotationAboutXYZ(angles.x, angles.y, angles.z);
        // Orthonormal and not mirroring: the turned axes keep their lengths, right angles and handedness.
        const vxVec3 x = r.transformDirection({1, 0, 0}), y = r.transformDirection({0, 1, 0}),
                     z = r.transformDirection({0, 0, 1});
        EXPECT_NEAR(x.length(), 1.0f, 1e-5f);
        EXPECT_NEAR(y.length(), 1.0f, 1e-5f);
        EXPECT_NEAR(x.dot(y), 0.0f, 1e-5f);
        EXPECT_NEAR(y.dot(z), 0.0f, 1e-5f);
        expectNear(x.cross(y), z);
        EXPECT_EQ(r.at(3, 3), 1.0f);
    }
    expectNear(vxMat4::rotationAboutXYZ(37, 0, 0).transformDirection({1, 0, 0}), {1, 0, 0}, 1e-6f);
    expectNear(vxMat4::rotationAboutXYZ(0, 37, 0).transformDirection({0, 1, 0}), {0, 1, 0}, 1e-6f);
    expectNear(vxMat4::rotationAboutXYZ(0, 0, 37).transformDirection({0, 0, 1}), {0, 0, 1}, 1e-6f);
}
