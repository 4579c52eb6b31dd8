// The OpenCL demos run by the program as one-second headless benchmarks on this machine's OpenCL CPU device
// and OpenGL driver: result rows, captured last frames, the check-sum file, and how a start fails without a
// device, without OpenCL, or with a kernel that does not build.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "compute/opencl_discovery.h"
#include "tests/demos/demo_program.h"
#include "unit/compute_test_log.h"
#include "support/program_copy.h"

namespace {

using namespace demo_program;

const std::vector<std::string> kBenchmarkOptions = {"/bench_duration=1000", "/bench_log_results",
                                                    "/demo_capture_last_frame", "/no_online_check"};

std::vector<std::string> benchmark(std::vector<std::string> options) {
    options.insert(options.end(), kBenchmarkOptions.begin(), kBenchmarkOptions.end());
    return options;
}

// The OpenCL devices this machine has, as the program finds them.
struct ClMachine {
    bool hasCpu = false;
    bool hasGpu = false;
    std::string cpuName;
};

const ClMachine& clMachine() {
    static const ClMachine machine = [] {
        ClMachine m;
        TestLog log;
        compute::discoverOpenCl(log.log());
        if (const compute::ClDeviceRecord* cpu = compute::firstCpuDevice(0)) {
            m.hasCpu = true;
            m.cpuName = cpu->name;
        }
        for (uint32_t i = 0; i < compute::getClPlatformCount(); ++i)
            m.hasGpu = m.hasGpu || compute::platformHasGpuDevice(i);
        compute::releaseOpenCl();
        compute::freeOpenClPlatforms();
        return m;
    }();
    return machine;
}

#define REQUIRE_CL_CPU() \
    ASSERT_TRUE(clMachine().hasCpu) << "no OpenCL CPU device on platform 0: the README's set-up installs pocl"

// A one-second run's row: the CPU device's columns, the window's size, the options' columns, and no frame
// rate, as the loop leaves before the first one-second sample.
void expectCpuRow(const ProgramResult& run, const std::string& testName, const char* localMemColumn = "global mem",
                  const char* explicitColumn = "YES") {
    ASSERT_EQ(run.exitCode, 0) << run.standardError;
    ASSERT_EQ(run.csvLines.size(), 2u) << run.standardError;
    const std::vector<std::string> c = csvColumns(run.csvLines[1]);
    ASSERT_EQ(c.size(), 19u) << run.csvLines[1];
    EXPECT_EQ(c[2], clMachine().cpuName.substr(0, 127));
    EXPECT_EQ(c[3], "CPU");
    EXPECT_GT(std::atoi(c[4].c_str()), 0) << "compute units";
    EXPECT_EQ(c[7], testName);
    EXPECT_EQ(c[9], "600");
    EXPECT_EQ(c[10], "600");
    EXPECT_EQ(c[11], "NO");
    EXPECT_EQ(c[12], "YES");
    EXPECT_EQ(c[13], explicitColumn);
    EXPECT_EQ(c[14], localMemColumn);
    EXPECT_EQ(c[15], "0");
    EXPECT_EQ(c[16], "10000");
    EXPECT_EQ(c[17], "0");
    EXPECT_NE(run.log.find("Lumenscope shutdown ok."), std::string::npos);
}

bool near(const Picture::Rgb& c, int r, int g, int b, int tolerance) {
    return std::abs(c.r - r) <= tolerance && std::abs(c.g - g) <= tolerance && std::abs(c.b - b) <= tolerance;
}

std::string rgb(const Picture::Rgb& c) {
    return std::to_string(c.r) + "," + std::to_string(c.g) + "," + std::to_string(c.b);
}

// The corner logo's lens ring, as in every demo of the GL utility layer.
void expectLogo(const Picture& frame) {
    const Picture::Rgb ring = frame.at(536, 600 - 104);
    EXPECT_GT(ring.b, 90) << "logo ring " << rgb(ring);
}

// The share of pixels in a square of `side` at (x, y) from the top left that are brighter than `level`.
double litShare(const Picture& frame, int x, int y, int side, int level) {
    int lit = 0;
    for (int j = y; j < y + side; ++j)
        for (int i = x; i < x + side; ++i) lit += frame.at(i, j).brightest() > level;
    return double(lit) / (side * side);
}

TEST(ClDemoRuns, DeformerDrawsTheLitSurfaceOverGreyAndWithoutDrawingKeepsOnlyTheGrey) {
    REQUIRE_CL_CPU();
    {
        const ScratchDirectory dir("cl_deformer");
        const ProgramResult run = runHeadless(dir, benchmark({"/start_demo_cl_deformer", "/cl_cpu"}));
        const std::string name = "CL_SurfaceDeformer(X=511_Z=511_sin=0)";
        expectCpuRow(run, name);
        const Picture frame(dir / ("demo_" + name + ".png"));
        ASSERT_TRUE(frame.valid());
        for (auto [x, y] : {std::pair{3, 3}, {596, 3}, {3, 596}}) EXPECT_TRUE(near(frame.at(x, y), 77, 77, 77, 2));
        // The surface fills the lower middle; its colour is never the clear grey.
        int surface = 0;
        for (int x = 100; x < 500; x += 20) surface += !near(frame.at(x, 420), 77, 77, 77, 3);
        EXPECT_GE(surface, 18);
        // The bump in the middle stands above the rest.
        EXPECT_FALSE(near(frame.at(300, 150), 77, 77, 77, 3)) << rgb(frame.at(300, 150));
        expectLogo(frame);
        EXPECT_FALSE(fs::exists(dir / "opencl_sincossum.txt"));
    }
    {
        const ScratchDirectory dir("cl_deformer_undrawn");
        const ProgramResult run =
            runHeadless(dir, benchmark({"/start_demo_cl_deformer", "/cl_cpu", "/disable_gl_render_in_cl_demos"}));
        expectCpuRow(run, "CL_SurfaceDeformer(X=511_Z=511_sin=0)");
        const Picture frame(dir / "demo_CL_SurfaceDeformer(X=511_Z=511_sin=0).png");
        ASSERT_TRUE(frame.valid());
        for (int y = 10; y < 460; y += 30)
            for (int x = 10; x < 590; x += 30) EXPECT_TRUE(near(frame.at(x, y), 77, 77, 77, 1)) << x << "," << y;
        expectLogo(frame);
    }
}

// What the check buffer sums to with a sine load and no multiply-add load, in the kernel's float maths:
// each vertex adds the load times sqrt(cos(pi x)^2 + sin(pi y)^2).
double sineCheckSum(int width, int height, int sinLoad) {
    const float pi = 4.0f * std::atan(1.0f);
    double sum = 0;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            float cs = 0;
            for (int i = 0; i < sinLoad; ++i) {
                const float a = std::cos(pi * float(x)), b = std::sin(pi * float(y));
                cs += std::sqrt(a * a + b * b);
            }
            sum += cs;
        }
    }
    return sum;
}

