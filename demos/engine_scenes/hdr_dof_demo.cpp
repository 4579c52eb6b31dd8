// "GL 2.1 - HDR, DoF and RadialBlur": a glass-like knot reflecting and refracting (a little differently for
// each colour) a high dynamic range sky, rendered into float targets and post-processed: depth of field from
// a depth and blur target written beside the colour, a bright pass blurred down four times (bloom), and a
// radial blur with the tone mapping.
#include <cmath>
#include <string_view>

#include "demos/demo_context.h"
#include "engine/vx_model.h"
#include "engine/vx_render_target.h"
#include "engine/vx_rgbe_reader.h"
#include "engine/vx_skybox.h"
#include "demos/engine_scenes/engine_demo.h"
#include "demos/gl_utility/shader_texts.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_table.h"

namespace {

using namespace Vantalux_nsp;

constexpr int kTargetSize = 1024;
constexpr float kExposure = 0.99f;
constexpr float kBrightThreshold = 4.0f;
constexpr float kBlurStart = 1.0f;
constexpr float kBlurWidth = -0.5f;
constexpr int kBlurSamples = 60;
constexpr float kMaxCoC = 10.0f;
constexpr float kFocalRange = 150.0f;
constexpr float kSkyDepth = 4000.0f;  // what the sky writes as its depth: beyond everything, fully blurred

constexpr float kFilterTaps[12][2] = {
    {-0.326212f, -0.405805f}, {-0.840144f, -0.07358f}, {-0.695914f, 0.457137f}, {-0.203345f, 0.620716f},
    {0.96234f, -0.194983f},   {0.473434f, -0.480026f}, {0.519456f, 0.767022f},  {0.185461f, -0.893124f},
    {0.507431f, 0.064425f},   {0.89642f, 0.412458f},   {-0.32194f, -0.932615f}, {-0.791559f, -0.597705f},
};

class HdrDofDemo : public EngineDemo {
protected:
    bool checkCapabilities(const vxHardwareCaps& caps) override {
        if (!caps.getGPUCap(VX_CAP_OPENGL_2_0)) {
            demoShowError("HDR DoF demo requires the support of OpenGL 2.0.");
            return false;
        }
        if (caps.getMaxDrawBuffers() < 2) {
            demoShowError("HDR DoF demo requires at least 2 render targets.");
            return false;
        }
        return true;
    }
    vxColor backgroundColor() const override { return vxColor::grey(0.4f); }
    CameraSettings cameraSettings() const override { return {60, 1, 2000, 60, 0.1f, 4000, {0, 20, 400}, {0, 0, 0}}; }
    Orbit orbit() const override { return {10, 360, 0, {0, 0, 0}}; }

    bool buildScene(DemoContext&) override {
        const bool vendorOne = vxHardwareCaps::getInstance()->getGPUVendor() == VX_GPU_VENDOR_NVIDIA;
        m_radialBlurFactor = vendorOne ? 0.2f : 0.6f;
        m_bloomFactor = vendorOne ? 0.05f : 0.15f;

        m_dof = _program("DOF", "texcoord_passthrough.vert", "depth_of_field.frag");
        m_bloom = m_dof ? _program("Bloom", "texcoord_passthrough.vert", "bright_pass.frag") : nullptr;
        m_blur = m_bloom ? _program("Blur", "texcoord_passthrough.vert", "blur_3x3.frag") : nullptr;
        m_viewer = m_blur ? _program("FinalViewer", "texcoord_passthrough.vert", "texture_copy.frag") : nullptr;
        m_toneMapping = m_viewer ? _program("ToneMapping", "texcoord_passthrough.vert", "tone_mapping.frag") : nullptr;
        if (!m_toneMapping) {
            demoShowError("Could not create post-processing shaders.");
            return false;
        }
        m_chromatic = _program("ChromaticEffect", "chromatic_glass.vert", "chromatic_glass.frag");
        vxGpuShader* sky = m_chromatic ? _program("SkyEffect", "texcoord_passthrough.vert", "hdr_sky.frag") : nullptr;
        if (!sky) {
            demoShowError("Could not create effects shaders.");
            return false;
        }
        _setConstants(sky);

        const VX_PIXEL_FORMAT rgba = VX_PIXEL_FORMAT_RGBA;
        const VX_INTERNAL_FORMAT hdr = VX_INTERNAL_FORMAT_FLOAT;
        m_sceneTarget = vxRenderTarget::createMultipleColorTargets("sceneTarget", 2, kTargetSize, kTargetSize, rgba, hdr, true);
        m_dofTarget = vxRenderTarget::createColorTarget("dofTarget", kTargetSize, kTargetSize, rgba, hdr);
        m_brightTarget = vxRenderTarget::createColorTarget("brightTarget", kTargetSize, kTargetSize, rgba, hdr);
        m_finalTarget = vxRenderTarget::createColorTarget("finalTarget", kTargetSize, kTargetSize, rgba, hdr);
        const char* blurNames[4] = {"blurHalf", "blurQuarter", "blurEighth", "blurSixteenth"};
        bool targets = m_sceneTarget && m_dofTarget && m_brightTarget && m_finalTarget;
        for (int i = 0; i < 4 && targets; ++i) {
            m_blurTargets[i] = vxRenderTarget::createColorTarget(blurNames[i], kTargetSize >> (i + 1), kTargetSize >> (i + 1), rgba, hdr);
            targets = m_blurTargets[i] != nullptr;
        }
        if (!targets) {
            demoShowError("Could not create render targets.");
            return false;
        }

        vxTexture* environment = vxRgbeReader::loadRGBECubeMap(mediaPath("textures/galileo_cross.hdr").c_str());
        if (!environment) {
            demoShowError("Could not load HRD cubemap.");
            return false;
        }
        m_sky = m_engine->createSkybox("sky");
        m_sky->setCubemap(environment);
        m_sky->setGpuShader(sky);
        m_scene->addObject(m_sky);

        if (!_makeObject()) {
            demoShowError("Could not load the mesh.");
            return false;
        }
        vxTextureData baseOptions;
        baseOptions.setInternalFloatPixelFormat(VX_INTERNAL_FORMAT_FLOAT);
        baseOptions.changePixelFormat(VX_PIXEL_FORMAT_RGB);
        baseOptions.filter = VX_FILTER_LINEAR;
        baseOptions.anisotropy = 1.0f;
        vxTexture* base = vxTextureMgr::getInstance()->createTexture2D(mediaPath("textures/hdr_dof_tex.jpg").c_str(), baseOptions);
        m_material->setTexturing(true);
        m_material->setLighting(false);
        m_material->setSmoothShading(true);
        m_material->setCulling(true);
        m_material->setPolygonMode(VX_POLYGON_FILL);
        if (base) m_material->addTexture(base, 0);
        m_material->addTexture(environment, 1);
        m_material->setGpuShader(m_chromatic);
        return true;
    }

