// The engine drawing on Mesa's llvmpipe through a headless EGL context: pictures checked at known pixels,
// and the failures a demo reports (a shader that does not compile, a target the driver refuses, an image
// that cannot be read) answered as failures with the window still whole.
#include <GL/glew.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "engine/vantalux.h"
#include "engine/vx_camera.h"
#include "engine/vx_font.h"
#include "engine/vx_gpu_shader.h"
#include "engine/vx_hud.h"
#include "engine/vx_light.h"
#include "engine/vx_material.h"
#include "engine/vx_mesh.h"
#include "engine/vx_model.h"
#include "engine/vx_render_target.h"
#include "engine/vx_render_window.h"
#include "engine/vx_rgbe_reader.h"
#include "engine/vx_scene.h"
#include "engine/vx_skybox.h"
#include "engine/vx_texture.h"
#include "tests/engine/headless_surface.h"

using namespace Vantalux_nsp;

namespace {

constexpr int kSize = 128;

class EngineOnLlvmpipe : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(surface.create(kSize, kSize)) << "no EGL context on the surfaceless platform";
        engine->startup(2, 0, nullptr);
        window = engine->createRenderWindow(&surface, kSize, kSize, 32, 24, 8, 0, 2, 0, 1);
        ASSERT_NE(window, nullptr);
        renderer = engine->getRenderer();
    }
    void TearDown() override {
        engine->destroyRenderWindow(window);
        engine->shutdown(nullptr);
    }

    // A camera at (0, 0, 100) looking at the origin, over the whole window.
    vxCamera* frontCamera() {
        vxCamera* camera = vxCameraMgr::getInstance()->createCameraPerspective("camera", 60, 1, 1, 1000);
        camera->setViewParams({0, 0, 100}, {0, 0, 0}, {0, 1, 0});
        return camera;
    }

    std::array<uint8_t, 4> centre() const { return surface.pixel(kSize / 2, kSize / 2); }

    HeadlessSurface surface;
    Vantalux* engine = Vantalux::getInstance();
    vxRenderWindow* window = nullptr;
    vxRenderer* renderer = nullptr;
};

const char* kFlatVertex = "void main() { gl_Position = ftransform(); gl_TexCoord[0] = gl_MultiTexCoord0; }";

}  // namespace

TEST_F(EngineOnLlvmpipe, LitSphereFillsTheMiddleAndLeavesTheBackground) {
    vxScene* scene = vxSceneMgr::getInstance()->createScene("Scene_1");
    scene->setBackgroundColor({0, 0, 0.25f});
    vxCamera* camera = frontCamera();
    scene->setCamera(camera);
    vxLight* light = vxLightMgr::getInstance()->createLightPoint("light");
    light->setPosition({-100, 0, 100});
    light->setDiffuse({1, 1, 1});
    light->setAmbient({0, 0, 0});
    vxMaterial* material = vxMaterialMgr::getInstance()->createMaterial("sphere_mat");
    material->setAmbient({0, 0, 0});
    material->setDiffuse({1, 0.5f, 0});
    vxMesh* sphere = engine->createMesh("sphere");
    sphere->makeSphere(30, 24, 24);
    sphere->assignMaterialToFaces(material, 0, sphere->getNumFaces() - 1);
    ASSERT_TRUE(sphere->buildBuffers());
    scene->addObject(camera);
    scene->addObject(light);
    scene->addObject(sphere);

    renderer->beginFrame();
    scene->render(*renderer);
    renderer->endFrame();
    engine->displayCurrentRenderWindow();

    const auto corner = surface.pixel(2, 2);
    EXPECT_EQ(corner[0], 0);
    EXPECT_NEAR(corner[2], 64, 1);
    const auto middle = centre();
    EXPECT_GT(middle[0], 100);
    EXPECT_GT(middle[0], middle[1]);  // the material's orange, lit
    // The light stands to the left: the left edge of the sphere is brighter than the right.
    const auto left = surface.pixel(kSize / 2 - 20, kSize / 2), right = surface.pixel(kSize / 2 + 20, kSize / 2);
    EXPECT_GT(left[0], right[0] + 40);
}

