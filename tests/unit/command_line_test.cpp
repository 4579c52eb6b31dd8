#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "app/app_state.h"
#include "app/command_line.h"
#include "app/command_line_help.h"

namespace {

AppState parsed(const char* line) {
    AppState state;
    resetAppState(state);
    parseCommandLine(state, line);
    return state;
}

// Every field an option can set, to compare two states without naming their values.
auto optionFields(const AppState& s) {
    return std::tie(s.onlineCheckEnabled, s.glMajorVersion, s.glMinorVersion, s.gl3TorusRadeonFix,
                    s.glRenderInClDemos, s.demoMsaa, s.demoWinWidth, s.demoWinHeight, s.benchLogResults,
                    s.benchDuration, s.closeAppEndOfDemo, s.startDemoClDeformer, s.startDemoClPostfx,
                    s.startDemoClParticles, s.startDemoClJulia, s.startDemoGl3Torus, s.startDemoGl3Triangle,
                    s.startDemoGl2FurryCube, s.startDemoGl2HdrDof, s.startDemoGl2Gi, s.startDemoGl2SoftShadows,
                    s.startDemoGl2PointSprite, s.startDemoGl2Vtf, s.startDemoGl2Toon, s.startDemoGl2SimpleTorus,
                    s.clDeviceType, s.clDeviceIndex, s.clDeviceIndexForced, s.gl4TessLevelOuter, s.gl4TessLevelInner,
                    s.gl4TessLevelAnim, s.clSurfaceSegsX, s.clSurfaceSegsZ, s.clKernelWorkload,
                    s.clKernelWorkloadDoCheck, s.clNativeSin, s.clGlInterop, s.clExplicitWorkgroupSize,
                    s.clKernelWorkloadMad, s.clUseLocalMem, s.clParticlesGpu, s.clParticlesCpu, s.clParticlesSin,
                    s.clJuliaAnimated, s.clJuliaRttSize, s.openclSupportEnabled, s.exportXmlReport,
                    s.exportTxtReport, s.exportJsonReport, s.demoCaptureLastFrame, s.startDemoGl4Tessellation);
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
    EXPECT_EQ(parsed("/cl_cpu /cl_gpu").clDeviceType, 2u);
    EXPECT_EQ(parsed("/cl_gpu /cl_cpu").clDeviceType, 2u);
    EXPECT_EQ(parsed("/bench_duration=500 /cl_duration=100").benchDuration, 500);
    EXPECT_EQ(parsed("/cl_kernel_workload_sin=7 /cl_kernel_workload=3").clKernelWorkload, 7);
}

TEST(CommandLine, ValuesAreReadOnlyDirectlyBehindTheEqualsSignAndOnlyTheFirstCounts) {
    EXPECT_EQ(parsed("/demo_win_width=abc").demoWinWidth, 600);
    EXPECT_EQ(parsed("/demo_win_width= 800").demoWinWidth, 800);  // scanf skips white space before a number
    EXPECT_EQ(parsed("/demo_win_width=1024x").demoWinWidth, 1024);
    EXPECT_EQ(parsed("/demo_win_width=640 /demo_win_width=800").demoWinWidth, 640);
    EXPECT_EQ(parsed("/demo_win_height=-3").demoWinHeight, -3);
    EXPECT_EQ(parsed("/demo_msaa=8").demoMsaa, 8);
    EXPECT_FLOAT_EQ(parsed("/gl4_tess_level_outer=2.5").gl4TessLevelOuter, 2.5f);
    EXPECT_FLOAT_EQ(parsed("/gl4_tess_level_inner=x").gl4TessLevelInner, 8.0f);
    EXPECT_EQ(parsed("/cl_julia_rtt_size=1024").clJuliaRttSize, 1024);
    EXPECT_EQ(parsed("/cl_particles_gpu=42 /cl_particles_cpu=7").clParticlesCpu, 7);
    EXPECT_EQ(parsed("/cl_kernel_workload_mad=9").clKernelWorkloadMad, 9);
}

TEST(CommandLine, SegmentCountsTurnZeroIntoOneAndPassNegativesThrough) {
    EXPECT_EQ(parsed("/cl_surface_segs_x=0").clSurfaceSegsX, 1);
    EXPECT_EQ(parsed("/cl_surface_segs_z=0").clSurfaceSegsZ, 1);
    EXPECT_EQ(parsed("/cl_surface_segs_x=-5").clSurfaceSegsX, -5);
    EXPECT_EQ(parsed("/cl_surface_segs_z=64").clSurfaceSegsZ, 64);
}

TEST(CommandLine, DeviceIndexIsForcedOnlyWhenItsNumberReads) {
    const AppState forced = parsed("/cl_device_index=3");
    EXPECT_EQ(forced.clDeviceIndex, 3);
    EXPECT_TRUE(forced.clDeviceIndexForced);
    const AppState unread = parsed("/cl_device_index=z");
    EXPECT_EQ(unread.clDeviceIndex, 0);
    EXPECT_FALSE(unread.clDeviceIndexForced);
}

TEST(CommandLine, PrefixOptionsAreGivenByTheLongerOnes) {
    const AppState s = parsed("/cl_log_results_surface_deformer");
    EXPECT_TRUE(s.benchLogResults);
    // "/cl_kernel_workload_sin_do_check" contains no '=' so it sets no workload, only the check.
    const AppState check = parsed("/cl_kernel_workload_sin_do_check");
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
    EXPECT_FALSE(s.gl3TorusRadeonFix);
    EXPECT_FALSE(s.glRenderInClDemos);
    EXPECT_TRUE(s.benchLogResults);
    EXPECT_TRUE(s.closeAppEndOfDemo);
    EXPECT_FALSE(s.gl4TessLevelAnim);
    EXPECT_FALSE(s.clNativeSin);
    EXPECT_FALSE(s.clGlInterop);
    EXPECT_FALSE(s.clExplicitWorkgroupSize);
    EXPECT_TRUE(s.clUseLocalMem);
    EXPECT_TRUE(s.clParticlesSin);
    EXPECT_FALSE(s.clJuliaAnimated);
    EXPECT_FALSE(s.openclSupportEnabled);
    EXPECT_TRUE(s.exportXmlReport);
    EXPECT_TRUE(s.exportTxtReport);
    EXPECT_TRUE(s.exportJsonReport);
    EXPECT_TRUE(s.demoCaptureLastFrame);
}

TEST(CommandLine, EachAutoStartOptionSetsOnlyItsOwnFlag) {
    struct Case {
        const char* option;
        bool AppState::*field;
    };
    const Case cases[] = {
        {"/start_demo_cl_deformer", &AppState::startDemoClDeformer},
        {"/start_demo_cl_postfx", &AppState::startDemoClPostfx},
        {"/start_demo_cl_particles", &AppState::startDemoClParticles},
        {"/start_demo_cl_julia", &AppState::startDemoClJulia},
        {"/start_demo_gl3_torus", &AppState::startDemoGl3Torus},
        {"/start_demo_gl3_triangle", &AppState::startDemoGl3Triangle},
        {"/start_demo_gl2_furry_cube", &AppState::startDemoGl2FurryCube},
        {"/start_demo_gl2_hdr_dof", &AppState::startDemoGl2HdrDof},
        {"/start_demo_gl2_gi", &AppState::startDemoGl2Gi},
        {"/start_demo_gl2_soft_shadows", &AppState::startDemoGl2SoftShadows},
        {"/start_demo_gl2_point_sprite", &AppState::startDemoGl2PointSprite},
        {"/start_demo_gl2_vtf", &AppState::startDemoGl2Vtf},
        {"/start_demo_gl2_toon", &AppState::startDemoGl2Toon},
        {"/start_demo_gl2_simple_torus", &AppState::startDemoGl2SimpleTorus},
        {"/start_demo_gl4_tessellation", &AppState::startDemoGl4Tessellation},
    };
    for (const Case& given : cases) {
        const AppState s = parsed(given.option);
        for (const Case& other : cases) EXPECT_EQ(s.*(other.field), &given == &other) << given.option;
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
    ASSERT_NE(optionsHeading, lines.end());
    const std::vector<std::string> optionLines(optionsHeading + 1, lines.end());

    const std::vector<OptionDescription> options = describedOptions();
    ASSERT_EQ(optionLines.size(), options.size());
    EXPECT_EQ(options.size(), commandLineOptionCount() + 2);
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
    EXPECT_EQ(s.demoWinWidth, 640);
}

}  // namespace
