#include "engine/vx_object.h"

#include <cmath>

#include "engine/vantalux.h"

namespace Vantalux_nsp {

vxObject::vxObject(std::string name, Kind kind) : m_name(std::move(name)), m_id(vxKma::genId()), m_kind(kind) {}

bool vxObject::addChild(vxObject* child) {
    if (!child || child == this || child->m_parent || child->m_scene) return false;
    for (const vxObject* p = this; p; p = p->m_parent)
        if (p == child) return false;
    child->m_parent = this;
    m_children.push_back(child);
    if (m_scene) child->_setScene(m_scene);
    return true;
}

vxObject* vxObject::findChild(const std::string& name) const {
    for (vxObject* child : m_children) {
        if (child->m_name == name) return child;
        if (vxObject* found = child->findChild(name)) return found;
    }
    return nullptr;
}

vxMat4 vxObject::getLocalTransform() const {
    return vxMat4::translation(m_position) * vxMat4::rotationEuler(m_orientation) * vxMat4::scaling(m_scale) * m_base;
}

vxMat4 vxObject::getAbsoluteTransform() const {
    return m_parent ? m_parent->getAbsoluteTransform() * getLocalTransform() : getLocalTransform();
}

void vxObject::advance(float dt) {
    if (m_spin.x == 0.0f && m_spin.y == 0.0f && m_spin.z == 0.0f) return;
    // Kept within one turn, so that hours of spinning lose no precision.
    m_orientation = {std::fmod(m_orientation.x + m_spin.x * dt, 360.0f), std::fmod(m_orientation.y + m_spin.y * dt, 360.0f),
                     std::fmod(m_orientation.z + m_spin.z * dt, 360.0f)};
}

void vxObject::_setScene(vxScene* scene) {
    m_scene = scene;
    for (vxObject* child : m_children) child->_setScene(scene);
}

}  // namespace Vantalux_nsp
