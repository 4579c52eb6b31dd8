#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "app/app_state.h"
#include "app/command_line.h"
#include "app/long_options.h"
#include "app/command_line_help.h"
#include "app/environment_variables.h"
#include "demos/harness/demo_table.h"

namespace {

AppState parsed(const char* line) {
    AppState state;
    resetAppState(state);
    parseCommandLine(state, line);
    return state;
}

// Every field an option can set, to compare two states without naming their values.
auto optionFields(const AppState& s) {
    const DemoSettings& d = s.demo;
    return std::tie(s.onlineCheckEnabled, s.glMajorVersion, s.glMinorVersion, d.gl3TorusRadeonFix,
                    d.glRenderInClDemos, d.msaaSamples, d.winWidth, d.winHeight, d.benchLogResults,
                    d.benchDurationMs, d.closeAppEndOfDemo, s.automaticDemo, d.clDeviceType, d.clDeviceIndex,
                    d.clDeviceIndexForced, d.gl4TessLevelOuter, d.gl4TessLevelInner, d.gl4TessLevelAnim,
                    d.clSurfaceSegsX, d.clSurfaceSegsZ, d.clKernelWorkload, d.clKernelWorkloadDoCheck, d.clNativeSin,
                    d.clGlInterop, d.clExplicitWorkgroupSize, d.clKernelWorkloadMad, d.clUseLocalMem,
                    d.clParticlesGpu, d.clParticlesCpu, d.clParticlesSin, d.clJuliaAnimated, d.clJuliaRttSize,
                    s.openclSupportEnabled, s.exportXmlReport, s.exportTxtReport, s.exportJsonReport,
                    d.captureLastFrame);
}

// Text that only resembles options (no slash, wrong case, a bare slash or equals sign) changes nothing.
TEST(CommandLine, LinesWithoutAnOptionChangeNothing) {
    AppState defaults;
    resetAppState(defaults);
    for (const char* line : {static_cast<const char*>(nullptr), "", "   ", "hello world", "gl31 demo_msaa=4",
                             "/GL31 /EXP_TXT_REPORT", "/ = /demo_msaa /cl_device_index", "/gl3 /cl_"}) {
        const AppState s = parsed(line);
        EXPECT_TRUE(optionFields(s) == optionFields(defaults)) << (line ? line : "(null)");
    }
}

TEST(CommandLine, OptionsAreFoundAnywhereButOnlyInTheirOwnCase) {
    EXPECT_EQ(parsed("x/gl31y").glMinorVersion, 1);
    EXPECT_EQ(parsed("x/gl31y").glMajorVersion, 3);
    EXPECT_EQ(parsed("/GL31").glMajorVersion, 4);
    EXPECT_TRUE(parsed("--please/exp_txt_report!").exportTxtReport);
    EXPECT_FALSE(parsed("/EXP_TXT_REPORT").exportTxtReport);
}

TEST(CommandLine, LaterTableRowsWinWhereverTheyStand) {
    for (const char* line : {"/gl30 /gl32", "/gl32 /gl30", "/gl31 /gl30 /gl32"}) {
        const AppState s = parsed(line);
        EXPECT_EQ(s.glMajorVersion, 3) << line;
        EXPECT_EQ(s.glMinorVersion, 2) << line;
    }
    EXPECT_EQ(parsed("/cl_cpu /cl_gpu").demo.clDeviceType, 2u);
    EXPECT_EQ(parsed("/cl_gpu /cl_cpu").demo.clDeviceType, 2u);
    EXPECT_EQ(parsed("/bench_duration=500 /cl_duration=100").demo.benchDurationMs, 500);
    EXPECT_EQ(parsed("/cl_kernel_workload_sin=7 /cl_kernel_workload=3").demo.clKernelWorkload, 7);
}

TEST(CommandLine, ValuesAreReadOnlyDirectlyBehindTheEqualsSignAndOnlyTheFirstCounts) {
    EXPECT_EQ(parsed("/demo_win_width=abc").demo.winWidth, 600);
    EXPECT_EQ(parsed("/demo_win_width= 800").demo.winWidth, 800);  // scanf skips white space before a number
    EXPECT_EQ(parsed("/demo_win_width=1024x").demo.winWidth, 1024);
    EXPECT_EQ(parsed("/demo_win_width=640 /demo_win_width=800").demo.winWidth, 640);
    EXPECT_EQ(parsed("/demo_win_height=-3").demo.winHeight, -3);
    EXPECT_EQ(parsed("/demo_msaa=8").demo.msaaSamples, 8);
    EXPECT_FLOAT_EQ(parsed("/gl4_tess_level_outer=2.5").demo.gl4TessLevelOuter, 2.5f);
    EXPECT_FLOAT_EQ(parsed("/gl4_tess_level_inner=x").demo.gl4TessLevelInner, 8.0f);
    EXPECT_EQ(parsed("/cl_julia_rtt_size=1024").demo.clJuliaRttSize, 1024);
    EXPECT_EQ(parsed("/cl_particles_gpu=42 /cl_particles_cpu=7").demo.clParticlesCpu, 7);
    EXPECT_EQ(parsed("/cl_kernel_workload_mad=9").demo.clKernelWorkloadMad, 9);
}

TEST(CommandLine, SegmentCountsTurnZeroIntoOneAndPassNegativesThrough) {
    EXPECT_EQ(parsed("/cl_surface_segs_x=0").demo.clSurfaceSegsX, 1);
    EXPECT_EQ(parsed("/cl_surface_segs_z=0").demo.clSurfaceSegsZ, 1);
    EXPECT_EQ(parsed("/cl_surface_segs_x=-5").demo.clSurfaceSegsX, -5);
    EXPECT_EQ(parsed("/cl_surface_segs_z=64").demo.clSurfaceSegsZ, 64);
}

TEST(CommandLine, DeviceIndexIsForcedOnlyWhenItsNumberReads) {
    const DemoSettings forced = parsed("/cl_device_index=3").demo;
    EXPECT_EQ(forced.clDeviceIndex, 3);
    EXPECT_TRUE(forced.clDeviceIndexForced);
    const DemoSettings unread = parsed("/cl_device_index=z").demo;
    EXPECT_EQ(unread.clDeviceIndex, 0);
    EXPECT_FALSE(unread.clDeviceIndexForced);
}

TEST(CommandLine, PrefixOptionsAreGivenByTheLongerOnes) {
    EXPECT_TRUE(parsed("/cl_log_results_surface_deformer").demo.benchLogResults);
    // "/cl_kernel_workload_sin_do_check" contains no '=' so it sets no workload, only the check.
    const DemoSettings check = parsed("/cl_kernel_workload_sin_do_check").demo;
    EXPECT_TRUE(check.clKernelWorkloadDoCheck);
    EXPECT_EQ(check.clKernelWorkload, 0);
}

TEST(CommandLine, EveryFlagMovesItsFieldAwayFromTheDefault) {
    const AppState s = parsed(
        "/no_online_check /disable_gl3_torus_radeon_fix /disable_gl_render_in_cl_demos /bench_log_results "
        "/close_app_end_of_demo /gl4_no_tess_level_anim /cl_demo_native_sin_disabled /cl_demo_gl_interop_disabled "
        "/cl_demo_explicit_workgroup_size_disabled /cl_demo_use_local_mem /cl_particles_sin /cl_julia_not_animated "
        "/disable_cl_support /exp_xml_report /exp_txt_report /exp_json_report /demo_capture_last_frame");
    EXPECT_FALSE(s.onlineCheckEnabled);
    EXPECT_FALSE(s.demo.gl3TorusRadeonFix);
    EXPECT_FALSE(s.demo.glRenderInClDemos);
    EXPECT_TRUE(s.demo.benchLogResults);
    EXPECT_TRUE(s.demo.closeAppEndOfDemo);
    EXPECT_FALSE(s.demo.gl4TessLevelAnim);
    EXPECT_FALSE(s.demo.clNativeSin);
    EXPECT_FALSE(s.demo.clGlInterop);
    EXPECT_FALSE(s.demo.clExplicitWorkgroupSize);
    EXPECT_TRUE(s.demo.clUseLocalMem);
    EXPECT_TRUE(s.demo.clParticlesSin);
    EXPECT_FALSE(s.demo.clJuliaAnimated);
    EXPECT_FALSE(s.openclSupportEnabled);
    EXPECT_TRUE(s.exportXmlReport);
    EXPECT_TRUE(s.exportTxtReport);
    EXPECT_TRUE(s.exportJsonReport);
    EXPECT_TRUE(s.demo.captureLastFrame);
}

// The start options as they have always been spelled, each with its demo, in the order that decides between
// two of them given at once: the earlier one starts.
struct StartOption {
    const char* option;
    DemoId demo;
};
constexpr StartOption kStartOptions[] = {
    {"/start_demo_cl_deformer", DemoId::ClSurfaceDeformer},
    {"/start_demo_cl_postfx", DemoId::ClPostFx},
    {"/start_demo_cl_particles", DemoId::ClParticles},
    {"/start_demo_cl_julia", DemoId::ClJulia},
    {"/start_demo_gl3_torus", DemoId::Gl3Torus},
    {"/start_demo_gl3_triangle", DemoId::Gl3Triangle},
    {"/start_demo_gl2_furry_cube", DemoId::FurryCube},
    {"/start_demo_gl2_hdr_dof", DemoId::HdrDof},
    {"/start_demo_gl2_gi", DemoId::GeometryInstancing},
    {"/start_demo_gl2_soft_shadows", DemoId::SoftShadows},
    {"/start_demo_gl2_point_sprite", DemoId::PointSprites},
    {"/start_demo_gl2_vtf", DemoId::VertexDisplacement},
    {"/start_demo_gl2_toon", DemoId::ToonShading},
    {"/start_demo_gl2_simple_torus", DemoId::SimpleMesh},
    {"/start_demo_gl4_tessellation", DemoId::Gl4Tessellation},
};

TEST(CommandLine, EachStartOptionAsksForItsOwnDemoAndEveryDemoHasOne) {
    EXPECT_FALSE(parsed("").automaticDemo.has_value());
    for (const StartOption& given : kStartOptions) {
        const AppState s = parsed(given.option);
        ASSERT_TRUE(s.automaticDemo.has_value()) << given.option;
        EXPECT_EQ(*s.automaticDemo, given.demo) << given.option;
        EXPECT_STREQ(demoRow(given.demo).option, given.option);
    }
    // Round trip over the table: every row's option is one the parser lists, and leads back to that row.
    EXPECT_EQ(std::size(kStartOptions), kDemoCount);
    std::vector<std::string> listed;
    for (size_t i = 0; i < commandLineOptionCount(); ++i) listed.push_back(commandLineOptionText(i));
    for (const DemoRow& demo : kDemoRows) {
        EXPECT_NE(std::find(listed.begin(), listed.end(), demo.option), listed.end()) << demo.option;
        EXPECT_EQ(parsed(demo.option).automaticDemo, demo.id) << demo.option;
    }
}

TEST(CommandLine, OfTwoStartOptionsTheOneListedFirstStartsWhereverEitherStands) {
    for (size_t first = 0; first < std::size(kStartOptions); ++first) {
        for (size_t later = first + 1; later < std::size(kStartOptions); ++later) {
            const std::string a = kStartOptions[first].option, b = kStartOptions[later].option;
            for (const std::string& line : {a + " " + b, b + " " + a})
                EXPECT_EQ(parsed(line.c_str()).automaticDemo, kStartOptions[first].demo) << line;
        }
    }
}

TEST(CommandLine, KnowsFiftySevenOptionsAndNoneIsAnUnrelatedSubstringOfAnother) {
    ASSERT_EQ(commandLineOptionCount(), 57u);
    EXPECT_EQ(commandLineOptionText(57), nullptr);
    // The one intended overlap: "/cl_log_results" inside its surface-deformer twin.
    for (size_t i = 0; i < 57; ++i) {
        for (size_t j = 0; j < 57; ++j) {
            if (i == j) continue;
            const std::string a = commandLineOptionText(i), b = commandLineOptionText(j);
            if (b.find(a) == std::string::npos) continue;
            EXPECT_EQ(a, "/cl_log_results") << a << " in " << b;
        }
    }
}

TEST(CommandLine, OnlineHostTakesTheTextUpToTheNextBlankAndAloneTurnsNothingElse) {
    const AppState s = parsed("/online_host=http://127.0.0.1:8080 /exp_txt_report");
    EXPECT_STREQ(s.onlineHost, "http://127.0.0.1:8080");
    EXPECT_TRUE(s.exportTxtReport);
    EXPECT_TRUE(s.onlineCheckEnabled);
    EXPECT_STREQ(parsed("/online_host=").onlineHost, "");
    EXPECT_STREQ(parsed("").onlineHost, "");
    // A text longer than the field is cut, never written past it.
    const std::string longHost = "/online_host=http://" + std::string(400, 'a');
    EXPECT_EQ(std::string(parsed(longHost.c_str()).onlineHost).size(), AppState::kOnlineHostSize - 1);
}

// --help and --version are found by substring like every option, so neither may hide inside an option's text
// nor hold one: "/gl30--help" asks for help, and --help must not also ask for something else.
TEST(CommandLine, HelpAndVersionShareNoTextWithAnyOption) {
    for (const std::string request : {kHelpOption, kVersionOption}) {
        for (size_t i = 0; i < commandLineOptionCount(); ++i) {
            const std::string option = commandLineOptionText(i);
            EXPECT_EQ(request.find(option), std::string::npos) << option << " in " << request;
            EXPECT_EQ(option.find(request), std::string::npos) << request << " in " << option;
        }
    }
}

TEST(CommandLineHelp, RequestsAreFoundAnywhereInTheirOwnCaseAndHelpBeatsVersion) {
    EXPECT_EQ(requestedInformation(nullptr), "");
    EXPECT_EQ(requestedInformation(""), "");
    EXPECT_EQ(requestedInformation("/exp_txt_report /gl32"), "");
    EXPECT_EQ(requestedInformation("--HELP -help -version"), "");
    EXPECT_EQ(requestedInformation("/gl30--help"), helpText());
    EXPECT_EQ(requestedInformation("/exp_txt_report --version"), versionText());
    EXPECT_EQ(requestedInformation("--version --help"), helpText());
    EXPECT_EQ(versionText(), "Lumenscope 1.26.0.0\n");
}

TEST(CommandLineHelp, ListsEveryOptionOnOneLineWithItsDescriptionInOneColumn) {
    std::vector<std::string> lines;
    std::istringstream text(helpText());
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    const auto optionsHeading = std::find(lines.begin(), lines.end(), "Options:");
    const auto environmentHeading = std::find(lines.begin(), lines.end(), "Environment:");
    ASSERT_NE(optionsHeading, lines.end());
    ASSERT_NE(environmentHeading, lines.end());
    // The option lines, then one blank line before the environment's.
    const std::vector<std::string> optionLines(optionsHeading + 1, environmentHeading - 1);
    EXPECT_EQ(*(environmentHeading - 1), "");
    EXPECT_EQ(size_t(lines.end() - environmentHeading - 1), std::size(kDescribedEnvironment));

    const std::vector<OptionDescription> options = describedOptions();
    ASSERT_EQ(optionLines.size(), options.size());
    EXPECT_EQ(options.size(), commandLineOptionCount() + longOptionCount() + 2);
    size_t column = 0;
    for (size_t i = 0; i < options.size(); ++i) {
        const std::string shown = std::string(options[i].text) + (options[i].value ? options[i].value : "");
        const std::string& line = optionLines[i];
        EXPECT_EQ(line.rfind("  " + shown + "  ", 0), 0u) << line;
        ASSERT_GE(line.size(), std::string(options[i].description).size());
        const size_t at = line.size() - std::string(options[i].description).size();
        EXPECT_EQ(line.substr(at), options[i].description);
        if (i == 0) column = at;
        EXPECT_EQ(at, column) << line;
    }
}

TEST(CommandLine, JoinsArgumentsWithSingleBlanksWithoutTheProgramName) {
    const char* argv[] = {"/usr/bin/lumenscope", "/exp_txt_report", "/demo_win_width=", "640"};
    EXPECT_EQ(joinArguments(4, argv), "/exp_txt_report /demo_win_width= 640");
    EXPECT_EQ(joinArguments(1, argv), "");
    // A value split from its option by the shell is still read, as on the raw line.
    AppState s;
    resetAppState(s);
    parseCommandLine(s, joinArguments(4, argv).c_str());
    EXPECT_EQ(s.demo.winWidth, 640);
}

}  // namespace

