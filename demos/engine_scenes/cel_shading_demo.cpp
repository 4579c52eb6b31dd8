// "GL 2.1 - CEL-SHADING": a spinning torus in flat bands of colour with a black outline, its colours
// drifting with time. Without OpenGL 2.0, or when the program does not build, the fixed-function lights
// draw it instead and the demo goes on.
#include <cmath>

#include "demos/demo_context.h"
#include "demos/engine_scenes/engine_demo.h"
#include "demos/gl_utility/shader_texts.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_table.h"

namespace {

using namespace Vantalux_nsp;

class CelShadingDemo : public EngineDemo {
protected:
    // Any OpenGL: without 2.0 the fixed-function lights draw the torus.
    int minimumGlMajor() const override { return 1; }
    vxColor backgroundColor() const override { return {0.2f, 0.4f, 0.6f}; }
    CameraSettings cameraSettings() const override { return {60, 1, 2000, 60, 1, 2000, {0, 40, 50}, {0, 0, 0}}; }
    bool clearsColor() const override { return false; }

    bool buildScene(DemoContext& context) override {
        vxLight* light = vxLightMgr::getInstance()->createLightPoint(named("Light_%d").c_str());
        light->setPosition({-40, 60, 40});
        light->setTarget({0, 0, 0});
        light->setAmbient(vxColor::grey(0.2f));
        light->setDiffuse(vxColor::grey(0.8f));
        light->setSpecular(vxColor::grey(0.9f));
        m_scene->addObject(light);

        m_material = vxMaterialMgr::getInstance()->createMaterial(named("ToonMat_%d").c_str());
        m_material->setAmbient(vxColor::grey(0.2f));
        m_material->setShininess(60.0f);
        // Only the first window of a run starts in gold; the first frame recolours both anyway.
        if (context.objectId == 1) {
            m_material->setDiffuse({0.8f, 0.6f, 0.0f});
            m_material->setSpecular({0.6f, 0.6f, 0.4f});
        } else {
            m_material->setDiffuse({0.8f, 0.1f, 0.0f});
            m_material->setSpecular({0.8f, 0.2f, 0.2f});
        }
        if (vxHardwareCaps::getInstance()->getGPUCap(VX_CAP_OPENGL_2_0)) {
            vxGpuShader* shader = buildShader("ToonShader", shaderText("toon.vert").data(),
                                              shaderText("toon.frag").data(), "Vertex Shader Error: %s",
                                              "Pixel Shader Error: %s", "Pixel Shader Error: %s", false);
            if (shader) {
                shader->setUniform1f("silhouetteThreshold", 0.3f);
                m_material->setGpuShader(shader);
            }
        }

        vxMesh* torus = m_engine->createMesh(named("MeshTorus_%d").c_str());
        torus->makeTorus(30, 10, 80, 80);
        torus->assignMaterialToFaces(m_material, 0, torus->getNumFaces() - 1);
        torus->setAutoSpinAngles(10, 4, -8);
        torus->buildBuffers();
        m_scene->addObject(torus);
        return true;
    }

    void drawScene(DemoContext& context, float) override {
        const float t = elapsedSeconds(context);
        const vxColor diffuse{(std::cos(0.9f * t) + 1) / 2, (std::sin(1.1f * t) + 1) / 2, (std::cos(-1.2f * t) + 1) / 2};
        m_material->setDiffuse(diffuse);
        m_material->setSpecular({diffuse.r + 0.1f, diffuse.g + 0.1f, diffuse.b + 0.1f});
        m_renderer->setClearColor({0.2f, 0.4f, 0.6f, 0.0f});
        m_renderer->clear(true, true);
        m_scene->draw(*m_renderer);
    }

private:
    vxMaterial* m_material = nullptr;
};

}  // namespace

std::unique_ptr<DemoScene> makeCelShadingDemo() { return std::make_unique<CelShadingDemo>(); }
