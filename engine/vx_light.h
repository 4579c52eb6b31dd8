#pragma once

#include "engine/vx_object.h"

namespace Vantalux_nsp {

// A point light for the fixed-function lighting that programs read too (gl_LightSource). It looks at a
// target, which gives shadow passes their direction.
class vxLight : public vxObject {
public:
    static constexpr int kMaxGlLights = 8;

    explicit vxLight(std::string name);

    void setAmbient(const vxColor& c) { m_ambient = c; }
    void setDiffuse(const vxColor& c) { m_diffuse = c; }
    void setSpecular(const vxColor& c) { m_specular = c; }
    const vxColor& getAmbient() const { return m_ambient; }
    const vxColor& getDiffuse() const { return m_diffuse; }
    const vxColor& getSpecular() const { return m_specular; }
    void setTarget(const vxVec3& target) { m_target = target; }
    const vxVec3& getTarget() const { return m_target; }
    // From the light to its target, normalised.
    vxVec3 getDirection() const { return (m_target - getPosition()).normalized(); }

    // Makes this light OpenGL light `index` and switches it on; its position goes through the model-view
    // matrix current now, so a caller applies the camera first.
    void applyToGl(int index) const;
    static void disableGl(int index);

private:
    vxColor m_ambient{0, 0, 0};
    vxColor m_diffuse{1, 1, 1};
    vxColor m_specular{1, 1, 1};
    vxVec3 m_target;
};

class vxLightMgr {
public:
    static vxLightMgr* getInstance();
    // Null without a current render window.
    vxLight* createLightPoint(const char* name);
};

}  // namespace Vantalux_nsp