TEST_F(EngineOnLlvmpipe, ShaderErrorsComeBackWithTheDriversText) {
    vxGpuShader* broken = vxGPUShaderMgr::getInstance()->createGPUShader("broken");
    EXPECT_EQ(broken->loadVertexShaderFromMemory("void main() { gl_Position = undeclared; }"), -1);
    EXPECT_STRNE(broken->getErrorText(), "");
    EXPECT_EQ(broken->loadPixelShaderFromMemory(""), -1);
    EXPECT_EQ(broken->loadPixelShaderFromMemory(nullptr), -1);

    vxGpuShader* unlinked = vxGPUShaderMgr::getInstance()->createGPUShader("unlinked");
    ASSERT_EQ(unlinked->loadVertexShaderFromMemory(kFlatVertex), 0);
    ASSERT_EQ(unlinked->loadPixelShaderFromMemory("void missing(); void main() { missing(); gl_FragColor = vec4(1.0); }"), 0);
    EXPECT_EQ(unlinked->link(), -1);
    EXPECT_STRNE(unlinked->getErrorText(), "");
    EXPECT_FALSE(unlinked->bind());
    unlinked->setUniform1f("anything", 1.0f);  // ignored, not a crash
    EXPECT_TRUE(vxGPUShaderMgr::getInstance()->destroyGPUShader(unlinked));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(EngineOnLlvmpipe, UniformsReachTheirProgramWhileAnotherIsBound) {
    vxGpuShader* colour = vxGPUShaderMgr::getInstance()->createGPUShader("colour");
    ASSERT_EQ(colour->loadVertexShaderFromMemory(kFlatVertex), 0);
    ASSERT_EQ(colour->loadPixelShaderFromMemory("uniform vec4 tint; void main() { gl_FragColor = tint; }"), 0);
    vxGpuShader* other = vxGPUShaderMgr::getInstance()->createGPUShader("other");
    ASSERT_EQ(other->loadVertexShaderFromMemory(kFlatVertex), 0);
    ASSERT_EQ(other->loadPixelShaderFromMemory("void main() { gl_FragColor = vec4(1.0); }"), 0);
    ASSERT_TRUE(other->bind());
    colour->setUniform4f("tint", 0, 1, 0, 1);
    colour->setUniform4f("dropped_by_the_compiler", 1, 1, 1, 1);
    GLint bound = 0;
    glGetIntegerv(GL_CURRENT_PROGRAM, &bound);
    EXPECT_EQ(GLuint(bound), other->getProgramId());

    renderer->beginFrame();
    renderer->setClearColor({0, 0, 0, 1});
    renderer->clear(true, true);
    ASSERT_TRUE(colour->bind());
    renderer->disableState(VX_DEPTH_TEST);
    renderer->drawFullscreenQuad(kSize, kSize);
    colour->unbind();
    const auto middle = centre();
    EXPECT_EQ(middle[0], 0);
    EXPECT_EQ(middle[1], 255);
}

TEST_F(EngineOnLlvmpipe, MultipleTargetsKeepValuesAboveOneAndEndGoesBackToTheWindow) {
    vxRenderTarget* target = vxRenderTarget::createMultipleColorTargets("mrt", 2, 64, 64, VX_PIXEL_FORMAT_RGBA,
                                                                        VX_INTERNAL_FORMAT_FLOAT, true);
    ASSERT_NE(target, nullptr);
    vxGpuShader* both = vxGPUShaderMgr::getInstance()->createGPUShader("both");
    ASSERT_EQ(both->loadVertexShaderFromMemory(kFlatVertex), 0);
    ASSERT_EQ(both->loadPixelShaderFromMemory(
                  "void main() { gl_FragData[0] = vec4(4.5, 0.0, 0.0, 1.0); gl_FragData[1] = vec4(0.0, 0.25, 0.0, 1.0); }"),
              0);
    renderer->beginFrame();
    glViewport(3, 4, 50, 60);
    target->begin();
    renderer->clear(true, true);
    ASSERT_TRUE(both->bind());
    renderer->drawFullscreenQuad(64, 64);
    both->unbind();
    target->end();

    GLint framebuffer = 0, viewport[4];
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &framebuffer);
    glGetIntegerv(GL_VIEWPORT, viewport);
    EXPECT_EQ(GLuint(framebuffer), surface.framebuffer());
    EXPECT_EQ(viewport[0], 3);
    EXPECT_EQ(viewport[3], 60);

    std::vector<float> texels(64 * 64 * 4);
    glBindTexture(GL_TEXTURE_2D, target->getColorTexture(0)->getId());
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, texels.data());
    EXPECT_FLOAT_EQ(texels[(32 * 64 + 32) * 4], 4.5f);  // a float target keeps HDR values
    glBindTexture(GL_TEXTURE_2D, target->getColorTexture(1)->getId());
    glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_FLOAT, texels.data());
    EXPECT_FLOAT_EQ(texels[(32 * 64 + 32) * 4 + 1], 0.25f);
    EXPECT_EQ(target->getColorTexture(2), nullptr);
}

