#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "demos/harness/demo_affinity.h"
#include "demos/harness/demo_launcher.h"
#include "demos/harness/demo_requirements.h"
#include "demos/harness/demo_table.h"

namespace {

DemoCapabilities everything() {
    DemoCapabilities caps;
    caps.openGl20 = caps.framebufferObjects = caps.pointSprites = caps.drawInstanced = caps.gpuShader4 = true;
    caps.maxDrawBuffers = 8;
    caps.maxVertexTextureUnits = 16;
    return caps;
}

TEST(DemoRequirements, EachEngineRowIsRefusedForWhatItLacksAndTheOthersNeedNothing) {
    for (int row = 0; row < demoPickerRows(DemoPicker::OpenGl); ++row)
        EXPECT_EQ(openGlDemoRequirementFailure(row, everything()), nullptr);
    for (int row : {0, 1, 2, 10}) EXPECT_EQ(openGlDemoRequirementFailure(row, DemoCapabilities{}), nullptr) << row;

    struct Case {
        int row;
        void (*remove)(DemoCapabilities&);
        const char* message;
    };
    const Case cases[] = {
        {3, [](DemoCapabilities& c) { c.openGl20 = false; }, "This demo requires the support of OpenGL 2.0."},
        {9, [](DemoCapabilities& c) { c.openGl20 = false; }, "This demo requires the support of OpenGL 2.0."},
        {4, [](DemoCapabilities& c) { c.maxDrawBuffers = 1; },
         "This demo requires the support of OpenGL 2.0 and two render targets."},
        {5, [](DemoCapabilities& c) { c.gpuShader4 = false; },
         "This demo requires the support of GL_EXT_gpu_shader4 / GL_ARB_draw_instanced / GL_EXT_draw_instanced."},
        {5, [](DemoCapabilities& c) { c.drawInstanced = false; },
         "This demo requires the support of GL_EXT_gpu_shader4 / GL_ARB_draw_instanced / GL_EXT_draw_instanced."},
        {6, [](DemoCapabilities& c) { c.framebufferObjects = false; },
         "This demo requires the support of OpenGL 2.0 and FBO."},
        {7, [](DemoCapabilities& c) { c.pointSprites = false; },
         "This demo requires the support of OpenGL 2.0 and Point Sprite."},
        {8, [](DemoCapabilities& c) { c.maxVertexTextureUnits = 0; },
         "This demo requires the support of OpenGL 2.0 and one vertex texture unit."},
        {8, [](DemoCapabilities& c) { c.openGl20 = false; },
         "This demo requires the support of OpenGL 2.0 and one vertex texture unit."},
    };
    for (const Case& c : cases) {
        DemoCapabilities caps = everything();
        c.remove(caps);
        const char* failure = openGlDemoRequirementFailure(c.row, caps);
        ASSERT_NE(failure, nullptr) << c.row;
        EXPECT_STREQ(failure, c.message) << c.row;
    }
}

TEST(DemoRequirements, SelectionsOutsideTheTablesFallBackToTheirDefaultRows) {
    EXPECT_EQ(openGlStartRow(2), 2);
    EXPECT_EQ(openGlStartRow(-1), 9);
    EXPECT_EQ(openGlStartRow(11), 9);
    EXPECT_EQ(openClStartRow(7), 7);
    EXPECT_EQ(openClStartRow(8), 0);
    EXPECT_EQ(openClStartRow(-3), 0);
}

// The pickers as the main window has always shown them, top to bottom.
TEST(DemoTable, ThePickersShowTheirRowsInTheirOrderAndEachRowLeadsBackToItsDemo) {
    const std::vector<std::string> openGl = {"GL 4.x - Tessellation",
                                             "GL 3.x - Illuminated Torus",
                                             "GL 3.x - Triangle of Death",
                                             "GL 2.1 - Furry Cube",
                                             "GL 2.1 - HDR, DoF and RadialBlur",
                                             "GL 2.1 - HW Geometry Instancing",
                                             "GL 2.1 - Soft Shadows",
                                             "GL 2.1 - GLSL Point Sprite Particles",
                                             "GL 2.1 - Vertex Displacement Mapping",
                                             "GL 2.1 - CEL-SHADING",
                                             "GL 1.2 - Simple Mesh"};
    const std::vector<std::string> openCl = {
        "CL GPU - 4D Quaternion Julia Set", "CL CPU - 4D Quaternion Julia Set", "CL GPU - 1M Particles",
        "CL CPU - 1M Particles",            "CL GPU - Mesh Deformer",           "CL CPU - Mesh Deformer",
        "CL GPU - Post FX",                 "CL CPU - Post FX"};
    std::set<DemoId> seen;
    for (auto [picker, titles] : {std::pair(DemoPicker::OpenGl, openGl), std::pair(DemoPicker::OpenCl, openCl)}) {
        ASSERT_EQ(demoPickerRows(picker), int(titles.size()));
        for (int row = 0; row < demoPickerRows(picker); ++row) {
            const DemoDescriptor* shown = demoDescriptor(picker, row);
            const std::optional<DemoPick> pick = demoAtPickerRow(picker, row);
            ASSERT_TRUE(shown && pick) << row;
            EXPECT_EQ(shown->title, titles[size_t(row)]);
            const DemoRow& demo = demoRow(pick->id);
            EXPECT_EQ(demo.family == DemoFamily::OpenCl, picker == DemoPicker::OpenCl) << row;
            const bool cpuRow = picker == DemoPicker::OpenCl && row % 2 == 1;
            EXPECT_EQ(pick->clDeviceType, picker == DemoPicker::OpenGl ? 0u : cpuRow ? 2u : 4u) << row;
            EXPECT_EQ(demo.pickerRow, cpuRow ? row - 1 : row);
            EXPECT_EQ(&demoShown(pick->id, pick->clDeviceType), shown) << row;
            seen.insert(pick->id);
        }
        EXPECT_FALSE(demoAtPickerRow(picker, -1));
        EXPECT_FALSE(demoAtPickerRow(picker, demoPickerRows(picker)));
        EXPECT_EQ(demoDescriptor(picker, demoPickerRows(picker)), nullptr);
    }
    EXPECT_EQ(seen.size(), kDemoCount);
}

// The "Test name" of every demo's result row, as benchmark sheets have always read them.
// Every row makes its scene, and exactly the OpenCL rows check their device before a start.
TEST(DemoTable, EveryRowMakesItsSceneAndOnlyOpenClRowsCheckBeforeAStart) {
    for (const DemoRow& demo : kDemoRows) {
        EXPECT_NE(demo.makeScene, nullptr) << demo.resultName;
        EXPECT_EQ(demo.checkBeforeStart != nullptr, demo.family == DemoFamily::OpenCl) << demo.resultName;
    }
}

TEST(DemoTable, ResultNamesAreTheOnesResultRowsHaveAlwaysCarried) {
    const std::pair<DemoId, const char*> names[] = {
        {DemoId::ClSurfaceDeformer, "CL_SurfaceDeformer"},  {DemoId::ClPostFx, "CL_PostFX"},
        {DemoId::ClParticles, "CL_Particles"},              {DemoId::ClJulia, "CL_Julia4D"},
        {DemoId::Gl3Torus, "GL3_IlluminatedTorus"},         {DemoId::Gl3Triangle, "GL3_TriangleOfDeath"},
        {DemoId::FurryCube, "GL_Furry_Cube"},               {DemoId::HdrDof, "GL_HDR_DoF"},
        {DemoId::GeometryInstancing, "GL_GeometryInstancing"}, {DemoId::SoftShadows, "GL_SoftShadows"},
        {DemoId::PointSprites, "GL_PointSprite"},           {DemoId::VertexDisplacement, "GL_VertexTextureFetch"},
        {DemoId::ToonShading, "GL_ToonShading"},            {DemoId::SimpleMesh, "GL_SimpleTorus"},
        {DemoId::Gl4Tessellation, "GL4_Tessellation"},
    };
    ASSERT_EQ(std::size(names), kDemoCount);
    for (auto [id, name] : names) EXPECT_STREQ(demoRow(id).resultName, name);
}

TEST(DemoLauncher, IdsOutsideTheTableStartNothingAndEveryOpenGlDemoMayStart) {
    DemoSettings settings;
    EXPECT_FALSE(demoMayStart(DemoId(kDemoCount), settings));
    EXPECT_FALSE(startDemo(DemoId(kDemoCount), settings));
    // One that nothing runs and that tests nothing itself may start, and asking starts nothing.
    for (const DemoRow& demo : kDemoRows) {
        if (!demo.checkBeforeStart) {
            EXPECT_TRUE(demoMayStart(demo.id, settings)) << demo.option;
        }
    }
    EXPECT_FALSE(anyDemoRunning());
}

TEST(DemoAffinity, TheCounterPicksAMaskValueNotAProcessorNumber) {
    EXPECT_EQ(demoAffinityMask(0, 4), 1u);  // processor 0
    EXPECT_EQ(demoAffinityMask(1, 4), 2u);  // processor 1
    EXPECT_EQ(demoAffinityMask(2, 4), 3u);  // processors 0 and 1
    EXPECT_EQ(demoAffinityMask(4, 4), 1u);  // wraps at the processor count
    EXPECT_EQ(demoAffinityMask(7, 1), 1u);
    EXPECT_EQ(demoAffinityMask(7, 0), 1u);  // an unknown count counts as one
}

}  // namespace
