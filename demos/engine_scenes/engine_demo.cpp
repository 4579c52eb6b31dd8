#include "demos/engine_scenes/engine_demo.h"

#include <cmath>
#include <cstdio>

#include "demos/demo_context.h"
#include "demos/gl_utility/render_window_gl.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_media.h"
#include "demos/harness/machine_texts.h"
#include "kalidor/kalidor.h"

namespace {

#include "demos/gl_utility/corner_logo_jpeg.inc"

using namespace Vantalux_nsp;

constexpr int kLogoSize = 128;

}  // namespace

bool HarnessSurface::makeCurrent() { return m_window.makeCurrent(); }
uint32_t HarnessSurface::framebuffer() const { return m_window.framebuffer(); }
int HarnessSurface::samples() const { return m_window.samples(); }

std::string EngineDemo::mediaPath(const char* relativeName) { return demoMediaPath(relativeName); }

std::string EngineDemo::named(const char* format) const {
    char text[128];
    std::snprintf(text, sizeof text, format, int(m_objectId));
    return text;
}

float EngineDemo::aspect() const {
    return m_clientHeight < 1 ? float(m_clientWidth) : float(m_clientWidth) / float(m_clientHeight);
}

float EngineDemo::elapsedSeconds(const DemoContext& context) const { return float(context.stats.elapsedMs) * 0.001f; }

vxGpuShader* EngineDemo::buildShader(const char* name, const char* vertexSource, const char* pixelSource,
                                     const char* vertexError, const char* pixelError, const char* linkError,
                                     bool namePrefix) {
    vxGPUShaderMgr* shaders = vxGPUShaderMgr::getInstance();
    vxGpuShader* shader = shaders->createGPUShader(name);
    if (!shader) return nullptr;
    const char* failedText = nullptr;
    if (shader->loadVertexShaderFromMemory(vertexSource) != 0) failedText = vertexError;
    else if (shader->loadPixelShaderFromMemory(pixelSource) != 0) failedText = pixelError;
    else if (shader->link() != 0) failedText = linkError;
    if (!failedText) return shader;
    // The texts come from the demos' own tables, each with the conversions named by `namePrefix`.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
    if (namePrefix) demoShowError(failedText, name, shader->getErrorText());
    else demoShowError(failedText, shader->getErrorText());
#pragma GCC diagnostic pop
    shaders->destroyGPUShader(shader);
    return nullptr;
}

bool EngineDemo::setUp(DemoContext& context, RenderWindowGL& window) {
    m_objectId = context.objectId;
    m_clientWidth = context.clientWidth;
    m_clientHeight = context.clientHeight;
    vxHardwareCaps* caps = vxHardwareCaps::getInstance();
    if (!caps->read()) {
        demoShowError("could not create a render window.");
        return false;
    }
    if (!checkCapabilities(*caps)) return false;

    m_surface = std::make_unique<HarnessSurface>(window);
    m_window = m_engine->createRenderWindow(m_surface.get(), m_clientWidth, m_clientHeight, 32, 24, 8,
                                            int(context.msaaSamples), minimumGlMajor(), minimumGlMinor(), 1);
    if (!m_window) {
        demoShowError("could not create a render window.");
        return false;
    }
    m_scene = vxSceneMgr::getInstance()->createScene(named("Scene_%d").c_str());
    m_scene->setBackgroundColor(backgroundColor());

    const CameraSettings c = cameraSettings();
    m_camera = vxCameraMgr::getInstance()->createCameraPerspective(named("Camera_%d").c_str(), c.createFov, aspect(),
                                                                   c.createNear, c.createFar);
    m_camera->setProjPerspParams(c.fov, aspect(), c.zNear, c.zFar);
    m_camera->setViewParams(c.eye, c.target, {0, 1, 0});
    m_camera->setViewport(0, 0, m_clientWidth, m_clientHeight);
    m_scene->addObject(m_camera);

    if (!buildScene(context)) return false;

    _createLogo();
    m_hudFont.create("Verdana", 10);
    m_renderer->registerFont(&m_hudFont);
    if (const Kalidornm::Kalidor* library = Kalidornm::Kalidor::getInstance())
        m_rendererName = demoRendererText(*library);
    context.firstFrame = true;
    return true;
}

