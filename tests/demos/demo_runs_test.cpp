// Each OpenGL 3/4 demo run by the program as a one-second headless benchmark on this machine's driver, with
// its result row and captured last frame checked.
#include <gtest/gtest.h>

#include <cmath>

#include "tests/demos/demo_program.h"

namespace {

using namespace demo_program;

const std::vector<std::string> kBenchmarkOptions = {"/bench_duration=1000", "/bench_log_results",
                                                    "/demo_capture_last_frame", "/no_online_check"};

std::vector<std::string> withOptions(std::vector<std::string> first) {
    first.insert(first.end(), kBenchmarkOptions.begin(), kBenchmarkOptions.end());
    return first;
}

// The row of a one-second run: the demo's name and size, and no frame rate, since the loop leaves at the
// round that would take the first one-second sample.
void expectOneSecondRow(const ProgramResult& run, const char* testName) {
    ASSERT_EQ(run.exitCode, 0) << run.standardError;
    ASSERT_EQ(run.csvLines.size(), 2u) << run.standardError;
    EXPECT_EQ(run.csvLines[0],
              "Renderer,Driver,CL name,CL type,CL CU,CL CU Clock(MHz),CL Driver,Test name,MSAA,width,height,"
              "CL GL interop,CL native sin,CL explicit wkgrp size,CL local mem,AVG FPS,MIN FPS,MAX FPS,Misc");
    const std::vector<std::string> c = csvColumns(run.csvLines[1]);
    ASSERT_EQ(c.size(), 19u) << run.csvLines[1];
    EXPECT_EQ(c[7], testName);
    EXPECT_EQ(c[8], "0");
    EXPECT_EQ(c[9], "600");
    EXPECT_EQ(c[10], "600");
    EXPECT_EQ(c[11], "NO");
    EXPECT_EQ(c[12], "YES");
    EXPECT_EQ(c[13], "YES");
    EXPECT_EQ(c[14], "global mem");
    EXPECT_EQ(c[15], "0");
    EXPECT_EQ(c[16], "10000");
    EXPECT_EQ(c[17], "0");
    EXPECT_EQ(c[18], "NULL");
    EXPECT_NE(run.log.find("Lumenscope shutdown ok."), std::string::npos);
}

bool near(const Picture::Rgb& c, int r, int g, int b, int tolerance) {
    return std::abs(c.r - r) <= tolerance && std::abs(c.g - g) <= tolerance && std::abs(c.b - b) <= tolerance;
}

// The corner logo: its lens ring lies above the lower right corner, clear of every demo's picture.
void expectLogo(const Picture& frame) {
    const Picture::Rgb ring = frame.at(536, 600 - 104);
    EXPECT_GT(ring.b, 90) << "logo ring";
    EXPECT_GT(ring.b, ring.r) << "logo ring";
}

TEST(DemoRuns, TriangleShowsItsThreeCornerColoursOnBlack) {
    const ScratchDirectory dir("triangle");
    const ProgramResult run = runHeadless(dir, withOptions({"/start_demo_gl3_triangle"}));
    expectOneSecondRow(run, "GL3_TriangleOfDeath");
    const Picture frame(dir / "demo_GL3_TriangleOfDeath.png");
    ASSERT_TRUE(frame.valid());
    ASSERT_EQ(frame.width(), 600);
    ASSERT_EQ(frame.height(), 600);
    // The corners sit at 40 pixels from the left, right and bottom edges and at the top middle.
    const Picture::Rgb red = frame.at(60, 550), green = frame.at(450, 550), blue = frame.at(300, 60);
    EXPECT_TRUE(red.r > 200 && red.g < 50 && red.b < 50) << red.r << "," << red.g << "," << red.b;
    EXPECT_TRUE(green.g > 170 && green.r < 80 && green.b < 40) << green.r << "," << green.g << "," << green.b;
    EXPECT_TRUE(blue.b > 200 && blue.r < 50 && blue.g < 50) << blue.r << "," << blue.g << "," << blue.b;
    for (auto [x, y] : {std::pair{5, 5}, {594, 5}, {5, 594}, {150, 150}}) EXPECT_TRUE(near(frame.at(x, y), 0, 0, 0, 2));
    expectLogo(frame);
}

TEST(DemoRuns, TorusIsLitAroundItsHoleAgainstTheDarkBlueBackground) {
    for (const char* variant : {"", "/disable_gl3_torus_radeon_fix"}) {
        const ScratchDirectory dir(std::string("torus") + (*variant ? "_loop_over_uniform" : ""));
        std::vector<std::string> args = withOptions({"/start_demo_gl3_torus"});
        if (*variant) args.push_back(variant);
        const ProgramResult run = runHeadless(dir, args);
        expectOneSecondRow(run, "GL3_IlluminatedTorus");
        const Picture frame(dir / "demo_GL3_IlluminatedTorus.png");
        ASSERT_TRUE(frame.valid()) << variant;
        const Picture::Rgb background = frame.at(300, 300);  // the hole
        EXPECT_TRUE(near(background, 0, 0, 25, 3)) << background.r << "," << background.g << "," << background.b;
        EXPECT_TRUE(near(frame.at(3, 3), 0, 0, 25, 3)) << variant;
        int lit = 0;
        for (int i = 0; i < 16; ++i) {
            const double angle = i * 3.14159265 / 8;
            const Picture::Rgb c = frame.at(300 + int(208 * std::cos(angle)), 300 + int(208 * std::sin(angle)));
            if (c.brightest() > 60) ++lit;
        }
        EXPECT_GE(lit, 14) << variant;
        expectLogo(frame);
    }
}

TEST(DemoRuns, TessellationSubdividesTheTriangleIntoManyLinesGreenAboveRedBelow) {
    const ScratchDirectory dir("tessellation");
    const ProgramResult run = runHeadless(dir, withOptions({"/start_demo_gl4_tessellation"}));
    expectOneSecondRow(run, "GL4_Tessellation");
    const Picture frame(dir / "demo_GL4_Tessellation.png");
    ASSERT_TRUE(frame.valid());
    // One scan line across the middle of the triangle crosses many lines: an undivided triangle would
    // cross only its two edges.
    int crossings = 0;
    bool onLine = false;
    for (int x = 60; x < 540; ++x) {
        const bool lit = frame.at(x, 330).brightest() > 40;
        if (lit && !onLine) ++crossings;
        onLine = lit;
    }
    EXPECT_GE(crossings, 10);
    // Lines near the apex are green, near the base red.
    int greenAbove = 0, redBelow = 0;
    for (int x = 280; x < 320; ++x) {
        const Picture::Rgb top = frame.at(x, 120);
        if (top.brightest() > 40 && top.g > top.r) ++greenAbove;
    }
    for (int x = 100; x < 440; ++x) {
        const Picture::Rgb bottom = frame.at(x, 555);
        if (bottom.brightest() > 40 && bottom.r > bottom.g) ++redBelow;
    }
    EXPECT_GT(greenAbove, 0);
    EXPECT_GT(redBelow, 0);
    EXPECT_TRUE(near(frame.at(5, 5), 0, 0, 0, 2));
    expectLogo(frame);
}

TEST(DemoRuns, MultisamplingIsAskedForOnTheCommandLineAndReported) {
    const ScratchDirectory dir("msaa");
    const ProgramResult run = runHeadless(dir, withOptions({"/start_demo_gl3_triangle", "/demo_msaa=4"}));
    ASSERT_EQ(run.exitCode, 0);
    ASSERT_EQ(run.csvLines.size(), 2u);
    const std::vector<std::string> c = csvColumns(run.csvLines[1]);
    ASSERT_EQ(c.size(), 19u);
    EXPECT_GT(std::atoi(c[8].c_str()), 0) << run.csvLines[1];
    const Picture frame(dir / "demo_GL3_TriangleOfDeath.png");
    ASSERT_TRUE(frame.valid());
    EXPECT_GT(frame.at(300, 60).b, 200);
}

TEST(DemoRuns, AContextBelowTheDemosVersionIsRefusedWithoutAResultRow) {
    struct Case {
        const char* option;
        const char* glVersion;
        const char* message;
    };
    for (const Case& c : {Case{"/start_demo_gl3_torus", "3.0", "Ouch! This demo requires at least an OpenGL 3.1 support."},
                          Case{"/start_demo_gl4_tessellation", "3.3",
                               "Ouch! This demo requires at least an OpenGL 4.0 support."}}) {
        const ScratchDirectory dir(std::string("refused_") + c.glVersion);
        const ProgramResult run = runHeadless(dir, withOptions({c.option}), {{"MESA_GL_VERSION_OVERRIDE", c.glVersion}});
        EXPECT_EQ(run.exitCode, 0) << c.option;
        EXPECT_NE(run.standardError.find(c.message), std::string::npos) << run.standardError;
        EXPECT_TRUE(run.csvLines.empty()) << c.option;
        EXPECT_FALSE(fs::exists(dir / "demo_GL3_IlluminatedTorus.png"));
        EXPECT_FALSE(fs::exists(dir / "demo_GL4_Tessellation.png"));
        EXPECT_NE(run.log.find("Lumenscope shutdown ok."), std::string::npos);
    }
}

TEST(DemoRuns, AThreeOneContextRunsTheTorusOnTheOlderShadingLanguage) {
    const ScratchDirectory dir("torus_glsl140");
    const ProgramResult run = runHeadless(dir, withOptions({"/start_demo_gl3_torus"}), {{"MESA_GL_VERSION_OVERRIDE", "3.1"}});
    expectOneSecondRow(run, "GL3_IlluminatedTorus");
    const Picture frame(dir / "demo_GL3_IlluminatedTorus.png");
    ASSERT_TRUE(frame.valid());
    EXPECT_GT(frame.at(300 + 208, 300).brightest(), 60);
}

TEST(DemoRuns, WithoutAnyOpenGlDriverADemoStartShowsTheFailureAndTheProgramGoesOn) {
    const ScratchDirectory dir("no_egl");
    // No EGL vendor library can be found: no context of any kind.
    const ProgramResult run = runHeadless(dir, withOptions({"/start_demo_gl3_triangle"}),
                                {{"__EGL_VENDOR_LIBRARY_FILENAMES", (dir / "none.json").string()}});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.standardError.find("OpenGL 3.2 window creation failed!"), std::string::npos) << run.standardError;
    EXPECT_TRUE(run.csvLines.empty());
    EXPECT_NE(run.log.find("Lumenscope shutdown ok."), std::string::npos);
}

}  // namespace
