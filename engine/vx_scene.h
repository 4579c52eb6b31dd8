#pragma once

#include <string>
#include <vector>

#include "engine/vx_math.h"
#include "engine/vx_object.h"
#include "engine/vx_resource.h"

namespace Vantalux_nsp {

class vxCamera;
class vxRenderWindow;
class vxRenderer;

// A scene graph: objects in the order they were added, each with its children. It advances them, draws
// them, and when destroyed takes every object it holds along.
class vxScene : public vxResource {
public:
    vxScene(std::string name, vxRenderWindow* window);

    const std::string& getName() const { return m_name; }
    vxRenderWindow* getRenderWindow() const { return m_window; }

    void setBackgroundColor(const vxColor& color) { m_background = color; }
    const vxColor& getBackgroundColor() const { return m_background; }

    // False for null, or for an object that is some object's child or already in a scene.
    bool addObject(vxObject* object);
    const std::vector<vxObject*>& getObjects() const { return m_objects; }
    // Every object, children included, parents before their children.
    std::vector<vxObject*> getAllObjects() const;
    vxObject* findObject(const std::string& name) const;

    // The camera that render() applies; a camera does not have to be in the scene to be its camera.
    void setCamera(vxCamera* camera) { m_camera = camera; }
    vxCamera* getCamera() const { return m_camera; }

    // Every object's own motion over `dt` seconds, visible or not.
    void advance(float dt);

    // The order draws follow: backgrounds, then opaque objects, then translucent ones, each group in the
    // order the objects were added (children right after their parent). Invisible objects are left out.
    std::vector<vxObject*> getDrawOrder() const;

    // Clears to the background colour, applies the camera, draws everything.
    void render(vxRenderer& renderer);
    // Draws everything under the camera already applied: the scene's lights as OpenGL lights 0 and up, each
    // material with its first program.
    void draw(vxRenderer& renderer);
    // Draws the objects (backgrounds excluded) with the program of `pass` (1 is the first) of each material;
    // leaves the lights, blending and depth writes as the caller set them for the pass.
    void drawPass(vxRenderer& renderer, int pass);
    // Geometry only, no material: a depth pass.
    void drawDepthOnly(vxRenderer& renderer);

    // World-space box around every mesh; false when the scene has none.
    bool getBoundingBox(vxVec3& min, vxVec3& max) const;

private:
    void _drawObjects(vxRenderer& renderer, vxDrawMode mode, int pass, bool withBackgrounds);

    std::string m_name;
    vxRenderWindow* m_window;
    vxColor m_background{0, 0, 0, 1};
    std::vector<vxObject*> m_objects;
    vxCamera* m_camera = nullptr;
};

class vxSceneMgr {
public:
    static vxSceneMgr* getInstance();
    // A scene in the current render window; null without one.
    vxScene* createScene(const char* name);
    // Frees the scene and every object in it, children included. Materials, textures, programs and objects
    // never added stay with the render window.
    void destroyScene(vxScene* scene);
};

}  // namespace Vantalux_nsp