    void drawScene(DemoContext&, float) override {
        const float focalDistance = m_camera->getPosition().length();
        m_sky->setPosition(m_camera->getPosition());  // the sky stays centred on the eye, never nearer

        // The scene into two float targets: colour, and depth with the blur it calls for.
        m_sceneTarget->begin();
        m_camera->setViewport(0, 0, kTargetSize, kTargetSize);
        m_camera->apply();
        m_renderer->setClearColor({0, 0, 0, 0});
        m_renderer->clear(true, true);
        m_chromatic->setUniformMatrix4("ModelWorld4x4", m_object->getAbsoluteTransform());
        const vxVec3 eye = m_camera->getPosition();
        m_chromatic->setUniform3f("eyePos", eye.x, eye.y, eye.z);
        m_chromatic->setUniform1f("focalDistance", focalDistance);
        m_chromatic->setUniform1f("focalRange", kFocalRange);
        m_scene->draw(*m_renderer);
        m_sceneTarget->end();

        m_renderer->disableState(VX_LIGHTING);
        m_renderer->disableState(VX_BLENDING);
        m_renderer->disableState(VX_DEPTH_TEST);
        m_renderer->disableState(VX_CULLING);
        vxTexture* sceneColor = m_sceneTarget->getColorTexture(0);
        _pass(m_dofTarget, m_dof, sceneColor, m_sceneTarget->getColorTexture(1));
        _pass(m_brightTarget, m_bloom, sceneColor);
        vxRenderTarget* source = m_brightTarget;
        for (vxRenderTarget* blur : m_blurTargets) {
            m_blur->setUniform1f("w", float(blur->getWidth()));
            m_blur->setUniform1f("h", float(blur->getHeight()));
            _pass(blur, m_blur, source->getColorTexture(0));
            source = blur;
        }
        // The four blurs added over each other: the bloom.
        m_brightTarget->begin();
        m_renderer->clear(true, false);
        m_renderer->enableState(VX_BLENDING);
        m_renderer->setBlendFactors(VX_BLEND_ONE, VX_BLEND_ONE);
        m_viewer->bind();
        for (vxRenderTarget* blur : m_blurTargets) {
            blur->getColorTexture(0)->bind(0);
            m_renderer->drawFullscreenQuad(kTargetSize, kTargetSize);
        }
        m_viewer->unbind();
        m_renderer->disableState(VX_BLENDING);
        m_brightTarget->end();

        m_finalTarget->begin();
        m_renderer->setClearColor({0, 0, 0, 0});
        m_renderer->clear(true, false);
        m_finalTarget->end();
        _pass(m_finalTarget, m_toneMapping, m_dofTarget->getColorTexture(0), m_brightTarget->getColorTexture(0));

        // The result into the window.
        m_viewer->bind();
        m_finalTarget->getColorTexture(0)->bind(0);
        m_renderer->drawFullscreenQuad(m_clientWidth, m_clientHeight);
        m_finalTarget->getColorTexture(0)->unbind(0);
        m_viewer->unbind();
        m_renderer->enableState(VX_DEPTH_TEST);
        m_camera->setViewport(0, 0, m_clientWidth, m_clientHeight);
        m_camera->apply();
    }

private:
    // A program of two held stages, by their file names.
    vxGpuShader* _program(const char* name, std::string_view vertex, std::string_view pixel) {
        return buildShader(name, shaderText(vertex).data(), shaderText(pixel).data(), "[%s] Vertex Shader Error: %s",
                           "[%s] Pixel Shader Error: %s", "[%s] GPU Shader Error: %s", true);
    }