void EngineDemo::_createLogo() {
    vxTextureData options;
    options.addressing = VX_ADDRESS_CLAMP;
    vxTexture* texture = vxTextureMgr::getInstance()->createTexture2D(named("LumenscopeLogoTex_%d").c_str(), kCornerLogoJpeg,
                                                                     sizeof kCornerLogoJpeg, options);
    if (!texture) return;  // no logo, and nothing to say about it
    vxMaterial* material = vxMaterialMgr::getInstance()->createMaterial(named("LumenscopeLogoMat_%d").c_str());
    material->setLighting(false);
    material->setCulling(false);
    material->setPolygonMode(VX_POLYGON_FILL);
    material->setBlending(true);
    material->setBlendingFactors(VX_BLEND_ONE, VX_BLEND_ONE);
    material->setTexturing(true);
    material->setDiffuse({1, 1, 1, 1});
    material->addTexture(texture, 0);
    m_logo = m_engine->createHud(named("LumenscopeLogo_%d").c_str(), kLogoSize, kLogoSize);
    m_logo->setMaterial(material);
    m_logo->setPosition({float(m_clientWidth / 2 - kLogoSize / 2), float(-(m_clientHeight / 2) + kLogoSize / 2), 0});
}

void EngineDemo::_drawLogo() {
    if (m_logo) m_renderer->drawHud(*m_logo);
}

void EngineDemo::drawObject(vxObject* object, int pass) {
    if (object) m_renderer->drawObject(*object, pass);
}

void EngineDemo::drawLine(int y, const char* text) {
    m_hudFont.setText("%s", text);
    m_hudFont.setPosition2D(5, y);
    m_renderer->drawFont(m_hudFont);
}

void EngineDemo::_drawFigures(DemoContext& context) {
    const FrameStats& s = context.stats;
    const vxColor color = textColor();
    m_hudFont.setColor(color.r, color.g, color.b, color.a);
    char line[512];
    std::snprintf(line, sizeof line, "Current FPS: %u", s.currentFps);
    drawLine(10, line);
    std::snprintf(line, sizeof line, "FPS: Max: %u - Min: %u - Avg: %u", s.maxFps, s.minFps, s.avgFps);
    drawLine(25, line);
    std::snprintf(line, sizeof line, "Renderer: %s - MSAA=%dX", m_rendererName.c_str(), m_renderer->getMSAASamples());
    drawLine(40, line);
    std::snprintf(line, sizeof line, "Frames=%u - Elapsed time=%4.1f sec", s.totalFrames, double(s.elapsedMs) * 0.001);
    drawLine(55, line);
    drawExtraLines(context);
}

void EngineDemo::drawFrame(DemoContext& context, RenderWindowGL&, float dt) {
    const Orbit o = orbit();
    if (o.rate != 0.0f) {
        m_cameraAngle += dt * o.rate;
        const float a = m_cameraAngle * kVxDegToRad;
        m_camera->setViewParams({o.radius * std::cos(a), o.height, o.radius * std::sin(a)}, o.target, {0, 1, 0});
    }
    m_scene->advance(dt);

    if (!m_engine->setCurrentRenderWindow(m_window)) return;
    m_renderer->beginFrame();
    if (clearsColor()) m_renderer->setClearColor({0, 0, 0, 0});
    m_renderer->clear(clearsColor(), true);
    m_camera->apply();
    if (context.firstFrame) {
        vxMaterialMgr::getInstance()->classifyMaterials();
        m_scene->setCamera(m_camera);
        context.firstFrame = false;
    }
    drawScene(context, dt);
    if (!logoAfterText()) _drawLogo();
    m_renderer->beginTextMode();
    _drawFigures(context);
    m_renderer->endTextMode();
    if (logoAfterText()) _drawLogo();
    m_renderer->endFrame();
    m_engine->displayCurrentRenderWindow();
}

void EngineDemo::release(DemoContext&) {
    if (!m_window) return;
    m_engine->setCurrentRenderWindow(m_window);
    m_renderer->forgetFont(&m_hudFont);
    if (m_scene) vxSceneMgr::getInstance()->destroyScene(m_scene);
    m_engine->destroyRenderWindow(m_window);
    m_window = nullptr;
    m_scene = nullptr;
    m_camera = nullptr;
    m_logo = nullptr;
}
