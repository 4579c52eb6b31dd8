#include "engine/vx_camera.h"

#include <GL/glew.h>

#include "engine/vantalux.h"
#include "engine/vx_render_window.h"

namespace Vantalux_nsp {

vxCamera::vxCamera(std::string name, float fovDegrees, float aspect, float zNear, float zFar)
    : vxObject(std::move(name), kCamera), m_fov(fovDegrees), m_aspect(aspect), m_near(zNear), m_far(zFar) {}

void vxCamera::setViewParams(const vxVec3& eye, const vxVec3& target, const vxVec3& up) {
    setPosition(eye);
    m_target = target;
    m_up = up;
}

void vxCamera::setProjPerspParams(float fovDegrees, float aspect, float zNear, float zFar) {
    m_fov = fovDegrees, m_aspect = aspect, m_near = zNear, m_far = zFar;
}

void vxCamera::setViewport(int x, int y, int width, int height) {
    m_viewport[0] = x, m_viewport[1] = y, m_viewport[2] = width, m_viewport[3] = height;
}

void vxCamera::getViewport(int& x, int& y, int& width, int& height) const {
    x = m_viewport[0], y = m_viewport[1], width = m_viewport[2], height = m_viewport[3];
}

vxMat4 vxCamera::getViewMatrix() const { return vxMat4::lookAt(getPosition(), m_target, m_up); }

vxMat4 vxCamera::getProjectionMatrix() const { return vxMat4::perspective(m_fov, m_aspect, m_near, m_far); }

void vxCamera::apply() const {
    glViewport(m_viewport[0], m_viewport[1], m_viewport[2], m_viewport[3]);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(getProjectionMatrix().data());
    glMatrixMode(GL_MODELVIEW);
    glLoadMatrixf(getViewMatrix().data());
}

vxCameraMgr* vxCameraMgr::getInstance() {
    static vxCameraMgr instance;
    return &instance;
}

vxCamera* vxCameraMgr::createCameraPerspective(const char* name, float fovDegrees, float aspect, float zNear,
                                               float zFar) {
    vxRenderWindow* window = Vantalux::getInstance()->getCurrentRenderWindow();
    if (!window) return nullptr;
    vxCamera* camera = window->make<vxCamera>(name ? name : "", fovDegrees, aspect, zNear, zFar);
    camera->setViewport(0, 0, window->width(), window->height());
    return camera;
}

}  // namespace Vantalux_nsp
