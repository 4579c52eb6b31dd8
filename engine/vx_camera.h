#pragma once

#include "engine/vx_object.h"

namespace Vantalux_nsp {

// A perspective camera: where it stands and looks, its projection and the viewport it draws into. Its
// position is the eye.
class vxCamera : public vxObject {
public:
    vxCamera(std::string name, float fovDegrees, float aspect, float zNear, float zFar);

    void setViewParams(const vxVec3& eye, const vxVec3& target, const vxVec3& up);
    void setProjPerspParams(float fovDegrees, float aspect, float zNear, float zFar);
    void setViewport(int x, int y, int width, int height);

    const vxVec3& getTarget() const { return m_target; }
    const vxVec3& getUp() const { return m_up; }
    float getFov() const { return m_fov; }
    float getAspect() const { return m_aspect; }
    float getNear() const { return m_near; }
    float getFar() const { return m_far; }
    void getViewport(int& x, int& y, int& width, int& height) const;

    vxMat4 getViewMatrix() const;
    vxMat4 getProjectionMatrix() const;

    // Viewport, projection and model-view (the view) into OpenGL's fixed-function matrices.
    void apply() const;

private:
    vxVec3 m_target;
    vxVec3 m_up{0, 1, 0};
    float m_fov;
    float m_aspect;
    float m_near;
    float m_far;
    int m_viewport[4] = {0, 0, 1, 1};
};

class vxCameraMgr {
public:
    static vxCameraMgr* getInstance();
    // Null without a current render window.
    vxCamera* createCameraPerspective(const char* name, float fovDegrees, float aspect, float zNear, float zFar);
};

}  // namespace Vantalux_nsp
