// "GL 2.1 - Soft Shadows": spheres and two turning rings over a stone floor, lit by two circling lights.
// Each light renders a depth map; its light pass adds its light where twelve compares around each pixel's
// place in the map say it is lit, which softens the shadows' edges. An ambient pass lays the base.
#include <algorithm>
#include <cmath>
#include <cstdio>

#include "demos/demo_context.h"
#include "engine/vx_render_target.h"
#include "demos/engine_scenes/engine_demo.h"
#include "demos/gl_utility/shader_texts.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_table.h"

namespace {

using namespace Vantalux_nsp;

constexpr int kShadowMapSize = 1024;
constexpr float kShadowFov = 100.0f;
constexpr float kShadowNear = 100.0f;

struct LightRow {
    const char* name;
    vxVec3 position;
    vxColor ambient, diffuse, specular;
};

constexpr LightRow kLights[] = {
    {"ss_Light01", {100, 200, 400}, {0.3f, 0.2f, 0.1f}, {0.9f, 0.4f, 0.2f}, {0.6f, 0.2f, 0.1f}},
    {"ss_Light02", {-100, 200, 400}, {0.1f, 0.2f, 0.3f}, {0.2f, 0.4f, 0.9f}, {0.1f, 0.2f, 0.6f}},
};

struct MaterialRow {
    const char* name;
    int texture;  // index into the three colour textures
    float ambient, diffuse, specular, shininess;
};

constexpr MaterialRow kMaterials[] = {
    {"ss_sphere_mat", 0, 0.4f, 0.8f, 0.8f, 120},
    {"ss_torus_mat", 1, 0.4f, 0.8f, 0.8f, 120},
    {"ss_ground_mat", 2, 0.8f, 0.8f, 0.2f, 60},
};

// A light of the demo with what its last shadow pass used.
struct ShadowLight {
    vxLight* light = nullptr;
    vxMat4 view;
    vxMat4 projection;
    float zFar = 0.0f;
};

class SoftShadowsDemo : public EngineDemo {
protected:
    bool checkCapabilities(const vxHardwareCaps& caps) override {
        if (!caps.getGPUCap(VX_CAP_OPENGL_2_0)) {
            demoShowError("Soft Shadows demo requires the support of OpenGL 2.0.");
            return false;
        }
        if (!caps.getGPUCap(VX_CAP_FRAMEBUFFER_OBJECT)) {
            demoShowError("Soft Shadows demo requires FBO support.");
            return false;
        }
        return true;
    }
    vxColor backgroundColor() const override { return vxColor::grey(0.0f); }
    CameraSettings cameraSettings() const override { return {60, 1, 2000, 60, 1, 4000, {0, 200, 400}, {0, 50, 0}}; }
    Orbit orbit() const override { return {10, 500, 200, {0, 50, 0}}; }