TEST_F(EngineOnLlvmpipe, TargetsTheDriverCannotMakeAreRefusedAndLeaveNothingBehind) {
    const size_t before = window->resourceCount();
    EXPECT_EQ(vxRenderTarget::createColorTarget("huge", 1 << 20, 16, VX_PIXEL_FORMAT_RGBA, VX_INTERNAL_FORMAT_BYTE), nullptr);
    EXPECT_EQ(vxRenderTarget::createColorTarget("empty", 0, 0, VX_PIXEL_FORMAT_RGBA, VX_INTERNAL_FORMAT_BYTE), nullptr);
    EXPECT_EQ(vxRenderTarget::createMultipleColorTargets("many", 64, 16, 16, VX_PIXEL_FORMAT_RGBA, VX_INTERNAL_FORMAT_FLOAT),
              nullptr);
    EXPECT_EQ(window->resourceCount(), before);
    GLint framebuffer = 0;
    glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &framebuffer);
    EXPECT_EQ(GLuint(framebuffer), surface.framebuffer());
}

TEST_F(EngineOnLlvmpipe, ShadowDepthTargetComparesAgainstWhatWasDrawn) {
    vxRenderTarget* shadow = vxRenderTarget::createDepthTarget("shadow_rt", 64, 64);
    ASSERT_NE(shadow, nullptr);
    ASSERT_NE(shadow->getDepthTexture(), nullptr);
    renderer->beginFrame();
    shadow->begin();
    renderer->setClearDepth(1.0f);
    renderer->clear(false, true);
    glMatrixMode(GL_PROJECTION);
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    // A quad at depth 0.5 (z 0 in clip space) over the left half.
    glBegin(GL_QUADS);
    glVertex3f(-1, -1, 0), glVertex3f(0, -1, 0), glVertex3f(0, 1, 0), glVertex3f(-1, 1, 0);
    glEnd();
    shadow->end();
    std::vector<float> depth(64 * 64);
    glBindTexture(GL_TEXTURE_2D, shadow->getDepthTexture()->getId());
    glGetTexImage(GL_TEXTURE_2D, 0, GL_DEPTH_COMPONENT, GL_FLOAT, depth.data());
    EXPECT_NEAR(depth[32 * 64 + 10], 0.5f, 1e-3f);
    EXPECT_FLOAT_EQ(depth[32 * 64 + 50], 1.0f);
}

