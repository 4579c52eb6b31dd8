// "GL 2.1 - HDR, DoF and RadialBlur": a glass-like knot reflecting and refracting (a little differently for
// each colour) a high dynamic range sky, rendered into float targets and post-processed: depth of field from
// a depth and blur target written beside the colour, a bright pass blurred down four times (bloom), and a
// radial blur with the tone mapping.
#include <cmath>

#include "demo_context.h"
#include "engine/vx_model.h"
#include "engine/vx_render_target.h"
#include "engine/vx_rgbe_reader.h"
#include "engine/vx_skybox.h"
#include "engine_demo.h"
#include "harness/demo_host.h"
#include "harness/demo_table.h"

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

constexpr const char* kQuadVertexShader = R"(
void main()
{
    gl_TexCoord[0] = gl_MultiTexCoord0;
    gl_Position = ftransform();
}
)";

constexpr const char* kDofPixelShader = R"(
uniform sampler2D SceneColorSampler;
uniform sampler2D DepthBlurSampler;
uniform float w;
uniform float h;
uniform float fMaxCoC;
uniform vec2 vFilterTaps[12];
void main()
{
    vec2 st = gl_TexCoord[0].st;
    vec4 sum = texture2D(SceneColorSampler, st);
    vec2 centre = texture2D(DepthBlurSampler, st).xy;
    float size = centre.y * fMaxCoC;
    float total = 1.0;
    for (int i = 0; i < 12; ++i)
    {
        vec2 at = st + vFilterTaps[i] * size;
        vec2 tap = texture2D(DepthBlurSampler, at).xy;
        float contribution = tap.x < centre.x ? centre.y : tap.y;
        sum += texture2D(SceneColorSampler, at) * contribution;
        total += contribution;
    }
    gl_FragColor = sum / total;
}
)";

constexpr const char* kBloomPixelShader = R"(
uniform sampler2D tex;
uniform float brightThreshold;
void main()
{
    vec4 color = texture2D(tex, gl_TexCoord[0].st);
    float luminance = dot(vec4(0.30, 0.59, 0.11, 0.0), color);
    gl_FragColor = luminance > brightThreshold ? color : vec4(0.0);
}
)";

constexpr const char* kBlurPixelShader = R"(
uniform sampler2D tex;
uniform float w;
uniform float h;
void main()
{
    vec2 st = gl_TexCoord[0].st;
    vec2 dx = vec2(1.0 / w, 0.0), dy = vec2(0.0, 1.0 / h);
    vec4 sum = texture2D(tex, st) * 4.0;
    sum += (texture2D(tex, st - dx) + texture2D(tex, st + dx) + texture2D(tex, st - dy) + texture2D(tex, st + dy)) * 2.0;
    sum += texture2D(tex, st - dx - dy) + texture2D(tex, st + dx - dy) + texture2D(tex, st - dx + dy) +
           texture2D(tex, st + dx + dy);
    gl_FragColor = sum / 16.0;
}
)";

constexpr const char* kViewerPixelShader = R"(
uniform sampler2D tex;
void main()
{
    gl_FragColor = texture2D(tex, gl_TexCoord[0].st);
}
)";

// The radial blur samples the depth-of-field picture along the line to the blur centre; the bloom (the
// blurred bright pass) is added at its factor; the exposure scales the sum into the displayable range.
constexpr const char* kToneMappingPixelShader = R"(
uniform sampler2D tex;
uniform sampler2D bloom;
uniform float exposure;
uniform float brightThreshold;
uniform float radialBlurFactor;
uniform float bloomFactor;
uniform float blurStart;
uniform float blurWidth;
uniform int blurSamples;
uniform vec2 blurCenter;
void main()
{
    vec2 st = gl_TexCoord[0].st;
    vec4 c = vec4(0.0);
    for (int i = 0; i < blurSamples; ++i)
    {
        float scale = blurStart + blurWidth * (float(i) / float(blurSamples - 1));
        c += texture2D(tex, (st - blurCenter) * scale + blurCenter);
    }
    c /= float(blurSamples);
    vec4 color = texture2D(tex, st) + c * radialBlurFactor + texture2D(bloom, st) * bloomFactor;
    float YD = exposure * (exposure / brightThreshold + 1.0) / (exposure + 1.0);
    gl_FragColor = vec4(color.rgb * YD, 1.0);
}
)";

