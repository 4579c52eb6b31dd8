// "GL 2.1 - Furry Cube": a spinning box drawn a hundred times over, each shell a little larger and thinner,
// through density textures of random dots: fur.
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "demos/demo_context.h"
#include "engine/vx_hud.h"
#include "demos/engine_scenes/engine_demo.h"
#include "demos/gl_utility/shader_texts.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_table.h"

namespace {

#include "demos/engine_scenes/fur_background_jpeg.inc"

using namespace Vantalux_nsp;

constexpr float kFurLength = 20.0f;
constexpr int kFurLayers = 100;
constexpr int kFurTextureCount = 10;
constexpr int kFurTextureSize = 512;
constexpr int kFurDensity = 350000;

class FurryCubeDemo : public EngineDemo {
protected:
    bool checkCapabilities(const vxHardwareCaps& caps) override {
        if (caps.getGPUCap(VX_CAP_OPENGL_2_0)) return true;
        demoShowError("Fur demo requires the support of OpenGL 2.0.");
        return false;
    }
    vxColor backgroundColor() const override { return vxColor::grey(0.4f); }
    CameraSettings cameraSettings() const override { return {50, 1, 2000, 60, 1, 4000, {0, 20, 140}, {0, 0, 0}}; }

    bool buildScene(DemoContext&) override {
        const char* lightNames[2] = {"FurLight01_%d", "FurLight02_%d"};
        const vxVec3 lightPlaces[2] = {{-20, 50, 100}, {20, -50, 100}};
        for (int i = 0; i < 2; ++i) {
            vxLight* light = vxLightMgr::getInstance()->createLightPoint(named(lightNames[i]).c_str());
            light->setPosition(lightPlaces[i]);
            light->setTarget({0, 0, 0});
            light->setAmbient(vxColor::grey(0.3f));
            light->setDiffuse({0.8f, 0.8f, 0.6f});
            light->setSpecular(vxColor::grey(0.0f));
            m_scene->addObject(light);
        }
        if (!_makeDensityTextures()) return false;

        vxTextureData colorOptions;
        colorOptions.filter = VX_FILTER_MIPMAP;
        vxTexture* color = vxTextureMgr::getInstance()->createTexture2D(mediaPath("textures/fur_color.jpg").c_str(), colorOptions);
        if (!color) {
            demoShowError("Could not load fur color texture. Fur Benchmark startup failed.");
            return false;
        }
        m_shader = buildShader("FurShader", shaderText("fur.vert").data(), shaderText("fur.frag").data(),
                               "Fur Vertex Shader Error: %s", "Fur Pixel Shader Error: %s",
                               "Fur Pixel Shader Error: %s", false);
        if (!m_shader) return false;
        m_shader->setUniform1f("UVScale", 1.0f);
        m_shader->setUniform1i("tigerMap", 0);
        m_shader->setUniform1i("furMap", 1);

        m_furMaterial = vxMaterialMgr::getInstance()->createMaterial("fur_box_mat");
        m_furMaterial->setAmbient({0.4f, 0.3f, 0.2f});
        m_furMaterial->setDiffuse({0.9f, 0.8f, 0.8f});
        m_furMaterial->setBlending(true);
        m_furMaterial->setBlendingFactors(VX_BLEND_SRC_ALPHA, VX_BLEND_ONE_MINUS_SRC_ALPHA);
        m_furMaterial->addTexture(color, 0);
        m_furMaterial->setGpuShader(m_shader);
        vxMaterial* inner = vxMaterialMgr::getInstance()->createMaterial("inner_box_mat");
        inner->setAmbient(vxColor::grey(0.4f));
        inner->setDiffuse(vxColor::grey(0.8f));
        inner->setSpecular(vxColor::grey(0.1f));
        inner->setShininess(1.0f);
        inner->addTexture(color, 0);

        m_furMesh = m_engine->createMesh(named("FurMesh_%d").c_str());
        m_furMesh->makeBox({80, 80, 80}, 8, 8, 8);
        m_furMesh->assignMaterialToFaces(m_furMaterial, 0, m_furMesh->getNumFaces() - 1);
        m_furMesh->setVisible(false);  // the layer loop draws it
        vxMesh* innerMesh = m_engine->createMesh(named("FurMeshInner_%d").c_str());
        innerMesh->makeBox({79, 79, 79}, 4, 4, 4);
        innerMesh->assignMaterialToFaces(inner, 0, innerMesh->getNumFaces() - 1);
        for (vxMesh* mesh : {m_furMesh, innerMesh}) {
            mesh->setAutoSpinAngles(11, 7, 3);
            mesh->buildBuffers();
            m_scene->addObject(mesh);
        }

        vxTexture* background = vxTextureMgr::getInstance()->createTexture2D("fur_bkg_texture", kFurBackgroundJpeg,
                                                                            sizeof kFurBackgroundJpeg);
        vxMaterial* backgroundMaterial = vxMaterialMgr::getInstance()->createMaterial("bkg_img_mat");
        backgroundMaterial->setLighting(false);
        if (background) backgroundMaterial->addTexture(background, 0);
        vxBkgImage* image = m_engine->createBkgImage(named("FurBkgImg_%d").c_str());
        image->setMaterial(backgroundMaterial);
        m_scene->addObject(image);
        return true;
    }