TEST_F(EngineOnLlvmpipe, TexturesComeFromFilesAndMemoryAndBadOnesFromNowhere) {
    vxTexture* fur = vxTextureMgr::getInstance()->createTexture2D(ENGINE_MEDIA_DIR "/textures/fur_color.jpg");
    ASSERT_NE(fur, nullptr);
    EXPECT_EQ(fur->getWidth(), 512);
    EXPECT_TRUE(glIsTexture(fur->getId()));
    const size_t before = window->resourceCount();
    const uint8_t garbage[] = {0xFF, 0xD8, 0xFF, 0xE0, 1, 2, 3, 4, 5};
    EXPECT_EQ(vxTextureMgr::getInstance()->createTexture2D("garbage", garbage, sizeof garbage), nullptr);
    EXPECT_EQ(vxTextureMgr::getInstance()->createTexture2D(ENGINE_MEDIA_DIR "/textures/missing.jpg"), nullptr);
    EXPECT_EQ(vxTextureMgr::getInstance()->createTexture2D(ENGINE_MEDIA_DIR "/models/knot.3DS"), nullptr);
    EXPECT_EQ(vxTextureMgr::getInstance()->createTexture2D("too_big", 1 << 20, 4), nullptr);
    EXPECT_EQ(window->resourceCount(), before);
    vxSkybox* sky = engine->createSkybox("sky");
    EXPECT_FALSE(sky->loadFace(0, ENGINE_MEDIA_DIR "/textures/space_skybox/missing.jpg"));
    EXPECT_FALSE(sky->loadFace(6, ENGINE_MEDIA_DIR "/textures/space_skybox/top.jpg"));
    EXPECT_TRUE(sky->loadFace(2, ENGINE_MEDIA_DIR "/textures/space_skybox/top.jpg"));
}

TEST_F(EngineOnLlvmpipe, RegisteredFontDrawsItsTextInItsColourWhereItWasPut) {
    vxFont font;
    ASSERT_TRUE(font.create("Verdana", 10));
    font.setText("MMMM");
    font.setPosition2D(5, 10);
    font.setColor(1, 0, 0);
    auto countRed = [&](int x0, int x1, int y0, int y1) {  // window pixels, y down from the top
        int red = 0;
        for (int y = y0; y < y1; ++y)
            for (int x = x0; x < x1; ++x) {
                const auto p = surface.pixel(x, kSize - 1 - y);
                red += p[0] > 128 && p[1] < 64;
            }
        return red;
    };
    auto draw = [&] {
        renderer->beginFrame();
        renderer->setClearColor({0, 0, 0, 1});
        renderer->clear(true, true);
        renderer->beginTextMode();
        renderer->drawFont(font);
        renderer->endTextMode();
    };
    draw();
    EXPECT_EQ(countRed(0, kSize, 0, kSize), 0) << "a font not registered draws nothing";
    ASSERT_TRUE(renderer->registerFont(&font));
    draw();
    const int width = font.measure("MMMM");
    EXPECT_GT(countRed(5, 5 + width, 10, 10 + font.getAtlas().lineHeight), 40);
    EXPECT_EQ(countRed(5 + width + 2, kSize, 0, kSize), 0);
    EXPECT_EQ(countRed(0, kSize, 10 + font.getAtlas().lineHeight + 2, kSize), 0);
    renderer->forgetFont(&font);
    draw();
    EXPECT_EQ(countRed(0, kSize, 0, kSize), 0);
}

TEST_F(EngineOnLlvmpipe, HdrCubeMapShowsSkyAboveAndLandBelow) {
    vxTexture* cube = vxRgbeReader::loadRGBECubeMap(ENGINE_MEDIA_DIR "/textures/galileo_cross.hdr");
    ASSERT_NE(cube, nullptr);
    EXPECT_EQ(cube->getKind(), vxTexture::kCubeMap);
    EXPECT_EQ(vxRgbeReader::loadRGBECubeMap(ENGINE_MEDIA_DIR "/textures/fur_color.jpg"), nullptr);
    vxScene* scene = vxSceneMgr::getInstance()->createScene("sky_scene");
    vxSkybox* sky = engine->createSkybox("sky");
    sky->setCubemap(cube);
    scene->addObject(sky);
    vxCamera* camera = frontCamera();
    scene->setCamera(camera);
    auto look = [&](vxVec3 direction) {
        camera->setViewParams({0, 0, 0}, direction, std::fabs(direction.y) > 0.9f ? vxVec3{0, 0, -1} : vxVec3{0, 1, 0});
        renderer->beginFrame();
        scene->render(*renderer);
        return centre();
    };
    const auto up = look({0, 1, 0});
    EXPECT_GT(up[2], up[0]);  // blue overhead
    const auto down = look({0, -1, 0});
    EXPECT_GT(down[1], down[2]);  // green-brown land
    EXPECT_LT(int(down[0]) + down[1] + down[2], int(up[0]) + up[1] + up[2]);
}