TEST(ClDemoRuns, DeformerWithACheckedSineLoadAppendsItsSumAndNamesTheSegmentsThatRan) {
    REQUIRE_CL_CPU();
    const ScratchDirectory dir("cl_deformer_check");
    // No segments along X is one segment: two columns of vertices.
    const std::vector<std::string> options = {"/start_demo_cl_deformer",   "/cl_cpu",
                                              "/cl_surface_segs_x=0",      "/cl_surface_segs_z=63",
                                              "/cl_kernel_workload_sin=3", "/cl_kernel_workload_sin_do_check"};
    const ProgramResult first = runHeadless(dir, benchmark(options));
    expectCpuRow(first, "CL_SurfaceDeformer(X=1_Z=63_sin=3)");
    const ProgramResult second = runHeadless(dir, benchmark(options));
    ASSERT_EQ(second.exitCode, 0);

    const std::vector<std::string> sums = readLines(dir / "opencl_sincossum.txt");
    ASSERT_EQ(sums.size(), 2u) << "one line a run, appended";
    const double expected = sineCheckSum(2, 64, 3);
    for (const std::string& line : sums) {
        double value = 0;
        ASSERT_EQ(std::sscanf(line.c_str(), "sum = %lf", &value), 1) << line;
        EXPECT_NEAR(value, expected, expected * 1e-4) << line;
        EXPECT_EQ(line.find('.') + 7, line.size()) << "six decimals: " << line;
    }
}

TEST(ClDemoRuns, ADeformerThatCopiesNothingStillWaitsForEachStep) {
    REQUIRE_CL_CPU();
    const ScratchDirectory dir("cl_deformer_waits");
    // A heavy step whose results nobody reads back: frames that only queued steps would come by the
    // thousand a second, far faster than the device runs them.
    const ProgramResult run = runHeadless(
        dir, {"/start_demo_cl_deformer", "/cl_cpu", "/cl_surface_segs_x=63", "/cl_surface_segs_z=63",
              "/cl_kernel_workload_mad=400", "/cl_kernel_workload_sin_do_check", "/disable_gl_render_in_cl_demos",
              "/bench_duration=3000", "/bench_log_results", "/no_online_check"});
    ASSERT_EQ(run.exitCode, 0);
    ASSERT_EQ(run.csvLines.size(), 2u) << run.standardError;
    const std::vector<std::string> c = csvColumns(run.csvLines[1]);
    ASSERT_EQ(c.size(), 19u);
    EXPECT_LT(std::atoi(c[17].c_str()), 100) << "maximum FPS: " << run.csvLines[1];
}

