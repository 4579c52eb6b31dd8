// The scene graph without a GPU: the order a scene draws in, what goes with a scene and what stays with its
// render window, and how transforms compose.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "engine/vantalux.h"
#include "engine/vx_camera.h"
#include "engine/vx_hud.h"
#include "engine/vx_linked_list.h"
#include "engine/vx_material.h"
#include "engine/vx_mesh.h"
#include "engine/vx_render_window.h"
#include "engine/vx_scene.h"
#include "engine/vx_skybox.h"

using namespace Vantalux_nsp;

namespace {

// A window whose context is always current and never draws: enough for everything but drawing.
struct NoDrawingSurface : vxWindowSurface {
    bool makeCurrent() override { return true; }
    void present() override {}
    uint32_t framebuffer() const override { return 0; }
    int samples() const override { return 0; }
};

class SceneGraph : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(Vantalux::getInstance()->setCurrentRenderWindow(&window)); }
    void TearDown() override { Vantalux::getInstance()->setCurrentRenderWindow(nullptr); }

    std::vector<std::string> names(const std::vector<vxObject*>& objects) {
        std::vector<std::string> out;
        for (const vxObject* o : objects) out.push_back(o->getName());
        return out;
    }

    NoDrawingSurface surface;
    vxRenderWindow window{&surface, 64, 48};
    Vantalux* engine = Vantalux::getInstance();
};

}  // namespace

TEST_F(SceneGraph, DrawsBackgroundsFirstAndTranslucentObjectsLast) {
    vxScene* scene = vxSceneMgr::getInstance()->createScene("Scene_1");
    ASSERT_NE(scene, nullptr);
    vxMaterial* glass = vxMaterialMgr::getInstance()->createMaterial("glass");
    glass->setBlending(true);
    vxMesh* window1 = engine->createMesh("window");
    window1->makePlane(1, 1, 1, 1);
    window1->assignMaterialToFaces(glass, 0, window1->getNumFaces() - 1);
    vxMesh* floor = engine->createMesh("floor");
    vxMesh* hidden = engine->createMesh("drawn_by_the_demo");
    hidden->setVisible(false);
    vxObject* parent = engine->createMesh("parent");
    vxMesh* child = engine->createMesh("child");
    ASSERT_TRUE(parent->addChild(child));
    vxSkybox* sky = engine->createSkybox("sky");

    for (vxObject* o : std::initializer_list<vxObject*>{window1, floor, hidden, parent, sky}) ASSERT_TRUE(scene->addObject(o));

    // Before the materials are classified every object keeps its place after the backgrounds.
    EXPECT_EQ(names(scene->getDrawOrder()), (std::vector<std::string>{"sky", "window", "floor", "parent", "child"}));
    vxMaterialMgr::getInstance()->classifyMaterials();
    EXPECT_EQ(names(scene->getDrawOrder()), (std::vector<std::string>{"sky", "floor", "parent", "child", "window"}));
    // An invisible parent takes its children out of the draws, not out of the scene.
    parent->setVisible(false);
    EXPECT_EQ(names(scene->getDrawOrder()), (std::vector<std::string>{"sky", "floor", "window"}));
    EXPECT_EQ(scene->findObject("child"), child);
}

TEST_F(SceneGraph, DestroyingASceneTakesItsObjectsAndLeavesSharedResources) {
    vxMaterial* material = vxMaterialMgr::getInstance()->createMaterial("shared_mat");
    vxCamera* shadowCamera = vxCameraMgr::getInstance()->createCameraPerspective("shadow", 90, 1, 1, 2000);
    const size_t kept = window.resourceCount();
    vxScene* scene = vxSceneMgr::getInstance()->createScene("Scene_2");

    vxObject* model = engine->createMesh("model");
    vxMesh* part = engine->createMesh("part");
    vxMesh* subPart = engine->createMesh("sub_part");
    ASSERT_TRUE(model->addChild(part));
    ASSERT_TRUE(part->addChild(subPart));
    part->makeBox({1, 1, 1}, 1, 1, 1);
    part->assignMaterialToFaces(material, 0, part->getNumFaces() - 1);
    vxCamera* camera = vxCameraMgr::getInstance()->createCameraPerspective("Camera_2", 60, 1, 1, 2000);
    ASSERT_TRUE(scene->addObject(model));
    ASSERT_TRUE(scene->addObject(camera));
    scene->setCamera(camera);
    EXPECT_EQ(part->getScene(), scene);
    EXPECT_EQ(subPart->getScene(), scene);

    vxSceneMgr::getInstance()->destroyScene(scene);
    // The scene, the model with its two levels of children and the camera are gone (sanitizer builds see any
    // object freed twice); the material and the camera never added stay with the window.
    EXPECT_EQ(window.resourceCount(), kept);
    EXPECT_EQ(vxMaterialMgr::getInstance()->getMaterial("shared_mat"), material);
    EXPECT_EQ(shadowCamera->getScene(), nullptr);
    window.destroyAll();
    EXPECT_EQ(window.resourceCount(), 0u);
}