TEST_F(EngineOnLlvmpipe, InstancedDrawMakesEveryInstance) {
    vxGpuShader* shader = vxGPUShaderMgr::getInstance()->createGPUShader("instances");
    ASSERT_EQ(shader->loadVertexShaderFromMemory("#version 120\n#extension GL_EXT_gpu_shader4 : enable\n"
                                                 "#extension GL_EXT_draw_instanced : enable\n"
                                                 "uniform vec4 offsets[4];\n"
                                                 "void main() { gl_Position = gl_ModelViewProjectionMatrix * "
                                                 "(gl_Vertex + offsets[gl_InstanceID]); }"),
              0)
        << shader->getErrorText();
    ASSERT_EQ(shader->loadPixelShaderFromMemory("void main() { gl_FragColor = vec4(1.0); }"), 0);
    vxMesh* quad = engine->createMesh("quad");
    quad->makePlane(10, 10, 1, 1);
    quad->setOrientation({90, 0, 0});  // standing, facing the camera: the plane's -Z turns to +Y
    const float offsets[16] = {-30, 0, 30, 0, 30, 0, 30, 0, -30, 0, -30, 0, 30, 0, -30, 0};
    renderer->beginFrame();
    renderer->setClearColor({0, 0, 0, 1});
    renderer->clear(true, true);
    frontCamera()->apply();
    glMultMatrixf(quad->getAbsoluteTransform().data());
    ASSERT_TRUE(shader->bind());
    shader->setUniform4fv("offsets", 4, offsets);
    quad->setNumDrawInstances(4);
    quad->bindData();
    quad->drawData();
    quad->unbindData();
    shader->unbind();
    // 30 units at 100 in front of a 60 degree camera land 30 / (100 tan 30) of the half window off centre.
    const int away = int(std::lround(kSize / 2 * 30 / (100 * std::tan(30 * kVxDegToRad))));
    for (int dx : {-away, away})
        for (int dy : {-away, away}) EXPECT_EQ(surface.pixel(kSize / 2 + dx, kSize / 2 + dy)[0], 255) << dx << "," << dy;
    EXPECT_EQ(centre()[0], 0);
}

TEST_F(EngineOnLlvmpipe, KnotModelCarriesItsMaterialAndDrawsInTheMiddle) {
    vxModel* model = engine->createAndLoadModel(ENGINE_MEDIA_DIR "/models/knot.3DS", 7, 0);
    ASSERT_NE(model, nullptr);
    model->setScale(0.016f);
    vxObject* knot = model->findChild("knot");
    ASSERT_NE(knot, nullptr);
    vxMaterial* material = vxMaterialMgr::getInstance()->getMaterial("knot_mat");
    ASSERT_NE(material, nullptr);
    EXPECT_EQ(static_cast<vxMesh*>(knot)->getMaterial(), material);
    material->setLighting(false);
    material->setDiffuse({1, 1, 0});
    vxScene* scene = vxSceneMgr::getInstance()->createScene("knot_scene");
    scene->addObject(model);
    vxCamera* camera = frontCamera();
    camera->setViewParams({0, 0, 400}, {0, 0, 0}, {0, 1, 0});
    scene->setCamera(camera);
    renderer->beginFrame();
    scene->render(*renderer);
    // The knot's tube passes through the top of the middle column, and the window's corners stay clear.
    int yellow = 0;
    for (int y = 0; y < kSize; ++y) yellow += surface.pixel(kSize / 2, y)[1] == 255;
    EXPECT_GT(yellow, 5);
    EXPECT_EQ(surface.pixel(1, 1)[1], 0);
    EXPECT_EQ(engine->createAndLoadModel(ENGINE_MEDIA_DIR "/models/missing.3DS", 7, 0), nullptr);
}