    void _setConstants(vxGpuShader* sky) {
        float taps[24];
        for (int i = 0; i < 12; ++i) {
            taps[i * 2] = kFilterTaps[i][0] / float(m_clientWidth);
            taps[i * 2 + 1] = kFilterTaps[i][1] / float(m_clientHeight > 0 ? m_clientHeight : 1);
        }
        m_dof->setUniform1i("SceneColorSampler", 0);
        m_dof->setUniform1i("DepthBlurSampler", 1);
        m_dof->setUniform1f("w", float(kTargetSize));
        m_dof->setUniform1f("h", float(kTargetSize));
        m_dof->setUniform1f("fMaxCoC", kMaxCoC * 0.5f);
        m_dof->setUniform2fv("vFilterTaps", 12, taps);
        m_bloom->setUniform1i("tex", 0);
        m_bloom->setUniform1f("brightThreshold", kBrightThreshold);
        m_blur->setUniform1i("tex", 0);
        m_viewer->setUniform1i("tex", 0);
        m_toneMapping->setUniform1i("tex", 0);
        m_toneMapping->setUniform1i("bloom", 1);
        m_toneMapping->setUniform1f("exposure", kExposure);
        m_toneMapping->setUniform1f("brightThreshold", kBrightThreshold);
        m_toneMapping->setUniform1f("radialBlurFactor", m_radialBlurFactor);
        m_toneMapping->setUniform1f("bloomFactor", m_bloomFactor);
        m_toneMapping->setUniform1f("blurStart", kBlurStart);
        m_toneMapping->setUniform1f("blurWidth", kBlurWidth);
        m_toneMapping->setUniform1i("blurSamples", kBlurSamples);
        m_toneMapping->setUniform2f("blurCenter", 0.5f, 0.5f);
        m_chromatic->setUniform1i("tex", 0);
        m_chromatic->setUniform1i("env", 1);
        m_chromatic->setUniform1f("reflectionFactor", 0.7f);
        m_chromatic->setUniform3f("IoR_Values", 1.14f, 1.12f, 1.10f);
        m_chromatic->setUniform3f("fresnelValues", 0.15f, 2.0f, 0.0f);
        sky->setUniform1i("env", 0);
        sky->setUniform1f("skyDepth", kSkyDepth);
    }

    // The knot from its model file; a torus in its place when the file cannot be read.
    bool _makeObject() {
        if (vxModel* model = m_engine->createAndLoadModel(mediaPath("models/knot.3DS").c_str(), 7, 0)) {
            model->setScale(0.016f);
            m_object = model->findChild("knot");
            m_material = vxMaterialMgr::getInstance()->getMaterial("knot_mat");
            if (m_object && m_material) {
                m_scene->addObject(model);
                return true;
            }
        }
        vxMesh* torus = m_engine->createMesh("knot");
        torus->makeTorus(130, 60, 30, 30);
        if (torus->getNumFaces() == 0) return false;
        m_material = vxMaterialMgr::getInstance()->createMaterial("knot_mat");
        torus->assignMaterialToFaces(m_material, 0, torus->getNumFaces() - 1);
        torus->setOrientation({90, 0, 0});
        torus->setAutoSpinAngles(11, 7, 3);
        torus->buildBuffers();
        m_scene->addObject(torus);
        m_object = torus;
        return true;
    }

    // One full-target pass of `program` over up to two inputs on units 0 and 1.
    void _pass(vxRenderTarget* target, vxGpuShader* program, vxTexture* input0, vxTexture* input1 = nullptr) {
        target->begin();
        program->bind();
        input0->bind(0);
        if (input1) input1->bind(1);
        m_renderer->drawFullscreenQuad(target->getWidth(), target->getHeight());
        if (input1) input1->unbind(1);
        input0->unbind(0);
        program->unbind();
        target->end();
    }

    float m_radialBlurFactor = 0.6f;
    float m_bloomFactor = 0.15f;
    vxGpuShader* m_dof = nullptr;
    vxGpuShader* m_bloom = nullptr;
    vxGpuShader* m_blur = nullptr;
    vxGpuShader* m_viewer = nullptr;
    vxGpuShader* m_toneMapping = nullptr;
    vxGpuShader* m_chromatic = nullptr;
    vxRenderTarget* m_sceneTarget = nullptr;
    vxRenderTarget* m_dofTarget = nullptr;
    vxRenderTarget* m_brightTarget = nullptr;
    vxRenderTarget* m_finalTarget = nullptr;
    vxRenderTarget* m_blurTargets[4] = {};
    vxSkybox* m_sky = nullptr;
    vxObject* m_object = nullptr;
    vxMaterial* m_material = nullptr;
};

}  // namespace

std::unique_ptr<DemoScene> makeHdrDofDemo() { return std::make_unique<HdrDofDemo>(); }
