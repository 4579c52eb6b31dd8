// "GL 2.1 - GLSL Point Sprite Particles": a fountain of 40,000 textured points whose flight the vertex
// stage computes from each particle's birth velocity and age; the processor only bears and retires them.
#include "demos/engine_scenes/engine_demo.h"
#include "demos/gl_utility/shader_texts.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_table.h"
#include "demos/engine_scenes/particle_pool.h"

namespace {

using namespace Vantalux_nsp;

class PointSpriteDemo : public EngineDemo {
protected:
    bool checkCapabilities(const vxHardwareCaps& caps) override {
        if (!caps.getGPUCap(VX_CAP_OPENGL_2_0)) {
            demoShowError("ParticleSystem demo requires the support of OpenGL 2.0.");
            return false;
        }
        if (!caps.getGPUCap(VX_CAP_POINT_SPRITE)) {
            demoShowError("ParticleSystem demo requires the support of point sprite.");
            return false;
        }
        return true;
    }
    vxColor backgroundColor() const override { return vxColor::grey(0.0f); }
    CameraSettings cameraSettings() const override { return {50, 1, 2000, 50, 1, 4000, {0, 250, 350}, {0, 50, 0}}; }
    Orbit orbit() const override { return {10, 400, 200, {0, 50, 0}}; }

    bool buildScene(DemoContext&) override {
        vxTextureData groundOptions;
        groundOptions.filter = VX_FILTER_MIPMAP;
        vxTextureData spriteOptions;
        spriteOptions.filter = VX_FILTER_LINEAR;
        spriteOptions.addressing = VX_ADDRESS_CLAMP;
        vxTextureMgr* textures = vxTextureMgr::getInstance();
        vxTexture* ground = textures->createTexture2D(mediaPath("textures/ps_color2.jpg").c_str(), groundOptions);
        m_sprite = textures->createTexture2D(mediaPath("textures/ps_color1.jpg").c_str(), spriteOptions);
        if (!ground || !m_sprite) {
            demoShowError("Could not load particle system textures!");
            return false;
        }
        m_shader = buildShader("PSShader", shaderText("point_sprite.vert").data(),
                               shaderText("point_sprite.frag").data(), "PSShader Vertex Shader Error: %s",
                               "PSShader Pixel Shader Error: %s", "PSShader Shader Program Error: %s", false);
        if (!m_shader) return false;
        m_shader->setUniform1i("colorMap", 0);
        m_shader->setUniform1f("timelife", ParticlePool::kLifetime);

        vxMaterial* material = vxMaterialMgr::getInstance()->createMaterial("ps_ground_mat");
        material->setLighting(false);
        material->setCulling(true);
        material->addTexture(ground, 0);
        vxMesh* mesh = m_engine->createMesh("ps_ground_mesh");
        mesh->makePlane(1000, 1000, 4, 4);
        mesh->setColor({1, 1, 1, 1});
        mesh->assignMaterialToFaces(material, 0, mesh->getNumFaces() - 1);
        mesh->setAutoSpinAngles(0, -100, 0);
        mesh->buildBuffers();
        m_scene->addObject(mesh);
        return true;
    }

    void drawScene(DemoContext&, float dt) override {
        m_scene->draw(*m_renderer);
        const int count = m_pool.update(dt);

        m_renderer->disableState(VX_DEPTH_WRITE);
        m_renderer->enableState(VX_BLENDING);
        m_renderer->setBlendFactors(VX_BLEND_SRC_ALPHA, VX_BLEND_ONE);
        m_shader->bind();
        m_sprite->bind(0);
        m_renderer->beginPointSprites();
        m_renderer->drawPoints(count, m_pool.positions(), m_pool.colors(), m_pool.velocitiesAndAges());
        m_renderer->endPointSprites();
        m_sprite->unbind(0);
        m_shader->unbind();
        m_renderer->disableState(VX_BLENDING);
        m_renderer->enableState(VX_DEPTH_WRITE);
    }

private:
    ParticlePool m_pool;
    vxGpuShader* m_shader = nullptr;
    vxTexture* m_sprite = nullptr;
};

}  // namespace

std::unique_ptr<DemoScene> makePointSpriteDemo() { return std::make_unique<PointSpriteDemo>(); }
