// "GL 2.1 - HW Geometry Instancing": a planet in a belt of 10,000 tumbling asteroids, drawn a few hundred at
// a time by instanced draws whose positions and rotations arrive as uniform arrays, under a star field.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "demos/demo_context.h"
#include "engine/vx_skybox.h"
#include "demos/engine_scenes/engine_demo.h"
#include "demos/gl_utility/shader_texts.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_table.h"
#include "demos/engine_scenes/instancing_batches.h"

namespace {

using namespace Vantalux_nsp;

constexpr int kAsteroids = 10000;

// The first lines of the two forms of the instancing program; the rest is shared.
constexpr const char* kLongArrays = "#version 120\n#extension GL_EXT_gpu_shader4 : enable\n"
                                    "#extension GL_EXT_draw_instanced : enable\n#define ARRAY_SIZE 400\n";
constexpr const char* kShortArrays = "#define ARRAY_SIZE 64\n";

constexpr float kLightPositions[8] = {-460, 100, -460, 1, 460, 100, 460, 1};
constexpr float kLightDiffuse[8] = {0.6f, 0.6f, 0.9f, 1, 0.9f, 0.6f, 0.6f, 1};

constexpr const char* kNeedsInstancingTail =
    "\n\rOpenGL HW Geometry Instancing requires a GeForce 8 (and higher), a Radeon HD 2000 (or higher) or a S3 "
    "Graphics Chrome 400 Series.";

class GeometryInstancingDemo : public EngineDemo {
protected:
    bool checkCapabilities(const vxHardwareCaps& caps) override {
        if (!caps.getGPUCap(VX_CAP_DRAW_INSTANCED)) {
            demoShowError("This demo requires the support of hardware geometry instancing.%s", kNeedsInstancingTail);
            return false;
        }
        if (!caps.hasExtension("GL_EXT_gpu_shader4")) {
            demoShowError("This demo requires the support of GL_EXT_gpu_shader4.%s", kNeedsInstancingTail);
            return false;
        }
        return true;
    }
    vxColor backgroundColor() const override { return vxColor::grey(0.4f); }
    CameraSettings cameraSettings() const override { return {90, 1, 2000, 80, 0.1f, 4000, {0, 50, 180}, {0, 0, 0}}; }
    Orbit orbit() const override { return {1, 140, 20, {0, 0, 0}}; }
    bool clearsColor() const override { return false; }
    bool logoAfterText() const override { return true; }

