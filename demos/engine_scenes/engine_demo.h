#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "engine/vantalux.h"
#include "engine/vx_camera.h"
#include "engine/vx_font.h"
#include "engine/vx_gpu_shader.h"
#include "engine/vx_hardware_caps.h"
#include "engine/vx_hud.h"
#include "engine/vx_light.h"
#include "engine/vx_material.h"
#include "engine/vx_mesh.h"
#include "engine/vx_render_window.h"
#include "engine/vx_scene.h"
#include "engine/vx_texture.h"
#include "demos/harness/demo_scene.h"

class RenderWindowGL;

// The harness's context as an engine window: the harness made it, keeps it current and presents each frame
// after the demo has drawn it.
class HarnessSurface : public Vantalux_nsp::vxWindowSurface {
public:
    explicit HarnessSurface(RenderWindowGL& window) : m_window(window) {}
    bool makeCurrent() override;
    void present() override {}
    uint32_t framebuffer() const override;
    int samples() const override;

private:
    RenderWindowGL& m_window;
};

// What the eight engine demos share: the common set-up (capability test, render window, scene "Scene_<id>",
// camera "Camera_<id>", the demo's own objects, corner logo, HUD font), the common frame (camera motion,
// scene advance, clears, the demo's drawing, logo, the four lines of figures) and the common release. A
// demo fills in the hooks.
class EngineDemo : public DemoScene {
public:
    bool setUp(DemoContext& context, RenderWindowGL& window) final;
    void drawFrame(DemoContext& context, RenderWindowGL& window, float dt) final;
    void release(DemoContext& context) final;

    // The triangles the demo's figures count (its extra line shows them); 0 for demos that show none.
    uint32_t triangleCount() const { return m_triangleCount; }

protected:
    struct CameraSettings {
        float createFov, createNear, createFar;  // as the camera is created
        float fov, zNear, zFar;                  // then its projection
        Vantalux_nsp::vxVec3 eye, target;
    };
    // A camera circling its target: `rate` degrees a second at `radius`, `height` above the ground.
    struct Orbit {
        float rate = 0, radius = 0, height = 0;
        Vantalux_nsp::vxVec3 target;
    };

    // The demo's own capability test on the context it got; shows its message and returns false to refuse.
    virtual bool checkCapabilities(const Vantalux_nsp::vxHardwareCaps&) { return true; }
    // The OpenGL version a render window needs.
    virtual int minimumGlMajor() const { return 2; }
    virtual int minimumGlMinor() const { return 0; }
    virtual Vantalux_nsp::vxColor backgroundColor() const = 0;
    virtual CameraSettings cameraSettings() const = 0;
    // No orbit: the camera stays where cameraSettings put it.
    virtual Orbit orbit() const { return {}; }
    // Shaders, textures, materials, meshes, lights. Shows the demo's message and returns false on failure.
    virtual bool buildScene(DemoContext& context) = 0;
    // Whether a frame starts by clearing colour to black as well as depth.
    virtual bool clearsColor() const { return true; }
    // Draws the frame after the clears and the camera; the logo and text follow.
    virtual void drawScene(DemoContext& context, float dt) = 0;
    // Lines of text beyond the four every engine demo shows, in text mode.
    virtual void drawExtraLines(DemoContext&) {}
    virtual Vantalux_nsp::vxColor textColor() const { return {1, 1, 1, 1}; }
    // The logo is drawn after the text instead of before it.
    virtual bool logoAfterText() const { return false; }

    // The path of a media file ("textures/fur_color.jpg") in the demos' media folder, looked for as every demo
    // looks for it: beside the binary first; empty when there is no media folder.
    static std::string mediaPath(const char* relativeName);
    // A program from two stages; shows the first error it meets with the texts given (each with one %s for
    // the driver's text, and a leading %s for the name when `namePrefix`) and answers null.
    Vantalux_nsp::vxGpuShader* buildShader(const char* name, const char* vertexSource, const char* pixelSource,
                                           const char* vertexError, const char* pixelError, const char* linkError,
                                           bool namePrefix);
    // A name with the demo's object id: "Scene_%d", "FurLight01_%d".
    std::string named(const char* format) const;
    // The object drawn alone with its absolute transform, under the camera applied.
    void drawObject(Vantalux_nsp::vxObject* object, int pass = 1);
    void drawLine(int y, const char* text);
    float aspect() const;
    float elapsedSeconds(const DemoContext& context) const;

    Vantalux_nsp::Vantalux* m_engine = Vantalux_nsp::Vantalux::getInstance();
    Vantalux_nsp::vxRenderer* m_renderer = m_engine->getRenderer();
    Vantalux_nsp::vxRenderWindow* m_window = nullptr;
    Vantalux_nsp::vxScene* m_scene = nullptr;
    Vantalux_nsp::vxCamera* m_camera = nullptr;
    uint32_t m_triangleCount = 0;
    uint32_t m_objectId = 0;
    int m_clientWidth = 0;
    int m_clientHeight = 0;

private:
    void _createLogo();
    void _drawLogo();
    void _drawFigures(DemoContext& context);

    std::unique_ptr<HarnessSurface> m_surface;
    Vantalux_nsp::vxFont m_hudFont;
    Vantalux_nsp::vxHud* m_logo = nullptr;
    std::string m_rendererName;
    float m_cameraAngle = 0.0f;
};