TEST_F(EngineOnLlvmpipe, LaterPassesAddUpOverMaterialsThatDoNotBlend) {
    // A light pass sets additive blending for the whole frame; the materials it draws through must not turn
    // it off, or the second light replaces the first instead of adding to it.
    vxGpuShader* quarterRed = vxGPUShaderMgr::getInstance()->createGPUShader("quarter_red");
    ASSERT_EQ(quarterRed->loadVertexShaderFromMemory(kFlatVertex), 0);
    ASSERT_EQ(quarterRed->loadPixelShaderFromMemory("void main() { gl_FragColor = vec4(0.25, 0.0, 0.0, 1.0); }"), 0);
    vxMaterial* material = vxMaterialMgr::getInstance()->createMaterial("opaque");
    material->setBlending(false);
    material->setGpuShader(quarterRed, 0);
    vxMesh* wall = engine->createMesh("wall");
    wall->makePlane(200, 200, 1, 1);
    wall->setOrientation({90, 0, 0});
    wall->assignMaterialToFaces(material, 0, wall->getNumFaces() - 1);
    vxScene* scene = vxSceneMgr::getInstance()->createScene("passes");
    scene->addObject(wall);
    renderer->beginFrame();
    renderer->setClearColor({0, 0, 0, 1});
    renderer->clear(true, true);
    frontCamera()->apply();
    scene->drawPass(*renderer, 1);  // lays depth
    renderer->disableState(VX_DEPTH_WRITE);
    renderer->setDepthFunc(VX_DEPTH_EQUAL);
    renderer->enableState(VX_BLENDING);
    renderer->setBlendFactors(VX_BLEND_ONE, VX_BLEND_ONE);
    scene->drawPass(*renderer, 1);
    scene->drawPass(*renderer, 1);
    EXPECT_NEAR(centre()[0], 191, 2);  // three quarters of red: three passes added
}

TEST_F(EngineOnLlvmpipe, HudQuadPlacedByItsCentreFromTheWindowsMiddleLandsInTheLowerRightCorner) {
    vxMaterial* white = vxMaterialMgr::getInstance()->createMaterial("white");
    white->setLighting(false);
    white->setCulling(false);
    white->setDiffuse({1, 1, 1, 1});
    vxHud* hud = engine->createHud("corner", 32, 32);
    hud->setMaterial(white);
    hud->setPosition({kSize / 2.0f - 16, -kSize / 2.0f + 16, 0});
    renderer->beginFrame();
    renderer->setClearColor({0, 0, 0, 1});
    renderer->clear(true, true);
    renderer->drawHud(*hud);
    EXPECT_EQ(surface.pixel(kSize - 2, 1)[0], 255);         // lower right (pixels counted from the bottom)
    EXPECT_EQ(surface.pixel(kSize - 31, 30)[0], 255);
    EXPECT_EQ(surface.pixel(kSize - 34, 1)[0], 0);          // just left of it
    EXPECT_EQ(surface.pixel(kSize - 2, 34)[0], 0);          // just above it
    EXPECT_EQ(surface.pixel(1, kSize - 2)[0], 0);
}