TEST(ClDemoRuns, PostFxShowsTheRedTorusGlowingInEachKernelForm) {
    REQUIRE_CL_CPU();
    struct Form {
        const char* option;
        const char* localMemColumn;
        const char* explicitColumn;
    };
    for (const Form form : {Form{"", "global mem", "YES"}, Form{"/cl_demo_use_local_mem", "local mem", "YES"},
                            Form{"/cl_demo_explicit_workgroup_size_disabled", "global mem", "NO"}}) {
        SCOPED_TRACE(form.option);
        const ScratchDirectory dir(std::string("cl_postfx") + (*form.option ? form.option + 4 : ""));
        std::vector<std::string> options = {"/start_demo_cl_postfx", "/cl_cpu"};
        if (*form.option) options.push_back(form.option);
        const ProgramResult run = runHeadless(dir, benchmark(options));
        expectCpuRow(run, "CL_PostFX", form.localMemColumn, form.explicitColumn);
        const Picture frame(dir / "demo_CL_PostFX.png");
        ASSERT_TRUE(frame.valid());
        // The dark blue clear colour in the corners and through the hole, red all around the ring.
        EXPECT_TRUE(near(frame.at(5, 5), 0, 0, 25, 3)) << rgb(frame.at(5, 5));
        EXPECT_TRUE(near(frame.at(300, 290), 0, 0, 25, 6)) << rgb(frame.at(300, 290));
        for (auto [x, y] : {std::pair{80, 300}, {520, 250}, {200, 420}, {420, 150}}) {
            const Picture::Rgb c = frame.at(x, y);
            EXPECT_TRUE(c.r > 120 && c.r > c.g + 60 && c.r > c.b + 60) << x << "," << y << ": " << rgb(c);
        }
        // The filter blurs the torus's outline: from its red to the background over several pixels.
        int ramp = 0;
        for (int x = 0; x < 60; ++x) {
            const int r = frame.at(x, 300).r;
            ramp += r > 20 && r < 100;
        }
        EXPECT_GE(ramp, 3) << "a hard edge: the filter did not run";
        expectLogo(frame);
    }
}

TEST(ClDemoRuns, ParticlesGatherTowardsThePointerInTheMiddleAndLeaveTheCorners) {
    REQUIRE_CL_CPU();
    const ScratchDirectory dir("cl_particles");
    const ProgramResult run = runHeadless(dir, benchmark({"/start_demo_cl_particles", "/cl_cpu"}));
    expectCpuRow(run, "CL_Particles");
    EXPECT_NE(run.log.find("OpenCL 1M particle - global_work_items: "), std::string::npos);
    const Picture frame(dir / "demo_CL_Particles.png");
    ASSERT_TRUE(frame.valid());
    // Placed evenly at the start, pulled in since: the middle is crowded, the corners thin out.
    const double middle = litShare(frame, 200, 200, 200, 100);
    EXPECT_GT(middle, 0.5);
    for (auto [x, y] : {std::pair{0, 0}, {570, 0}, {0, 570}}) EXPECT_LT(litShare(frame, x, y, 30, 100), middle / 2);
    // Points take one colour, a light one in the first seconds.
    int points = 0;
    for (int x = 250; x < 350; ++x) {
        const Picture::Rgb c = frame.at(x, 150);
        if (c.brightest() <= 100) continue;
        ++points;
        EXPECT_TRUE(c.r > 150 && c.g > 150 && c.b > 100) << rgb(c);
    }
    EXPECT_GT(points, 20);
    expectLogo(frame);
}

TEST(ClDemoRuns, JuliaSetStandsLitInTheMiddleOfABlackPicture) {
    REQUIRE_CL_CPU();
    const ScratchDirectory dir("cl_julia");
    // The panel's platform 0 is the one Julia runs on; a smaller picture keeps the run short.
    const ProgramResult run = runHeadless(
        dir, benchmark({"/start_demo_cl_julia", "/cl_cpu", "/cl_julia_rtt_size=256", "/cl_julia_not_animated"}));
    expectCpuRow(run, "CL_Julia4D");
    const Picture frame(dir / "demo_CL_Julia4D.png");
    ASSERT_TRUE(frame.valid());
    for (auto [x, y] : {std::pair{3, 3}, {596, 3}, {3, 596}}) EXPECT_TRUE(near(frame.at(x, y), 0, 0, 0, 1));
    // Lit in the starting colour, a blue.
    const Picture::Rgb middle = frame.at(300, 300);
    EXPECT_GT(middle.brightest(), 40) << rgb(middle);
    EXPECT_GT(middle.b, middle.r) << rgb(middle);
    EXPECT_GT(litShare(frame, 150, 150, 300, 20), 0.2);
    expectLogo(frame);
}