    bool buildScene(DemoContext&) override {
        const vxHardwareCaps& caps = *vxHardwareCaps::getInstance();
        m_batches = instancingBatches(kAsteroids, caps.getMaxVertexUniformComponents(), caps.getGPUVendor());
        _placeAsteroids();

        m_sky = m_engine->createSkybox("sky");
        const char* faces[6] = {"right", "left", "front", "back", "top", "bottom"};
        const int slots[6] = {vxSkybox::kRight, vxSkybox::kLeft, vxSkybox::kFront,
                              vxSkybox::kBack,  vxSkybox::kTop,  vxSkybox::kBottom};
        for (int i = 0; i < 6; ++i) {
            const std::string path = mediaPath(("textures/space_skybox/" + std::string(faces[i]) + ".jpg").c_str());
            if (!m_sky->loadFace(slots[i], path.c_str())) {
                demoShowError("Could not load skybox.");
                return false;
            }
        }

        const std::string instancingVertex =
            std::string(caps.getGPUVendor() == VX_GPU_VENDOR_AMD ? kShortArrays : kLongArrays) +
            std::string(shaderText("instanced_asteroid.vert"));
        const char* phongPixel = shaderText("planet_phong.frag").data();
        m_instancing = _effect("GIEffectInstancing", instancingVertex.c_str(), phongPixel);
        m_phong = m_instancing ? _effect("GIEffectPhong", shaderText("planet_phong.vert").data(), phongPixel) : nullptr;
        vxGpuShader* belt = m_phong ? _effect("GIEffectBelt", shaderText("asteroid_belt.vert").data(),
                                              shaderText("asteroid_belt.frag").data())
                                    : nullptr;
        if (!belt) {
            demoShowError("Could not create effect shaders.");
            return false;
        }
        for (vxGpuShader* shader : {m_instancing, m_phong}) {
            shader->setUniform4fv("light_position", 2, kLightPositions);
            shader->setUniform4fv("light_diffuse", 2, kLightDiffuse);
            shader->setUniform1i("colorMap", 0);
        }
        belt->setUniform1i("colorMap", 0);

        vxTexture* planetTexture = _texture("textures/rock019.jpg", 4);
        vxTexture* asteroidTexture = _texture("textures/rock029.jpg", 16);
        vxTexture* beltTexture = _texture("textures/pwave.jpg", 4);
        if (!planetTexture || !asteroidTexture || !beltTexture) {
            demoShowError("Could not load textures.");
            return false;
        }
        vxMaterial* planetMaterial = _rockMaterial("gi_demo_planet_mat", planetTexture);
        planetMaterial->setGpuShader(m_phong);
        m_asteroidMaterial = _rockMaterial("gi_demo_sat_mat", asteroidTexture);
        vxMaterial* planeMaterial = vxMaterialMgr::getInstance()->createMaterial("gi_demo_plane_mat");
        planeMaterial->setLighting(false);
        planeMaterial->setCulling(false);
        planeMaterial->setBlending(true);
        planeMaterial->setBlendingFactors(VX_BLEND_SRC_ALPHA, VX_BLEND_ONE);
        planeMaterial->addTexture(beltTexture, 0);
        planeMaterial->setGpuShader(belt);

        m_planet = m_engine->createMesh("gi_demo_planet");
        m_planet->makeSphere(50, 30, 30);
        m_planet->setOrientation({90, 0, 0});
        m_planet->setAutoSpinAngles(0, 5, 0);
        m_asteroid = m_engine->createMesh("gi_demo_asteroid");
        m_asteroid->makeSphere(1.1f, 20, 20);
        m_asteroid->setVisible(false);  // drawn only by the instanced batches
        m_plane = m_engine->createMesh("gi_demo_plane");
        m_plane->makePlane(300, 300, 4, 4);
        m_plane->setColor({0.4f, 0.4f, 0.6f});
        const struct {
            vxMesh* mesh;
            vxMaterial* material;
        } meshes[] = {{m_planet, planetMaterial}, {m_asteroid, m_asteroidMaterial}, {m_plane, planeMaterial}};
        for (const auto& m : meshes) {
            if (m.mesh->getNumFaces() == 0 || !m.mesh->buildBuffers()) {
                demoShowError("Could not init meshes.");
                return false;
            }
            m.mesh->assignMaterialToFaces(m.material, 0, m.mesh->getNumFaces() - 1);
            m_scene->addObject(m.mesh);
        }
        m_triangleCount = m_asteroid->getNumFaces() * kAsteroids;
        return true;
    }

    void drawScene(DemoContext&, float dt) override {
        m_sky->setPosition(m_camera->getPosition());
        drawObject(m_sky);

        const vxMat4 view = m_camera->getViewMatrix();
        m_phong->setUniformMatrix4("ViewMat4x4", view);
        drawObject(m_planet);

        if (vxHardwareCaps::getInstance()->getGPUCap(VX_CAP_DRAW_INSTANCED)) {
            m_asteroidMaterial->applyState();
            m_renderer->pushObjectTransform(*m_asteroid);
            m_asteroid->bindData();
            m_instancing->bind();
            m_instancing->setUniformMatrix4("ViewMat4x4", view);
            for (int first = 0; first < kAsteroids; first += m_batches.batchSize) {
                const int count = std::min(m_batches.batchSize, kAsteroids - first);
                for (int i = first; i < first + count; ++i) {
                    float* angles = &m_angles[size_t(i) * 4];
                    const vxQuaternion q = vxQuaternion::EulerAnglesToQuaternion(angles[0], angles[1], angles[2]);
                    float* rotation = &m_rotation[size_t(i - first) * 4];
                    rotation[0] = q.x, rotation[1] = q.y, rotation[2] = q.z, rotation[3] = q.w;
                    for (int c = 0; c < 4; ++c) m_position[size_t(i - first) * 4 + size_t(c)] = m_basePosition[size_t(i) * 4 + size_t(c)];
                    for (int c = 0; c < 3; ++c) angles[c] += m_angleSpeeds[size_t(i) * 4 + size_t(c)] * dt;
                }
                m_instancing->setUniform4fv("position", count, m_position.data());
                m_instancing->setUniform4fv("rotation", count, m_rotation.data());
                m_asteroid->setNumDrawInstances(count);
                m_asteroid->drawData();
            }
            m_instancing->unbind();
            m_asteroid->unbindData();
            m_renderer->popObjectTransform();
            m_asteroidMaterial->unapply();
        }
        drawObject(m_plane);
    }