    bool buildScene(DemoContext&) override {
        m_shadowCamera = vxCameraMgr::getInstance()->createCameraPerspective(named("ss_ShadowMapCamera_%d").c_str(), 90,
                                                                             1, 1, 2000);
        m_shadowMap = vxRenderTarget::createDepthTarget("shadow_rt", kShadowMapSize, kShadowMapSize);
        if (!m_shadowMap) {
            demoShowError("Could not create depth render targer!");
            return false;
        }
        for (size_t i = 0; i < 2; ++i) {
            const LightRow& row = kLights[i];
            vxLight* light = vxLightMgr::getInstance()->createLightPoint(row.name);
            light->setPosition(row.position);
            light->setTarget({0, 0, 0});
            light->setAmbient(row.ambient);
            light->setDiffuse(row.diffuse);
            light->setSpecular(row.specular);
            light->setVisible(false);  // each light pass makes its light OpenGL's light 0 itself
            m_scene->addObject(light);
            m_lights[i].light = light;
        }

        vxTexture* textures[3] = {};
        const char* files[3] = {"textures/ss_color1.jpg", "textures/ss_color2.jpg", "textures/ss_color3.jpg"};
        for (int i = 0; i < 3; ++i) {
            vxTextureData options;
            options.filter = i == 2 ? VX_FILTER_MIPMAP : VX_FILTER_LINEAR;
            options.anisotropy = i == 2 ? 16.0f : 1.0f;
            textures[i] = vxTextureMgr::getInstance()->createTexture2D(mediaPath(files[i]).c_str(), options);
            if (!textures[i]) {
                demoShowError("Could not load soft shadows textures!");
                return false;
            }
        }
        vxGpuShader* ambient = buildShader("SSAmbientPassShader", shaderText("shadow_ambient.vert").data(),
                                           shaderText("shadow_ambient.frag").data(),
                                           "SSAmbientPassShader Vertex Shader Error: %s",
                                           "SSAmbientPassShader Pixel Shader Error: %s",
                                           "SSAmbientPassShader Pixel Shader Error: %s", false);
        vxGpuShader* phong = ambient ? buildShader("SSPhongPassShader", shaderText("shadow_phong.vert").data(),
                                                   shaderText("shadow_phong.frag").data(),
                                                   "SSPhongPassShader Vertex Shader Error: %s",
                                                   "SSPhongPassShader Pixel Shader Error: %s",
                                                   "SSPhongPassShader Pixel Shader Error: %s", false)
                                     : nullptr;
        if (!phong) return false;
        // The colour texture stays on unit 1 in both passes: unit 0 holds the shadow map in the light passes.
        ambient->setUniform1i("colorMap", 1);
        phong->setUniform1i("shadowMap", 0);
        phong->setUniform1i("colorMap", 1);
        phong->setUniform1f("filter_scale", 0.002f);

        vxMaterial* materials[3] = {};
        for (int i = 0; i < 3; ++i) {
            const MaterialRow& row = kMaterials[i];
            vxMaterial* material = vxMaterialMgr::getInstance()->createMaterial(row.name);
            material->setAmbient(vxColor::grey(row.ambient));
            material->setDiffuse(vxColor::grey(row.diffuse));
            material->setSpecular(vxColor::grey(row.specular));
            material->setShininess(row.shininess);
            material->addTexture(textures[row.texture], 1);
            material->setGpuShader(phong, 0);
            material->setGpuShader(ambient, 1);
            materials[i] = material;
        }

        const vxVec3 spheres[4] = {{-200, 55, -200}, {200, 55, -200}, {200, 55, 200}, {-200, 55, 200}};
        for (int i = 0; i < 4; ++i) {
            char name[32];
            std::snprintf(name, sizeof name, "ss_Sphere%d", i + 1);
            vxMesh* sphere = m_engine->createMesh(name);
            sphere->makeSphere(50, 40, 40);
            sphere->setPosition(spheres[i]);
            _add(sphere, materials[0]);
        }
        vxMesh* outer = m_engine->createMesh("ss_TorusOuter");
        outer->makeTorus(100, 20, 80, 40);
        outer->setAutoSpinAngles(0, 20, 0);
        vxMesh* inner = m_engine->createMesh("ss_TorusInner");
        inner->makeTorus(65, 15, 60, 30);
        inner->setAutoSpinAngles(0, -60, 0);
        for (vxMesh* torus : {outer, inner}) {
            torus->setPosition({0, 125, 0});
            torus->setOrientation({90, 0, 0});
            _add(torus, materials[1]);
        }
        vxMesh* ground = m_engine->createMesh("ss_GroundMesh");
        ground->makeBox({600, 10, 600}, 10, 10, 4);
        ground->setTexCoordTiling(0, 4, 4);
        ground->setTexCoordTiling(1, 4, 4);
        _add(ground, materials[2]);

        vxVec3 lo, hi;
        m_scene->getBoundingBox(lo, hi);
        const float largest = std::max({hi.x - lo.x, hi.y - lo.y, hi.z - lo.z});
        for (ShadowLight& l : m_lights) l.zFar = kShadowNear + 2.0f * largest;
        return true;
    }