TEST(ClDemoRuns, AStartWithoutADeviceOfTheTypeOrWithoutOpenClIsRefusedAndTheProgramGoesOn) {
    struct Case {
        std::vector<std::string> options;
        std::vector<std::pair<std::string, std::string>> env;
        const char* message;
    };
    std::vector<Case> cases;
    if (!clMachine().hasGpu)
        cases.push_back({{"/start_demo_cl_julia"}, {}, "OpenCL GPU not supported on the selected platform.\n\rBye..."});
    const ScratchDirectory noDrivers("cl_no_drivers");
    cases.push_back({{"/start_demo_cl_particles", "/cl_cpu"},
                     {{"OCL_ICD_VENDORS", noDrivers.operator const fs::path&().string()}},
                     "OpenCL CPU not supported on the selected platform.\n\rBye..."});
    cases.push_back({{"/start_demo_cl_deformer", "/cl_cpu", "/disable_cl_support"},
                     {},
                     "OpenCL CPU not supported on the selected platform.\n\rBye..."});
    for (const Case& c : cases) {
        SCOPED_TRACE(c.options[0] + " " + c.options.back());
        const ScratchDirectory dir("cl_refused");
        const ProgramResult run = runHeadless(dir, benchmark(c.options), c.env);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_NE(run.standardError.find(c.message), std::string::npos) << run.standardError;
        EXPECT_TRUE(run.csvLines.empty());
        EXPECT_NE(run.log.find("Lumenscope shutdown ok."), std::string::npos);
    }
}

// The program beside a media folder of the test's own, which it takes before the source tree's.
class ProgramWithOwnMedia {
public:
    explicit ProgramWithOwnMedia(const fs::path& dir) : m_binary(dir / "lumenscope") {
        m_ready = placeProgramIn(dir, LUMENSCOPE_BINARY);
        fs::create_directories(dir / "media");
    }
    bool ready() const { return m_ready; }

    ProgramResult run(const fs::path& dir, const std::vector<std::string>& args) const {
        const pid_t child = fork();
        if (child == 0) {
            if (chdir(dir.c_str()) != 0) _exit(126);
            unsetenv("DISPLAY");
            if (!freopen("stderr.txt", "w", stderr)) _exit(125);
            std::vector<char*> argv;
            std::string binary = m_binary.string();
            argv.push_back(binary.data());
            for (const std::string& arg : args) argv.push_back(const_cast<char*>(arg.c_str()));
            argv.push_back(nullptr);
            execv(binary.c_str(), argv.data());
            _exit(127);
        }
        return finish(child, dir);
    }

private:
    fs::path m_binary;
    bool m_ready = false;
};

TEST(ClDemoRuns, AKernelThatDoesNotBuildOrIsMissingIsToldAndTheProgramGoesOn) {
    REQUIRE_CL_CPU();
    const ScratchDirectory dir("cl_broken_kernels");
    const ProgramWithOwnMedia program(dir);
    ASSERT_TRUE(program.ready());
    std::ofstream(dir / "media" / "particles.cl") << "__kernel void updateParticleWithoutCollision(\n{ oops }\n";

    // Started by its option, the demo writes the row of a kernel error and shows the compiler's log.
    ProgramResult run = program.run(dir, benchmark({"/start_demo_cl_particles", "/cl_cpu"}));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.standardError.find("CL kernel compil error: "), std::string::npos) << run.standardError;
    EXPECT_NE(run.standardError.find("error"), run.standardError.rfind("CL kernel compil error: "))
        << "the compiler's log follows: " << run.standardError;
    ASSERT_EQ(run.csvLines.size(), 2u) << run.standardError;
    EXPECT_EQ(csvColumns(run.csvLines[1])[7], "CL_Particles(kernel ERROR)");
    EXPECT_FALSE(fs::exists(dir / "demo_CL_Particles.png"));
    EXPECT_NE(run.log.find("Lumenscope shutdown ok."), std::string::npos);

    // Julia reads its kernel from the media folder only.
    fs::remove(dir / "bench_result.csv");
    run = program.run(dir, benchmark({"/start_demo_cl_julia", "/cl_cpu"}));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.standardError.find("Ouch! Where is the OpenCL kernel for Julia demo????\n\rBye..."),
              std::string::npos)
        << run.standardError;
    EXPECT_TRUE(run.csvLines.empty());
    EXPECT_NE(run.log.find("Lumenscope shutdown ok."), std::string::npos);
}

}  // namespace