TEST_F(SceneGraph, AnObjectBelongsToOneParentAndOneScene) {
    vxScene* first = vxSceneMgr::getInstance()->createScene("first");
    vxScene* second = vxSceneMgr::getInstance()->createScene("second");
    vxObject* a = engine->createMesh("a");
    vxObject* b = engine->createMesh("b");
    vxObject* c = engine->createMesh("c");
    ASSERT_TRUE(first->addObject(a));
    EXPECT_FALSE(second->addObject(a));
    EXPECT_FALSE(first->addObject(a));
    EXPECT_FALSE(first->addObject(nullptr));
    ASSERT_TRUE(b->addChild(c));
    EXPECT_FALSE(a->addChild(c));   // c has a parent
    EXPECT_FALSE(c->addChild(b));   // a cycle
    EXPECT_FALSE(b->addChild(b));
    EXPECT_FALSE(first->addObject(c));  // a child goes in with its parent
    EXPECT_FALSE(b->addChild(a));   // a is in a scene already
    // Destroying one scene leaves the other's objects alone.
    ASSERT_TRUE(second->addObject(b));
    vxSceneMgr::getInstance()->destroyScene(first);
    EXPECT_EQ(second->findObject("c"), c);
    EXPECT_EQ(c->getScene(), second);
}

TEST_F(SceneGraph, ChildrenMoveWithTheirParentAndSpinWithTheScene) {
    vxScene* scene = vxSceneMgr::getInstance()->createScene("Scene_3");
    vxObject* model = engine->createMesh("model");
    vxMesh* knot = engine->createMesh("knot");
    model->addChild(knot);
    model->setScale(0.5f);
    model->setPosition({10, 0, 0});
    knot->setPosition({4, 0, 0});
    knot->setAutoSpinAngles(0, 90, 0);
    scene->addObject(model);
    // The child's place is scaled by its parent, then moved with it.
    EXPECT_NEAR(knot->getAbsoluteTransform().translationPart().x, 12.0f, 1e-5f);
    // A second at 90 degrees a second turns the child's +X axis to -Z.
    scene->advance(1.0f);
    const vxVec3 xAxis = knot->getAbsoluteTransform().transformDirection({1, 0, 0});
    EXPECT_NEAR(xAxis.z, -0.5f, 1e-5f);
    EXPECT_NEAR(xAxis.x, 0.0f, 1e-5f);
    // Bounds follow the same transforms.
    knot->makeBox({2, 2, 2}, 1, 1, 1);
    vxVec3 lo, hi;
    ASSERT_TRUE(scene->getBoundingBox(lo, hi));
    EXPECT_NEAR(lo.x, 11.5f, 1e-4f);
    EXPECT_NEAR(hi.x, 12.5f, 1e-4f);
}

TEST_F(SceneGraph, NothingIsMadeWithoutACurrentWindow) {
    engine->setCurrentRenderWindow(nullptr);
    EXPECT_EQ(vxSceneMgr::getInstance()->createScene("s"), nullptr);
    EXPECT_EQ(vxMaterialMgr::getInstance()->createMaterial("m"), nullptr);
    EXPECT_EQ(vxCameraMgr::getInstance()->createCameraPerspective("c", 60, 1, 1, 10), nullptr);
    EXPECT_EQ(engine->createMesh("m"), nullptr);
    EXPECT_EQ(engine->createHud("h", 128, 128), nullptr);
    EXPECT_EQ(engine->createAndLoadModel(ENGINE_MEDIA_DIR "/models/knot.3DS", 7, 0), nullptr);
    EXPECT_EQ(window.resourceCount(), 0u);
}

TEST_F(SceneGraph, FaceRangesOfMaterialsSplitWhereTheyOverlap) {
    vxMesh* mesh = engine->createMesh("ranges");
    mesh->makeBox({1, 1, 1}, 1, 1, 1);  // 12 faces
    vxMaterial* a = vxMaterialMgr::getInstance()->createMaterial("a");
    vxMaterial* b = vxMaterialMgr::getInstance()->createMaterial("b");
    EXPECT_FALSE(mesh->assignMaterialToFaces(a, 0, 12));
    EXPECT_FALSE(mesh->assignMaterialToFaces(a, 5, 4));
    ASSERT_TRUE(mesh->assignMaterialToFaces(a, 0, 11));
    ASSERT_TRUE(mesh->assignMaterialToFaces(b, 4, 7));
    EXPECT_EQ(mesh->getMaterial(), a);
    ASSERT_TRUE(mesh->assignMaterialToFaces(b, 0, 3));
    EXPECT_EQ(mesh->getMaterial(), b);
    // New geometry with fewer faces cuts the ranges to what it has.
    mesh->makePlane(1, 1, 1, 1);
    EXPECT_EQ(mesh->getMaterial(), b);
    vxMeshData broken = mesh->getData();
    broken.indices.push_back(99);
    broken.indices.push_back(0);
    broken.indices.push_back(1);
    EXPECT_FALSE(mesh->setData(broken));
    EXPECT_EQ(mesh->getNumFaces(), 2u);
}

TEST(LinkedList, IndexesInTheOrderItemsCame) {
    vxLinkedList<int> list;
    for (int i = 0; i < 5; ++i) list.push_back(i * 10);
    ASSERT_EQ(list.size(), 5u);
    EXPECT_EQ(list[3], 30);
    EXPECT_EQ(list.at(5), nullptr);
    list.clear();
    EXPECT_EQ(list.size(), 0u);
    EXPECT_EQ(list.at(0), nullptr);
}
