// "GL 1.2 - Simple Mesh": a textured torus over a reference grid, lit by two fixed-function lights, seen by
// a circling camera. No programs at all.
#include <cstdio>

#include "demos/engine_scenes/engine_demo.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_table.h"

namespace {

#include "demos/engine_scenes/torus_stack_color_jpeg.inc"

using namespace Vantalux_nsp;

struct LightRow {
    const char* name;
    vxVec3 position;
    vxColor ambient, diffuse, specular;
};

constexpr LightRow kLights[] = {
    {"Light01", {100, 200, 200}, {0.2f, 0.1f, 0.1f}, {0.8f, 0.4f, 0.4f}, {0.9f, 0.2f, 0.2f}},
    {"Light02", {-100, 200, -200}, {0.1f, 0.1f, 0.2f}, {0.4f, 0.4f, 0.8f}, {0.2f, 0.2f, 0.9f}},
};

class SimpleMeshDemo : public EngineDemo {
protected:
    int minimumGlMajor() const override { return 1; }
    int minimumGlMinor() const override { return 2; }
    bool checkCapabilities(const vxHardwareCaps& caps) override {
        if (caps.getGLMajorVersion() > 1 || caps.getGLMinorVersion() >= 2) return true;
        demoShowError("This demo requires the support OpenGL 1.2.");
        return false;
    }
    vxColor backgroundColor() const override { return vxColor::grey(0.0f); }
    CameraSettings cameraSettings() const override { return {50, 1, 2000, 50, 1, 4000, {0, 20, 150}, {0, 0, 0}}; }
    Orbit orbit() const override { return {10, 150, 60, {0, 0, 0}}; }
    bool clearsColor() const override { return false; }

    bool buildScene(DemoContext&) override {
        m_scene->addObject(m_engine->createGrid("refGrid", 400, 400, 20));
        for (const LightRow& row : kLights) {
            vxLight* light = vxLightMgr::getInstance()->createLightPoint(row.name);
            light->setPosition(row.position);
            light->setTarget({0, 0, 0});
            light->setAmbient(row.ambient);
            light->setDiffuse(row.diffuse);
            light->setSpecular(row.specular);
            m_scene->addObject(light);
        }
        vxMaterial* material = vxMaterialMgr::getInstance()->createMaterial("torus_mat");
        material->setAmbient(vxColor::grey(0.4f));
        material->setDiffuse(vxColor::grey(0.8f));
        material->setSpecular(vxColor::grey(0.7f));
        material->setShininess(90.0f);
        vxTextureData options;
        options.filter = VX_FILTER_MIPMAP;
        if (vxTexture* texture = vxTextureMgr::getInstance()->createTexture2D(
                "torus_stack_color_texture", kTorusStackColorJpeg, sizeof kTorusStackColorJpeg, options))
            material->addTexture(texture, 0);
        vxMesh* torus = m_engine->createMesh("Torus01");
        torus->makeTorus(50, 15, 100, 100);
        torus->assignMaterialToFaces(material, 0, torus->getNumFaces() - 1);
        torus->buildBuffers();
        m_scene->addObject(torus);
        m_triangleCount = torus->getNumFaces();
        return true;
    }

    void drawScene(DemoContext&, float) override { m_scene->render(*m_renderer); }

    void drawExtraLines(DemoContext&) override {
        char line[64];
        std::snprintf(line, sizeof line, "Polygons=%u", m_triangleCount);
        drawLine(70, line);
    }
};

}  // namespace

std::unique_ptr<DemoScene> makeSimpleMeshDemo() { return std::make_unique<SimpleMeshDemo>(); }
