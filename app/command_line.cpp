#include "command_line.h"

#include <array>
#include <cstdio>
#include <cstring>

#include "app_state.h"

namespace {

// One option: its text and what finding it does. `at` points at the option's text inside the line.
struct CommandLineOption {
    const char* text;
    void (*apply)(AppState& state, const char* at);
};

// Value options read their number with the option's full text as the scanf format, so the number must follow
// the equals sign directly; when it cannot be read the field keeps its value.
template <int AppState::*Field>
void readInt(AppState& s, const char* at, const char* format) {
    int value = 0;
    if (std::sscanf(at, format, &value) == 1) s.*Field = value;
}

template <float AppState::*Field>
void readFloat(AppState& s, const char* at, const char* format) {
    float value = 0.0f;
    if (std::sscanf(at, format, &value) == 1) s.*Field = value;
}

// Segment counts are the one value with a rule: 0 would leave the surface without a grid, so it becomes 1.
template <int AppState::*Field>
void readSegments(AppState& s, const char* at, const char* format) {
    int value = 0;
    if (std::sscanf(at, format, &value) == 1) s.*Field = value == 0 ? 1 : value;
}

constexpr auto kOptions = std::to_array<CommandLineOption>({
    {"/no_online_check", [](AppState& s, const char*) { s.onlineCheckEnabled = false; }},
    {"/gl30", [](AppState& s, const char*) { s.glMajorVersion = 3, s.glMinorVersion = 0; }},
    {"/gl31", [](AppState& s, const char*) { s.glMajorVersion = 3, s.glMinorVersion = 1; }},
    {"/gl32", [](AppState& s, const char*) { s.glMajorVersion = 3, s.glMinorVersion = 2; }},
    {"/disable_gl3_torus_radeon_fix", [](AppState& s, const char*) { s.gl3TorusRadeonFix = false; }},
    {"/disable_gl_render_in_cl_demos", [](AppState& s, const char*) { s.glRenderInClDemos = false; }},
    {"/demo_msaa=", [](AppState& s, const char* at) { readInt<&AppState::demoMsaa>(s, at, "/demo_msaa=%d"); }},
    {"/demo_win_width=",
     [](AppState& s, const char* at) { readInt<&AppState::demoWinWidth>(s, at, "/demo_win_width=%d"); }},
    {"/demo_win_height=",
     [](AppState& s, const char* at) { readInt<&AppState::demoWinHeight>(s, at, "/demo_win_height=%d"); }},
    {"/cl_log_results", [](AppState& s, const char*) { s.benchLogResults = true; }},
    {"/bench_log_results", [](AppState& s, const char*) { s.benchLogResults = true; }},
    // Has no field of its own: it turns result logging on through "/cl_log_results", whose text it contains.
    {"/cl_log_results_surface_deformer", [](AppState&, const char*) {}},
    {"/cl_duration=",
     [](AppState& s, const char* at) { readInt<&AppState::benchDuration>(s, at, "/cl_duration=%d"); }},
    {"/bench_duration=",
     [](AppState& s, const char* at) { readInt<&AppState::benchDuration>(s, at, "/bench_duration=%d"); }},
    {"/close_app_end_of_demo", [](AppState& s, const char*) { s.closeAppEndOfDemo = true; }},
    {"/start_demo_cl_deformer", [](AppState& s, const char*) { s.startDemoClDeformer = true; }},
    {"/start_demo_cl_postfx", [](AppState& s, const char*) { s.startDemoClPostfx = true; }},
    {"/start_demo_cl_particles", [](AppState& s, const char*) { s.startDemoClParticles = true; }},
    {"/start_demo_cl_julia", [](AppState& s, const char*) { s.startDemoClJulia = true; }},
    {"/start_demo_gl3_torus", [](AppState& s, const char*) { s.startDemoGl3Torus = true; }},
    {"/start_demo_gl3_triangle", [](AppState& s, const char*) { s.startDemoGl3Triangle = true; }},
    {"/start_demo_gl2_furry_cube", [](AppState& s, const char*) { s.startDemoGl2FurryCube = true; }},
    {"/start_demo_gl2_hdr_dof", [](AppState& s, const char*) { s.startDemoGl2HdrDof = true; }},
    {"/start_demo_gl2_gi", [](AppState& s, const char*) { s.startDemoGl2Gi = true; }},
    {"/start_demo_gl2_soft_shadows", [](AppState& s, const char*) { s.startDemoGl2SoftShadows = true; }},
    {"/start_demo_gl2_point_sprite", [](AppState& s, const char*) { s.startDemoGl2PointSprite = true; }},
    {"/start_demo_gl2_vtf", [](AppState& s, const char*) { s.startDemoGl2Vtf = true; }},
    {"/start_demo_gl2_toon", [](AppState& s, const char*) { s.startDemoGl2Toon = true; }},
    {"/start_demo_gl2_simple_torus", [](AppState& s, const char*) { s.startDemoGl2SimpleTorus = true; }},
    {"/cl_gpu", [](AppState& s, const char*) { s.clDeviceType = 4; }},
    {"/cl_cpu", [](AppState& s, const char*) { s.clDeviceType = 2; }},
    {"/cl_device_index=",
     [](AppState& s, const char* at) {
         int value = 0;
         if (std::sscanf(at, "/cl_device_index=%d", &value) == 1) {
             s.clDeviceIndex = value;
             s.clDeviceIndexForced = true;
         }
     }},
    {"/gl4_tess_level_outer=",
     [](AppState& s, const char* at) {
         readFloat<&AppState::gl4TessLevelOuter>(s, at, "/gl4_tess_level_outer=%f");
     }},
    {"/gl4_tess_level_inner=",
     [](AppState& s, const char* at) {
         readFloat<&AppState::gl4TessLevelInner>(s, at, "/gl4_tess_level_inner=%f");
     }},
    {"/gl4_no_tess_level_anim", [](AppState& s, const char*) { s.gl4TessLevelAnim = false; }},
    {"/cl_surface_segs_x=",
     [](AppState& s, const char* at) {
         readSegments<&AppState::clSurfaceSegsX>(s, at, "/cl_surface_segs_x=%d");
     }},
    {"/cl_surface_segs_z=",
     [](AppState& s, const char* at) {
         readSegments<&AppState::clSurfaceSegsZ>(s, at, "/cl_surface_segs_z=%d");
     }},
    {"/cl_kernel_workload=",
     [](AppState& s, const char* at) { readInt<&AppState::clKernelWorkload>(s, at, "/cl_kernel_workload=%d"); }},
    {"/cl_kernel_workload_sin=",
     [](AppState& s, const char* at) {
         readInt<&AppState::clKernelWorkload>(s, at, "/cl_kernel_workload_sin=%d");
     }},
    {"/cl_kernel_workload_sin_do_check", [](AppState& s, const char*) { s.clKernelWorkloadDoCheck = true; }},
    {"/cl_demo_native_sin_disabled", [](AppState& s, const char*) { s.clNativeSin = false; }},
    {"/cl_demo_gl_interop_disabled", [](AppState& s, const char*) { s.clGlInterop = false; }},
    {"/cl_demo_explicit_workgroup_size_disabled",
     [](AppState& s, const char*) { s.clExplicitWorkgroupSize = false; }},
    {"/cl_kernel_workload_mad=",
     [](AppState& s, const char* at) {
         readInt<&AppState::clKernelWorkloadMad>(s, at, "/cl_kernel_workload_mad=%d");
     }},
    {"/cl_demo_use_local_mem", [](AppState& s, const char*) { s.clUseLocalMem = true; }},
    {"/cl_particles_gpu=",
     [](AppState& s, const char* at) { readInt<&AppState::clParticlesGpu>(s, at, "/cl_particles_gpu=%d"); }},
    {"/cl_particles_cpu=",
     [](AppState& s, const char* at) { readInt<&AppState::clParticlesCpu>(s, at, "/cl_particles_cpu=%d"); }},
    {"/cl_particles_sin", [](AppState& s, const char*) { s.clParticlesSin = true; }},
    {"/cl_julia_not_animated", [](AppState& s, const char*) { s.clJuliaAnimated = false; }},
    {"/cl_julia_rtt_size=",
     [](AppState& s, const char* at) { readInt<&AppState::clJuliaRttSize>(s, at, "/cl_julia_rtt_size=%d"); }},
    {"/disable_cl_support", [](AppState& s, const char*) { s.openclSupportEnabled = false; }},
    {"/exp_xml_report", [](AppState& s, const char*) { s.exportXmlReport = true; }},
    {"/exp_txt_report", [](AppState& s, const char*) { s.exportTxtReport = true; }},
    {"/exp_json_report", [](AppState& s, const char*) { s.exportJsonReport = true; }},
    // The text up to the next blank; the online exchange decides whether it is a usable server.
    {"/online_host=",
     [](AppState& s, const char* at) {
         static_assert(AppState::kOnlineHostSize == 256, "the format below reads 255 characters");
         char host[AppState::kOnlineHostSize] = {};
         if (std::sscanf(at, "/online_host=%255s", host) == 1) std::memcpy(s.onlineHost, host, sizeof host);
     }},
    {"/demo_capture_last_frame", [](AppState& s, const char*) { s.demoCaptureLastFrame = true; }},
    {"/start_demo_gl4_tessellation", [](AppState& s, const char*) { s.startDemoGl4Tessellation = true; }},
});
static_assert(kOptions.size() == 57, "the command line knows 57 options");

}  // namespace

void parseCommandLine(AppState& state, const char* text) {
    if (!text) return;
    for (const CommandLineOption& option : kOptions) {
        if (const char* at = std::strstr(text, option.text)) option.apply(state, at);
    }
}

std::string joinArguments(int argc, const char* const* argv) {
    std::string line;
    for (int i = 1; i < argc; ++i) {
        if (i > 1) line += ' ';
        line += argv[i];
    }
    return line;
}

size_t commandLineOptionCount() { return kOptions.size(); }

const char* commandLineOptionText(size_t index) { return index < kOptions.size() ? kOptions[index].text : nullptr; }