namespace {

SplitCommandLine split(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "lumenscope");
    return splitCommandLine(int(arguments.size()), arguments.data());
}

}  // namespace

TEST(LongOptions, AreTakenOutBeforeTheOlderOptionsAreLookedFor) {
    const SplitCommandLine line = split({"--textfile=/srv/bench_log_results.prom", "/exp_txt_report"});
    EXPECT_EQ(line.error, "");
    EXPECT_EQ(line.options.textfile, "/srv/bench_log_results.prom");
    ASSERT_EQ(line.otherArguments, std::vector<std::string>{"/exp_txt_report"});
    const AppState state = parsed(line.otherArguments[0].c_str());
    EXPECT_FALSE(state.demo.benchLogResults);
    EXPECT_TRUE(state.exportTxtReport);

    const SplitCommandLine monitor = split({"--monitor", "--interval=250", "--count=3", "--format=jsonl", "--help"});
    EXPECT_EQ(monitor.error, "");
    EXPECT_TRUE(monitor.options.monitor);
    EXPECT_EQ(monitor.options.intervalMs, 250);
    EXPECT_EQ(monitor.options.count, 3);
    EXPECT_EQ(monitor.options.format, MonitorFormat::jsonl);

    const SplitCommandLine serve = split({"--serve-metrics", "--metrics-auth-file=/etc/users"});
    EXPECT_TRUE(serve.options.serveMetrics);
    EXPECT_EQ(serve.options.metricsAddress, "");
    EXPECT_EQ(serve.options.metricsAuthFile, "/etc/users");
    EXPECT_EQ(split({"--serve-metrics=0.0.0.0:9100"}).options.metricsAddress, "0.0.0.0:9100");
}

TEST(LongOptions, UnknownOrMalformedOnesAreNamedInTheError) {
    EXPECT_EQ(split({"--monitr"}).error, "unknown option --monitr (--help lists the options)");
    EXPECT_EQ(split({"--"}).error, "unknown option -- (--help lists the options)");
    EXPECT_EQ(split({"--interval=99"}).error, "--interval needs a whole number of milliseconds, at least 100");
    EXPECT_EQ(split({"--interval=1s"}).error, "--interval needs a whole number of milliseconds, at least 100");
    EXPECT_EQ(split({"--count=0"}).error, "--count needs a whole number, at least 1");
    EXPECT_EQ(split({"--format=xml"}).error, "--format takes csv or jsonl");
    EXPECT_EQ(split({"--json=yes"}).error, "--json takes no value");
    EXPECT_EQ(split({"--textfile"}).error, "--textfile needs a value: --textfile=PATH");
    EXPECT_EQ(split({"--textfile="}).error, "--textfile needs a path after '='");
    // The first fault is the one reported.
    EXPECT_EQ(split({"--count=x", "--bogus"}).error, "--count needs a whole number, at least 1");
}
