#include "engine/vx_scene.h"

#include <GL/glew.h>

#include <algorithm>

#include "engine/vantalux.h"
#include "engine/vx_camera.h"
#include "engine/vx_light.h"
#include "engine/vx_render_window.h"
#include "engine/vx_renderer.h"

namespace Vantalux_nsp {

namespace {

void collect(vxObject* object, std::vector<vxObject*>& out) {
    out.push_back(object);
    for (vxObject* child : object->getChildren()) collect(child, out);
}

// Visible objects only: an invisible parent hides its children too.
void collectVisible(vxObject* object, std::vector<vxObject*>& out) {
    if (!object->isVisible()) return;
    out.push_back(object);
    for (vxObject* child : object->getChildren()) collectVisible(child, out);
}

}  // namespace

vxScene::vxScene(std::string name, vxRenderWindow* window) : m_name(std::move(name)), m_window(window) {}

bool vxScene::addObject(vxObject* object) {
    if (!object || object->getParent() || object->getScene()) return false;
    object->_setScene(this);
    m_objects.push_back(object);
    return true;
}

std::vector<vxObject*> vxScene::getAllObjects() const {
    std::vector<vxObject*> all;
    for (vxObject* object : m_objects) collect(object, all);
    return all;
}

vxObject* vxScene::findObject(const std::string& name) const {
    for (vxObject* object : getAllObjects())
        if (object->getName() == name) return object;
    return nullptr;
}

void vxScene::advance(float dt) {
    for (vxObject* object : getAllObjects()) object->advance(dt);
}

std::vector<vxObject*> vxScene::getDrawOrder() const {
    std::vector<vxObject*> visible;
    for (vxObject* object : m_objects) collectVisible(object, visible);
    std::stable_partition(visible.begin(), visible.end(), [](vxObject* o) { return o->isBackground(); });
    const auto firstOther = std::find_if(visible.begin(), visible.end(), [](vxObject* o) { return !o->isBackground(); });
    std::stable_partition(firstOther, visible.end(), [](vxObject* o) { return !o->isTranslucent(); });
    return visible;
}

void vxScene::render(vxRenderer& renderer) {
    renderer.setClearColor(m_background);
    renderer.clear(true, true);
    if (m_camera) m_camera->apply();
    draw(renderer);
}

void vxScene::draw(vxRenderer& renderer) {
    int index = 0;
    for (vxObject* object : getAllObjects())
        if (object->getKind() == vxObject::kLight && object->isVisible() && index < vxLight::kMaxGlLights)
            static_cast<vxLight*>(object)->applyToGl(index++);
    for (int unused = index; unused < vxLight::kMaxGlLights; ++unused) vxLight::disableGl(unused);
    _drawObjects(renderer, vxDrawMode::kPass, 1, true);
}

void vxScene::drawPass(vxRenderer& renderer, int pass) {
    _drawObjects(renderer, vxDrawMode::kPassOverFrameStates, pass, false);
}

void vxScene::drawDepthOnly(vxRenderer& renderer) { _drawObjects(renderer, vxDrawMode::kDepthOnly, 1, false); }

void vxScene::_drawObjects(vxRenderer& renderer, vxDrawMode mode, int pass, bool withBackgrounds) {
    glMatrixMode(GL_MODELVIEW);
    for (vxObject* object : getDrawOrder()) {
        if (object->isBackground() && !withBackgrounds) continue;
        glPushMatrix();
        glMultMatrixf(object->getAbsoluteTransform().data());
        object->draw(renderer, mode, pass);
        glPopMatrix();
    }
}

bool vxScene::getBoundingBox(vxVec3& min, vxVec3& max) const {
    bool any = false;
    for (vxObject* object : getAllObjects()) {
        vxVec3 lo, hi;
        if (object->isBackground() || !object->getLocalBounds(lo, hi)) continue;
        const vxMat4 world = object->getAbsoluteTransform();
        for (int corner = 0; corner < 8; ++corner) {
            const vxVec3 p = world.transformPoint({corner & 1 ? hi.x : lo.x, corner & 2 ? hi.y : lo.y, corner & 4 ? hi.z : lo.z});
            if (!any) min = max = p, any = true;
            min = {std::min(min.x, p.x), std::min(min.y, p.y), std::min(min.z, p.z)};
            max = {std::max(max.x, p.x), std::max(max.y, p.y), std::max(max.z, p.z)};
        }
    }
    return any;
}

vxSceneMgr* vxSceneMgr::getInstance() {
    static vxSceneMgr instance;
    return &instance;
}

vxScene* vxSceneMgr::createScene(const char* name) {
    vxRenderWindow* window = Vantalux::getInstance()->getCurrentRenderWindow();
    return window ? window->make<vxScene>(name ? name : "", window) : nullptr;
}

void vxSceneMgr::destroyScene(vxScene* scene) {
    if (!scene) return;
    vxRenderWindow* window = scene->getRenderWindow();
    // Children before parents, so that nothing freed is still a parent of something alive.
    std::vector<vxObject*> objects = scene->getAllObjects();
    for (auto it = objects.rbegin(); it != objects.rend(); ++it) window->destroy(*it);
    window->destroy(scene);
}

}  // namespace Vantalux_nsp