    void drawExtraLines(DemoContext&) override {
        char line[128];
        std::snprintf(line, sizeof line, "Asteroid Belt: Num Triangles=%u - num Instances=%d - Render Calls=%d",
                      m_triangleCount, kAsteroids, m_batches.calls);
        drawLine(70, line);
    }

private:
    vxGpuShader* _effect(const char* name, const char* vertex, const char* pixel) {
        return buildShader(name, vertex, pixel, "[%s] Vertex Shader Error: %s", "[%s] Pixel Shader Error: %s",
                           "[%s] GPU Shader Error: %s", true);
    }

    vxTexture* _texture(const char* file, float anisotropy) {
        vxTextureData options;
        options.filter = VX_FILTER_MIPMAP;
        options.anisotropy = anisotropy;
        return vxTextureMgr::getInstance()->createTexture2D(mediaPath(file).c_str(), options);
    }

    vxMaterial* _rockMaterial(const char* name, vxTexture* texture) {
        vxMaterial* material = vxMaterialMgr::getInstance()->createMaterial(name);
        material->setAmbient(vxColor::grey(0.4f));
        material->setDiffuse(vxColor::grey(0.8f));
        material->setSpecular(vxColor::grey(0.8f));
        material->setShininess(120.0f);
        material->addTexture(texture, 0);
        return material;
    }

    // Random starting turns and tumbling speeds, and places in a ring of radius 100 around the planet.
    void _placeAsteroids() {
        m_angles.assign(size_t(kAsteroids) * 4, 0.0f);
        m_angleSpeeds.assign(size_t(kAsteroids) * 4, 0.0f);
        m_basePosition.assign(size_t(kAsteroids) * 4, 0.0f);
        m_position.assign(size_t(m_batches.batchSize) * 4, 0.0f);
        m_rotation.assign(size_t(m_batches.batchSize) * 4, 0.0f);
        unsigned state = 1;  // the C library's generator as a fresh process has it: the same belt every run
        auto random = [&state] { return float(rand_r(&state) & 0x7FFF); };
        for (int i = 0; i < kAsteroids; ++i) {
            float* angles = &m_angles[size_t(i) * 4];
            float* speeds = &m_angleSpeeds[size_t(i) * 4];
            float* base = &m_basePosition[size_t(i) * 4];
            for (int c = 0; c < 3; ++c) angles[c] = random() * 60.0f / 32768.0f - 30.0f;
            for (int c = 0; c < 3; ++c) speeds[c] = random() * 20.0f / 32768.0f - 10.0f;
            base[0] = random() * 40.0f / 32768.0f - 20.0f + 100.0f * std::sin(float(i) * 0.0006283185f);
            base[1] = random() * 10.0f / 32768.0f - 5.0f;
            base[2] = random() * 40.0f / 32768.0f - 20.0f + 100.0f * std::cos(float(i) * 0.0006283185f);
            base[3] = 1.0f;
        }
    }

    InstancingBatches m_batches;
    std::vector<float> m_angles, m_angleSpeeds, m_basePosition, m_position, m_rotation;
    vxSkybox* m_sky = nullptr;
    vxGpuShader* m_instancing = nullptr;
    vxGpuShader* m_phong = nullptr;
    vxMaterial* m_asteroidMaterial = nullptr;
    vxMesh* m_planet = nullptr;
    vxMesh* m_asteroid = nullptr;
    vxMesh* m_plane = nullptr;
};

}  // namespace

std::unique_ptr<DemoScene> makeGeometryInstancingDemo() { return std::make_unique<GeometryInstancingDemo>(); }
