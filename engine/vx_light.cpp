#include "engine/vx_light.h"

#include <GL/glew.h>

#include "engine/vantalux.h"
#include "engine/vx_render_window.h"

namespace Vantalux_nsp {

vxLight::vxLight(std::string name) : vxObject(std::move(name), kLight) {}

void vxLight::applyToGl(int index) const {
    if (index < 0 || index >= kMaxGlLights) return;
    const GLenum light = GLenum(GL_LIGHT0 + index);
    const vxMat4 world = getAbsoluteTransform();
    const vxVec3 p = world.translationPart();
    const float position[4] = {p.x, p.y, p.z, 1.0f};
    glLightfv(light, GL_POSITION, position);
    glLightfv(light, GL_AMBIENT, m_ambient.data());
    glLightfv(light, GL_DIFFUSE, m_diffuse.data());
    glLightfv(light, GL_SPECULAR, m_specular.data());
    glLightf(light, GL_CONSTANT_ATTENUATION, 1.0f);
    glLightf(light, GL_LINEAR_ATTENUATION, 0.0f);
    glLightf(light, GL_QUADRATIC_ATTENUATION, 0.0f);
    glEnable(light);
}

void vxLight::disableGl(int index) {
    if (index >= 0 && index < kMaxGlLights) glDisable(GLenum(GL_LIGHT0 + index));
}

vxLightMgr* vxLightMgr::getInstance() {
    static vxLightMgr instance;
    return &instance;
}

vxLight* vxLightMgr::createLightPoint(const char* name) {
    vxRenderWindow* window = Vantalux::getInstance()->getCurrentRenderWindow();
    return window ? window->make<vxLight>(name ? name : "") : nullptr;
}

}  // namespace Vantalux_nsp