TEST_F(EngineOnLlvmpipe, TextureTilingRepeatsTheTextureAcrossTheMesh) {
    // Two texels, black and white, nearest filtering: a plane shows one edge between them, or four times
    // as many pairs when tiled by 4.
    const uint8_t texels[8] = {0, 0, 0, 255, 255, 255, 255, 255};
    vxTextureData options;
    options.filter = VX_FILTER_NEAREST;
    vxTexture* stripes = vxTextureMgr::getInstance()->createTexture2D("stripes", 2, 1, options);
    ASSERT_TRUE(stripes->uploadRgba8(2, 1, texels, options));
    vxMaterial* material = vxMaterialMgr::getInstance()->createMaterial("striped");
    material->setLighting(false);
    material->setDiffuse({1, 1, 1, 1});
    material->addTexture(stripes, 0);
    auto edgesAcross = [&](float tiling) {
        vxMesh* wall = engine->createMesh("wall");
        wall->makePlane(100, 100, 1, 1);
        wall->setOrientation({90, 0, 0});
        wall->setTexCoordTiling(0, tiling, tiling);
        wall->assignMaterialToFaces(material, 0, wall->getNumFaces() - 1);
        renderer->beginFrame();
        renderer->setClearColor({1, 0, 0, 1});
        renderer->clear(true, true);
        frontCamera()->apply();
        renderer->drawObject(*wall);
        int edges = 0;
        for (int x = 1; x < kSize; ++x) edges += surface.pixel(x, kSize / 2) != surface.pixel(x - 1, kSize / 2);
        return edges;
    };
    const int plain = edgesAcross(1), tiled = edgesAcross(4);
    EXPECT_EQ(plain, 3);  // red, black, white, red
    EXPECT_EQ(tiled, 9);
}

TEST_F(EngineOnLlvmpipe, DestroyingTheWindowFreesItsGlNames) {
    vxTexture* texture = vxTextureMgr::getInstance()->createTexture2D("t", 8, 8);
    vxGpuShader* shader = vxGPUShaderMgr::getInstance()->createGPUShader("s");
    ASSERT_EQ(shader->loadVertexShaderFromMemory(kFlatVertex), 0);
    vxMesh* mesh = engine->createMesh("m");
    mesh->makeBox({1, 1, 1}, 1, 1, 1);
    ASSERT_TRUE(mesh->buildBuffers());
    vxRenderTarget* target = vxRenderTarget::createColorTarget("rt", 8, 8, VX_PIXEL_FORMAT_RGBA, VX_INTERNAL_FORMAT_BYTE);
    ASSERT_NE(target, nullptr);
    const GLuint textureId = texture->getId(), programId = shader->getProgramId(),
                 targetTexture = target->getColorTexture(0)->getId();
    vxFont font;
    ASSERT_TRUE(font.create("Verdana", 10));
    ASSERT_TRUE(renderer->registerFont(&font));

    engine->destroyRenderWindow(window);
    window = nullptr;
    EXPECT_EQ(engine->getCurrentRenderWindow(), nullptr);
    ASSERT_TRUE(surface.makeCurrent());
    EXPECT_FALSE(glIsTexture(textureId));
    EXPECT_FALSE(glIsTexture(targetTexture));
    EXPECT_FALSE(glIsProgram(programId));
    // The font was forgotten with the window: forgetting it again is harmless.
    renderer->forgetFont(&font);
}

TEST(EngineWindow, RefusedWithoutStartupOrSurfaceOrBelowTheVersionAsked) {
    HeadlessSurface surface;
    ASSERT_TRUE(surface.create(16, 16));
    Vantalux* engine = Vantalux::getInstance();
    EXPECT_EQ(engine->createRenderWindow(&surface, 16, 16, 32, 24, 8, 0, 2, 0, 1), nullptr);
    engine->startup(2, 0, nullptr);
    EXPECT_EQ(engine->createRenderWindow(nullptr, 16, 16, 32, 24, 8, 0, 2, 0, 1), nullptr);
    EXPECT_EQ(engine->createRenderWindow(&surface, 0, 16, 32, 24, 8, 0, 2, 0, 1), nullptr);
    EXPECT_EQ(engine->createRenderWindow(&surface, 16, 16, 32, 24, 8, 0, 99, 0, 1), nullptr);
    vxRenderWindow* window = engine->createRenderWindow(&surface, 16, 16, 32, 24, 8, 0, 2, 0, 1);
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(engine->getRenderer()->getMSAASamples(), 0);
    engine->destroyRenderWindow(window);
    engine->shutdown(nullptr);
    EXPECT_EQ(engine->getCurrentRenderWindow(), nullptr);
    EXPECT_EQ(engine->createRenderWindow(&surface, 16, 16, 32, 24, 8, 0, 2, 0, 1), nullptr);
}