constexpr const char* kSkyVertexShader = R"(
void main()
{
    gl_TexCoord[0] = gl_MultiTexCoord0;
    gl_Position = ftransform();
}
)";

constexpr const char* kSkyPixelShader = R"(
uniform samplerCube env;
uniform float skyDepth;
void main()
{
    gl_FragData[0] = vec4(textureCube(env, gl_TexCoord[0].xyz).rgb, 1.0);
    gl_FragData[1] = vec4(skyDepth, 1.0, 0.0, 0.0);
}
)";

constexpr const char* kChromaticVertexShader = R"(#version 120
uniform mat4 ModelWorld4x4;
uniform vec3 eyePos;
varying vec3 N;
varying vec3 E;
varying float depth_z;
void main()
{
    gl_Position = ftransform();
    depth_z = gl_Position.z;
    N = mat3(ModelWorld4x4) * gl_Normal;
    E = (ModelWorld4x4 * gl_Vertex).xyz - eyePos;
    gl_TexCoord[0] = gl_MultiTexCoord0;
}
)";

constexpr const char* kChromaticPixelShader = R"(#version 120
uniform sampler2D tex;
uniform samplerCube env;
uniform float reflectionFactor;
uniform vec3 IoR_Values;
uniform vec3 fresnelValues;
uniform float focalDistance;
uniform float focalRange;
varying vec3 N;
varying vec3 E;
varying float depth_z;
vec3 refraction(vec3 i, vec3 n, float eta)
{
    float cosi = dot(-i, n);
    float cost2 = 1.0 - eta * eta * (1.0 - cosi * cosi);
    vec3 t = eta * i + (eta * cosi - sqrt(abs(cost2))) * n;
    return cost2 > 0.0 ? t : vec3(0.0);
}
void main()
{
    vec3 n = normalize(N);
    vec3 i = normalize(E);
    vec3 reflectColor = textureCube(env, normalize(reflect(i, n))).rgb;
    vec3 refractColor;
    refractColor.r = textureCube(env, refraction(i, n, IoR_Values.x)).r;
    refractColor.g = textureCube(env, refraction(i, n, IoR_Values.y)).g;
    refractColor.b = textureCube(env, refraction(i, n, IoR_Values.z)).b;
    float fresnel = fresnelValues.x + pow(1.0 - dot(-i, n), fresnelValues.y) * (1.0 - fresnelValues.x);
    vec3 base = texture2D(tex, gl_TexCoord[0].st).rgb;
    gl_FragData[0] = vec4(mix(base, mix(refractColor, reflectColor, fresnel), reflectionFactor), 1.0);
    gl_FragData[1] = vec4(depth_z, clamp(abs(depth_z - focalDistance), 0.0, focalRange) / focalRange, 0.0, 0.0);
}
)";

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

        m_dof = _program("DOF", kQuadVertexShader, kDofPixelShader);
        m_bloom = m_dof ? _program("Bloom", kQuadVertexShader, kBloomPixelShader) : nullptr;
        m_blur = m_bloom ? _program("Blur", kQuadVertexShader, kBlurPixelShader) : nullptr;
        m_viewer = m_blur ? _program("FinalViewer", kQuadVertexShader, kViewerPixelShader) : nullptr;
        m_toneMapping = m_viewer ? _program("ToneMapping", kQuadVertexShader, kToneMappingPixelShader) : nullptr;
        if (!m_toneMapping) {
            demoShowError("Could not create post-processing shaders.");
            return false;
        }
        m_chromatic = _program("ChromaticEffect", kChromaticVertexShader, kChromaticPixelShader);
        vxGpuShader* sky = m_chromatic ? _program("SkyEffect", kSkyVertexShader, kSkyPixelShader) : nullptr;
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
    vxGpuShader* _program(const char* name, const char* vertex, const char* pixel) {
        return buildShader(name, vertex, pixel, "[%s] Vertex Shader Error: %s", "[%s] Pixel Shader Error: %s",
                           "[%s] GPU Shader Error: %s", true);
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