    void drawScene(DemoContext&, float dt) override {
        m_lightAngle += dt * 20.0f;
        const float a = m_lightAngle * kVxDegToRad;
        m_lights[0].light->setPosition({400 * std::cos(a), 200, 400 * std::sin(a)});
        m_lights[1].light->setPosition({400 * std::sin(a), 200, 400 * std::cos(a)});

        // The base every light adds to: what shows in the shadows.
        m_renderer->setGlobalAmbient(vxColor::grey(0.1f));
        m_renderer->enableState(VX_DEPTH_TEST);
        m_renderer->enableState(VX_DEPTH_WRITE);
        m_renderer->setDepthFunc(VX_DEPTH_LEQUAL);
        m_scene->drawPass(*m_renderer, 2);

        for (ShadowLight& l : m_lights) {
            _shadowPass(l);
            _lightPass(l);
        }
    }

    void drawExtraLines(DemoContext&) override {
        char line[64];
        std::snprintf(line, sizeof line, "Triangles=%u", m_triangleCount);
        drawLine(70, line);
    }

private:
    void _add(vxMesh* mesh, vxMaterial* material) {
        mesh->assignMaterialToFaces(material, 0, mesh->getNumFaces() - 1);
        mesh->buildBuffers();
        m_scene->addObject(mesh);
        m_triangleCount += mesh->getNumFaces();
    }

    // The scene's depth as the light sees it, into the shadow map.
    void _shadowPass(ShadowLight& l) {
        m_shadowMap->begin();
        m_shadowCamera->setViewport(0, 0, kShadowMapSize, kShadowMapSize);
        m_shadowCamera->setProjPerspParams(kShadowFov, 1.0f, kShadowNear, l.zFar);
        m_shadowCamera->setViewParams(l.light->getPosition(), l.light->getTarget(), {0, 1, 0});
        l.view = m_shadowCamera->getViewMatrix();
        l.projection = m_shadowCamera->getProjectionMatrix();
        m_renderer->enableState(VX_DEPTH_TEST);
        m_renderer->enableState(VX_DEPTH_WRITE);
        m_renderer->setClearDepth(1.0f);
        m_renderer->clear(false, true);
        m_renderer->disableState(VX_LIGHTING);
        m_renderer->disableState(VX_TEXTURING);
        m_renderer->disableState(VX_BLENDING);
        m_renderer->disableState(VX_COLOR_WRITE);
        m_renderer->enableState(VX_CULLING);
        m_renderer->setCullMode(VX_CULL_FRONT);
        m_shadowCamera->apply();
        m_scene->drawDepthOnly(*m_renderer);
        m_renderer->setCullMode(VX_CULL_BACK);
        m_renderer->enableState(VX_COLOR_WRITE);
        m_shadowMap->end();
    }

    // The light's share added where the shadow map sees the point lit.
    void _lightPass(ShadowLight& l) {
        m_camera->apply();
        m_renderer->setGlobalAmbient({0, 0, 0, 1});
        l.light->applyToGl(0);
        m_renderer->enableState(VX_DEPTH_TEST);
        m_renderer->disableState(VX_DEPTH_WRITE);
        m_renderer->setDepthFunc(VX_DEPTH_EQUAL);
        m_renderer->enableState(VX_BLENDING);
        m_renderer->setBlendFactors(VX_BLEND_ONE, VX_BLEND_ONE);
        vxTexture* depth = m_shadowMap->getDepthTexture();
        depth->setCompareMode(true);
        depth->bind(0);
        // From the camera's eye space to the light's clip space, then from [-1, 1] to [0, 1].
        const vxMat4 bias = vxMat4::translation({0.5f, 0.5f, 0.5f}) * vxMat4::scaling({0.5f, 0.5f, 0.5f});
        m_renderer->setTextureMatrix(0, bias * l.projection * l.view * m_camera->getViewMatrix().inverse());
        m_scene->drawPass(*m_renderer, 1);
        depth->unbind(0);
        m_renderer->setTextureMatrix(0, vxMat4::identity());
        m_renderer->enableState(VX_DEPTH_WRITE);
        m_renderer->setDepthFunc(VX_DEPTH_LEQUAL);
        m_renderer->disableState(VX_BLENDING);
    }

    vxCamera* m_shadowCamera = nullptr;
    vxRenderTarget* m_shadowMap = nullptr;
    ShadowLight m_lights[2];
    float m_lightAngle = 0.0f;
};

}  // namespace

std::unique_ptr<DemoScene> makeSoftShadowsDemo() { return std::make_unique<SoftShadowsDemo>(); }
