#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

#include "demos/harness/demo_affinity.h"
#include "demos/harness/demo_catalogue.h"
#include "demos/harness/demo_launcher.h"
#include "demos/harness/demo_requirements.h"

namespace {

DemoCapabilities everything() {
    DemoCapabilities caps;
    caps.openGl20 = caps.framebufferObjects = caps.pointSprites = caps.drawInstanced = caps.gpuShader4 = true;
    caps.maxDrawBuffers = 8;
    caps.maxVertexTextureUnits = 16;
    return caps;
}

TEST(DemoRequirements, EachEngineRowIsRefusedForWhatItLacksAndTheOthersNeedNothing) {
    for (int row = 0; row < kOpenGlDemoRows; ++row) EXPECT_EQ(openGlDemoRequirementFailure(row, everything()), nullptr);
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

TEST(DemoCatalogue, EveryRowStartsOneRecordAndEveryRecordLeadsBackToItsRows) {
    std::set<int> slotsSeen;
    for (DemoTable table : {DemoTable::OpenGl, DemoTable::OpenCl}) {
        for (int row = 0; row < demoTableRows(table); ++row) {
            DemoSlot slot = kDemoSlotCount;
            uint32_t deviceType = 99;
            ASSERT_TRUE(demoSlotForRow(table, row, &slot, &deviceType));
            EXPECT_EQ(demoEntry(slot).slot, slot);
            EXPECT_EQ(demoRowForSlot(slot, deviceType), row);
            EXPECT_EQ(demoEntry(slot).family == DemoFamily::OpenCl, table == DemoTable::OpenCl) << row;
            if (table == DemoTable::OpenCl) {
                EXPECT_EQ(deviceType, row % 2 == 0 ? 4u : 2u);
            }
            slotsSeen.insert(slot);
        }
        DemoSlot slot;
        uint32_t deviceType;
        EXPECT_FALSE(demoSlotForRow(table, -1, &slot, &deviceType));
        EXPECT_FALSE(demoSlotForRow(table, demoTableRows(table), &slot, &deviceType));
    }
    EXPECT_EQ(slotsSeen.size(), size_t(kDemoSlotCount));
}

TEST(DemoLauncher, RowsOutsideTheTablesStartNothingAndEveryOpenGlDemoOfThisBuildMayStart) {
    DemoSettings settings;
    for (auto [table, row] : {std::pair(DemoTable::OpenGl, -1), std::pair(DemoTable::OpenGl, kOpenGlDemoRows),
                              std::pair(DemoTable::OpenCl, kOpenClDemoRows)}) {
        EXPECT_FALSE(demoMayStart(table, row, settings)) << row;
        EXPECT_FALSE(startDemo(table, row, settings)) << row;
    }
    for (int row = 0; row < kOpenGlDemoRows; ++row) {
        DemoSlot slot;
        uint32_t deviceType;
        ASSERT_TRUE(demoSlotForRow(DemoTable::OpenGl, row, &slot, &deviceType));
        // Every OpenGL demo is part of this build; one that nothing runs and that tests nothing itself may
        // start, and asking starts nothing.
        EXPECT_TRUE(demoEntry(slot).makeScene != nullptr) << row;
        if (!demoEntry(slot).checkBeforeStart) {
            EXPECT_TRUE(demoMayStart(DemoTable::OpenGl, row, settings)) << row;
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
