// The harness's threads on a real driver, inside this process: several demos at once, a second start of a
// running demo, stopping, the throttle, and the end of a benchmark run closing the program's window.
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "tests/demos/demo_program.h"
#include "demos/demo_context.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_launcher.h"

namespace {

using namespace std::chrono_literals;

std::atomic<int> gMainWindowCloses{0};
std::atomic<uint32_t> gThrottleMs{0};

class HarnessThreads : public ::testing::Test {
protected:
    void SetUp() override {
        // Headless whatever display the test runs under; rows land in this test's directory.
        unsetenv("DISPLAY");
        previous = std::filesystem::current_path();
        std::filesystem::current_path(dir);
        DemoHost host;
        host.closeMainWindow = [] { ++gMainWindowCloses; };
        host.throttleMs = [] { return gThrottleMs.load(); };
        setDemoHost(host);
        gMainWindowCloses = 0;
        gThrottleMs = 0;
        settings.winWidth = settings.winHeight = 64;
        settings.benchLogResults = true;
    }
    void TearDown() override {
        for (const DemoRow& demo : kDemoRows) demoContext(demo.id).stopRequested = true;
        waitForDemosToEnd();
        std::filesystem::current_path(previous);
    }

    // Waits until the demo draws; false when it never does (no context on this machine).
    static bool drawing(DemoId id) {
        const DemoContext& context = demoContext(id);
        for (auto until = std::chrono::steady_clock::now() + 60s; std::chrono::steady_clock::now() < until;) {
            if (context.ready && context.stats.totalFrames > 2) return true;
            if (!anyDemoRunning()) return false;
            std::this_thread::sleep_for(10ms);
        }
        return false;
    }

    demo_program::ScratchDirectory dir{"harness_threads"};
    std::filesystem::path previous;
    DemoSettings settings;
};

TEST_F(HarnessThreads, TwoDemosRunAtOnceAndARunningDemoDoesNotStartTwice) {
    ASSERT_TRUE(startDemo(DemoId::Gl3Triangle, settings));
    ASSERT_TRUE(drawing(DemoId::Gl3Triangle)) << "the triangle never drew";
    EXPECT_FALSE(startDemo(DemoId::Gl3Triangle, settings));
    ASSERT_TRUE(startDemo(DemoId::Gl4Tessellation, settings));
    ASSERT_TRUE(drawing(DemoId::Gl4Tessellation));

    // Stopping one leaves the other drawing.
    EXPECT_NE(stopDemo(demoContext(DemoId::Gl3Triangle)), DemoStop::NotRunning);
    const uint32_t framesBefore = demoContext(DemoId::Gl4Tessellation).stats.totalFrames;
    std::this_thread::sleep_for(200ms);
    EXPECT_GT(demoContext(DemoId::Gl4Tessellation).stats.totalFrames, framesBefore);
    EXPECT_NE(stopDemo(demoContext(DemoId::Gl4Tessellation)), DemoStop::NotRunning);
    waitForDemosToEnd();
    EXPECT_FALSE(anyDemoRunning());
    EXPECT_EQ(stopDemo(demoContext(DemoId::Gl3Triangle)), DemoStop::NotRunning);  // no thread any more

    // Both wrote their row when they were stopped; neither ran as a benchmark, so nothing closes.
    const std::vector<std::string> rows = demo_program::readLines(dir / "bench_result.csv");
    ASSERT_EQ(rows.size(), 3u);
    std::string names = rows[1] + rows[2];
    EXPECT_NE(names.find("GL3_TriangleOfDeath"), std::string::npos);
    EXPECT_NE(names.find("GL4_Tessellation"), std::string::npos);
    EXPECT_EQ(gMainWindowCloses, 0);

    // The ended demo starts again on a fresh record.
    settings.benchDurationMs = 300;
    ASSERT_TRUE(startDemo(DemoId::Gl3Triangle, settings));
    waitForDemosToEnd();
    EXPECT_TRUE(demoContext(DemoId::Gl3Triangle).finished);
    EXPECT_GE(demoContext(DemoId::Gl3Triangle).stats.elapsedMs, 300u);
    EXPECT_EQ(demo_program::readLines(dir / "bench_result.csv").size(), 4u);
}

TEST_F(HarnessThreads, TheThrottleSlowsEveryFrameAndABenchmarkEndClosesTheProgramsWindow) {
    gThrottleMs = 50;
    settings.benchDurationMs = 1000;
    settings.closeAppEndOfDemo = true;
    settings.benchLogResults = false;
    ASSERT_TRUE(startDemo(DemoId::Gl3Triangle, settings));
    waitForDemosToEnd();
    const DemoContext& context = demoContext(DemoId::Gl3Triangle);
    ASSERT_TRUE(context.finished) << "the benchmark run did not finish";
    // At most 20 rounds a second, plus the drawing time.
    EXPECT_LE(context.stats.totalFrames, 21u);
    EXPECT_GE(context.stats.totalFrames, 5u);
    EXPECT_EQ(gMainWindowCloses, 1);
    EXPECT_FALSE(std::filesystem::exists(dir / "bench_result.csv"));
}

}  // namespace
