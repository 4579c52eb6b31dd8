#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/vx_math.h"
#include "engine/vx_resource.h"

namespace Vantalux_nsp {

class vxRenderer;
class vxScene;

// How a scene draws: with the materials whole; with the materials' program of a later pass over blending and
// depth writes the pass has set for the whole frame; or depth alone.
enum class vxDrawMode { kPass, kPassOverFrameStates, kDepthOnly };

// A node of a scene: a name, a place, an orientation that may spin by itself, children. Subclasses draw.
class vxObject : public vxResource {
public:
    enum Kind { kNode, kMesh, kCamera, kLight, kSkybox, kBackground, kHud, kModel };

    explicit vxObject(std::string name, Kind kind = kNode);

    const std::string& getName() const { return m_name; }
    uint32_t getId() const { return m_id; }
    Kind getKind() const { return m_kind; }

    void setPosition(const vxVec3& position) { m_position = position; }
    const vxVec3& getPosition() const { return m_position; }
    // Degrees about X (pitch), Y (yaw) and Z (roll); see vxMat4::rotationEuler for the order.
    void setOrientation(const vxVec3& degrees) { m_orientation = degrees; }
    const vxVec3& getOrientation() const { return m_orientation; }
    void setScale(const vxVec3& scale) { m_scale = scale; }
    void setScale(float scale) { m_scale = {scale, scale, scale}; }
    // A fixed matrix applied before the object's own place, turn and scale (a model file's node matrix).
    void setBaseTransform(const vxMat4& base) { m_base = base; }
    // Degrees a second about each axis, added to the orientation as the scene advances.
    void setAutoSpinAngles(float x, float y, float z) { m_spin = {x, y, z}; }

    // An invisible object is advanced with its scene but left out of the scene's draws: a demo draws it.
    void setVisible(bool visible) { m_visible = visible; }
    bool isVisible() const { return m_visible; }

    // Children go with their parent: into a scene, through its advance and its draws, out with it.
    // False for null, for the object itself, or for an object that already has a parent or a scene.
    bool addChild(vxObject* child);
    const std::vector<vxObject*>& getChildren() const { return m_children; }
    vxObject* getParent() const { return m_parent; }
    // Depth-first search of the children by name.
    vxObject* findChild(const std::string& name) const;

    vxMat4 getLocalTransform() const;
    vxMat4 getAbsoluteTransform() const;

    vxScene* getScene() const { return m_scene; }

    // One step of the object's own motion.
    virtual void advance(float dt);
    // Draws the object itself (not its children) with the model-view matrix of the camera current.
    virtual void draw(vxRenderer&, vxDrawMode, int /*pass*/) {}
    // Drawn before everything else and without writing depth.
    virtual bool isBackground() const { return false; }
    // Drawn after the opaque objects, once materials have been classified.
    virtual bool isTranslucent() const { return false; }
    // Object-space bounds of what it draws; false when it draws nothing with a size.
    virtual bool getLocalBounds(vxVec3& /*min*/, vxVec3& /*max*/) const { return false; }

private:
    friend class vxScene;
    void _setScene(vxScene* scene);

    std::string m_name;
    uint32_t m_id;
    Kind m_kind;
    vxVec3 m_position;
    vxVec3 m_orientation;
    vxVec3 m_scale{1, 1, 1};
    vxVec3 m_spin;
    vxMat4 m_base;
    bool m_visible = true;
    vxObject* m_parent = nullptr;
    vxScene* m_scene = nullptr;
    std::vector<vxObject*> m_children;
};

}  // namespace Vantalux_nsp