    void drawScene(DemoContext& context, float) override {
        if (context.firstFrame) m_shader->setUniformMatrix4("mv", m_camera->getViewMatrix());
        m_scene->draw(*m_renderer);  // the background, then the inner box

        m_furMaterial->applyState();
        m_renderer->pushObjectTransform(*m_furMesh);
        m_furMesh->bindData();
        m_shader->bind();
        for (int i = 0; i < kFurLayers; ++i) {
            m_shader->setUniform1f("FurLength", kFurLength * float(i + 1) / float(kFurLayers));
            m_shader->setUniform1f("Layer", float(i + 1) / float(kFurLayers));
            m_density[size_t(i * kFurTextureCount / kFurLayers)]->bind(1);
            m_furMesh->drawData();
        }
        m_shader->unbind();
        m_furMesh->unbindData();
        m_renderer->popObjectTransform();
        m_furMaterial->unapply();
        m_renderer->setActiveTextureUnit(0);
    }

private:
    // Ten textures of fewer and fewer dots: texel alpha is the density the dots stand for, the rest clear.
    bool _makeDensityTextures() {
        vxTextureData options;
        options.filter = VX_FILTER_LINEAR;
        options.addressing = VX_ADDRESS_REPEAT;
        std::vector<float> texels(size_t(kFurTextureSize) * kFurTextureSize * 4);
        for (int k = 0; k < kFurTextureCount; ++k) {
            const float density = 1.0f - float(k) / float(kFurTextureCount);
            const int dots = int(float(kFurDensity) * density);
            const float shade = 1.0f - density;
            const float grey = shade < 0.3f ? 0.3f : shade > 0.9f ? 0.9f : shade;
            for (size_t t = 0; t < texels.size(); t += 4) texels[t] = texels[t + 1] = texels[t + 2] = grey, texels[t + 3] = 0;
            // The C library's generator, started from the dot count, so every run grows the same fur.
            unsigned state = unsigned(dots);
            for (int d = 0; d < dots; ++d) {
                const int x = (rand_r(&state) & 0x7FFF) * kFurTextureSize / 32768;
                const int y = (rand_r(&state) & 0x7FFF) * kFurTextureSize / 32768;
                float* texel = &texels[(size_t(y) * kFurTextureSize + size_t(x)) * 4];
                texel[0] = texel[1] = texel[2] = shade, texel[3] = density;
            }
            char name[64];
            std::snprintf(name, sizeof name, "FurDensity%d_%u", k, m_objectId);
            vxTexture* texture = vxTextureMgr::getInstance()->createTexture2D(name, kFurTextureSize, kFurTextureSize, options);
            if (!texture || !texture->uploadFloatRgba(kFurTextureSize, kFurTextureSize, texels.data(), options)) return false;
            m_density[size_t(k)] = texture;
        }
        return true;
    }

    vxGpuShader* m_shader = nullptr;
    vxMaterial* m_furMaterial = nullptr;
    vxMesh* m_furMesh = nullptr;
    vxTexture* m_density[kFurTextureCount] = {};
};

}  // namespace

std::unique_ptr<DemoScene> makeFurryCubeDemo() { return std::make_unique<FurryCubeDemo>(); }
