#include "app/command_line.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <string>

#include "app/app_state.h"
#include "app/long_options.h"
#include "demos/harness/demo_table.h"

namespace {

// One option: its text, what --help and the manual page say about it, and what finding it does. `at` points at
// the option's text inside the line. A /start_demo_... option has no `apply`: it asks for `demo`'s automatic
// start.
struct CommandLineOption {
    const char* text;
    const char* value;  // placeholder of the number behind '=', null for a flag
    const char* description;
    void (*apply)(AppState& state, const char* at);
    DemoId demo = {};
};

// Value options, every one a demo setting, read their number with the option's full text as the scanf format,
// so the number must follow the equals sign directly; when it cannot be read the field keeps its value.
template <int DemoSettings::*Field>
void readInt(AppState& s, const char* at, const char* format) {
    int value = 0;
    if (std::sscanf(at, format, &value) == 1) s.demo.*Field = value;
}

template <float DemoSettings::*Field>
void readFloat(AppState& s, const char* at, const char* format) {
    float value = 0.0f;
    if (std::sscanf(at, format, &value) == 1) s.demo.*Field = value;
}

// Segment counts are the one value with a rule: 0 would leave the surface without a grid, so it becomes 1.
template <int DemoSettings::*Field>
void readSegments(AppState& s, const char* at, const char* format) {
    int value = 0;
    if (std::sscanf(at, format, &value) == 1) s.demo.*Field = value == 0 ? 1 : value;
}

// The options before the start options, and those between them and the one start option listed last.
constexpr auto kOptionsBeforeDemos = std::to_array<CommandLineOption>({
    {"/no_online_check", nullptr, "do not ask the web site whether a newer version exists",
     [](AppState& s, const char*) { s.onlineCheckEnabled = false; }},
    {"/gl30", nullptr, "ask for an OpenGL 3.0 context instead of 4.5",
     [](AppState& s, const char*) { s.glMajorVersion = 3, s.glMinorVersion = 0; }},
    {"/gl31", nullptr, "ask for an OpenGL 3.1 context; beats /gl30",
     [](AppState& s, const char*) { s.glMajorVersion = 3, s.glMinorVersion = 1; }},
    {"/gl32", nullptr, "ask for an OpenGL 3.2 context; beats /gl30 and /gl31",
     [](AppState& s, const char*) { s.glMajorVersion = 3, s.glMinorVersion = 2; }},
    {"/disable_gl3_torus_radeon_fix", nullptr, "torus demo: bound its light loop by a uniform, not a constant",
     [](AppState& s, const char*) { s.demo.gl3TorusRadeonFix = false; }},
    {"/disable_gl_render_in_cl_demos", nullptr, "mesh deformer demo: compute the surface but do not draw it",
     [](AppState& s, const char*) { s.demo.glRenderInClDemos = false; }},
    {"/demo_msaa=", "N", "MSAA samples of a demo started without its options dialog",
     [](AppState& s, const char* at) { readInt<&DemoSettings::msaaSamples>(s, at, "/demo_msaa=%d"); }},
    {"/demo_win_width=", "N", "demo window width in pixels",
     [](AppState& s, const char* at) { readInt<&DemoSettings::winWidth>(s, at, "/demo_win_width=%d"); }},
    {"/demo_win_height=", "N", "demo window height in pixels",
     [](AppState& s, const char* at) { readInt<&DemoSettings::winHeight>(s, at, "/demo_win_height=%d"); }},
    {"/cl_log_results", nullptr, "append each demo's result to ./bench_result.csv when it ends",
     [](AppState& s, const char*) { s.demo.benchLogResults = true; }},
    {"/bench_log_results", nullptr, "the same as /cl_log_results",
     [](AppState& s, const char*) { s.demo.benchLogResults = true; }},
    // Has no field of its own: it turns result logging on through "/cl_log_results", whose text it contains.
    {"/cl_log_results_surface_deformer", nullptr, "the same as /cl_log_results", [](AppState&, const char*) {}},
    {"/cl_duration=", "MS", "end a demo after MS milliseconds; 0 runs it until closed",
     [](AppState& s, const char* at) { readInt<&DemoSettings::benchDurationMs>(s, at, "/cl_duration=%d"); }},
    {"/bench_duration=", "MS", "the same as /cl_duration=, which it beats",
     [](AppState& s, const char* at) { readInt<&DemoSettings::benchDurationMs>(s, at, "/bench_duration=%d"); }},
    {"/close_app_end_of_demo", nullptr, "close the main window when a demo ends",
     [](AppState& s, const char*) { s.demo.closeAppEndOfDemo = true; }},
});

constexpr auto kOptionsAfterDemos = std::to_array<CommandLineOption>({
    {"/cl_gpu", nullptr, "OpenCL demos run on a GPU device (the default)",
     [](AppState& s, const char*) { s.demo.clDeviceType = kClDeviceTypeGpu; }},
    {"/cl_cpu", nullptr, "OpenCL demos run on a CPU device; beats /cl_gpu",
     [](AppState& s, const char*) { s.demo.clDeviceType = kClDeviceTypeCpu; }},
    {"/cl_device_index=", "N", "OpenCL demos use device N of the selected platform",
     [](AppState& s, const char* at) {
         int value = 0;
         if (std::sscanf(at, "/cl_device_index=%d", &value) == 1) {
             s.demo.clDeviceIndex = value;
             s.demo.clDeviceIndexForced = true;
         }
     }},
    {"/gl4_tess_level_outer=", "X", "tessellation demo's outer level",
     [](AppState& s, const char* at) {
         readFloat<&DemoSettings::gl4TessLevelOuter>(s, at, "/gl4_tess_level_outer=%f");
     }},
    {"/gl4_tess_level_inner=", "X", "tessellation demo's inner level",
     [](AppState& s, const char* at) {
         readFloat<&DemoSettings::gl4TessLevelInner>(s, at, "/gl4_tess_level_inner=%f");
     }},
    {"/gl4_no_tess_level_anim", nullptr, "tessellation demo's levels stay fixed",
     [](AppState& s, const char*) { s.demo.gl4TessLevelAnim = false; }},
    {"/cl_surface_segs_x=", "N", "mesh deformer grid segments along X; 0 counts as 1",
     [](AppState& s, const char* at) { readSegments<&DemoSettings::clSurfaceSegsX>(s, at, "/cl_surface_segs_x=%d"); }},
    {"/cl_surface_segs_z=", "N", "mesh deformer grid segments along Z; 0 counts as 1",
     [](AppState& s, const char* at) { readSegments<&DemoSettings::clSurfaceSegsZ>(s, at, "/cl_surface_segs_z=%d"); }},
    {"/cl_kernel_workload=", "N", "mesh deformer: N extra sine iterations per work item",
     [](AppState& s, const char* at) { readInt<&DemoSettings::clKernelWorkload>(s, at, "/cl_kernel_workload=%d"); }},
    {"/cl_kernel_workload_sin=", "N", "the same as /cl_kernel_workload=, which it beats",
     [](AppState& s, const char* at) {
         readInt<&DemoSettings::clKernelWorkload>(s, at, "/cl_kernel_workload_sin=%d");
     }},
    {"/cl_kernel_workload_sin_do_check", nullptr, "mesh deformer: write its workload's sum to opencl_sincossum.txt",
     [](AppState& s, const char*) { s.demo.clKernelWorkloadDoCheck = true; }},
    {"/cl_demo_native_sin_disabled", nullptr, "OpenCL kernels use sin instead of native_sin",
     [](AppState& s, const char*) { s.demo.clNativeSin = false; }},
    {"/cl_demo_gl_interop_disabled", nullptr, "no OpenCL-OpenGL sharing in OpenCL demos (they never share)",
     [](AppState& s, const char*) { s.demo.clGlInterop = false; }},
    {"/cl_demo_explicit_workgroup_size_disabled", nullptr, "enqueue OpenCL kernels without a local work size",
     [](AppState& s, const char*) { s.demo.clExplicitWorkgroupSize = false; }},
    {"/cl_kernel_workload_mad=", "N", "mesh deformer: N extra multiply-add iterations per work item",
     [](AppState& s, const char* at) {
         readInt<&DemoSettings::clKernelWorkloadMad>(s, at, "/cl_kernel_workload_mad=%d");
     }},
    {"/cl_demo_use_local_mem", nullptr, "post FX demo: run the kernel that uses local memory",
     [](AppState& s, const char*) { s.demo.clUseLocalMem = true; }},
    {"/cl_particles_gpu=", "N", "particle count of the particles demo on a GPU device",
     [](AppState& s, const char* at) { readInt<&DemoSettings::clParticlesGpu>(s, at, "/cl_particles_gpu=%d"); }},
    {"/cl_particles_cpu=", "N", "particle count of the particles demo on a CPU device",
     [](AppState& s, const char* at) { readInt<&DemoSettings::clParticlesCpu>(s, at, "/cl_particles_cpu=%d"); }},
    {"/cl_particles_sin", nullptr, "particles demo: run the kernel variant with a sine",
     [](AppState& s, const char*) { s.demo.clParticlesSin = true; }},
    {"/cl_julia_not_animated", nullptr, "Julia set demo: the set stands still",
     [](AppState& s, const char*) { s.demo.clJuliaAnimated = false; }},
    {"/cl_julia_rtt_size=", "N", "Julia set demo: size in pixels of its square texture",
     [](AppState& s, const char* at) { readInt<&DemoSettings::clJuliaRttSize>(s, at, "/cl_julia_rtt_size=%d"); }},
    {"/disable_cl_support", nullptr, "do not look for OpenCL platforms and devices",
     [](AppState& s, const char*) { s.openclSupportEnabled = false; }},
    {"/exp_xml_report", nullptr, "write report.xml to the working directory and exit",
     [](AppState& s, const char*) { s.exportXmlReport = true; }},
    {"/exp_txt_report", nullptr, "write report.txt to the working directory and exit",
     [](AppState& s, const char*) { s.exportTxtReport = true; }},
    {"/exp_json_report", nullptr, "write report.json to the working directory and exit",
     [](AppState& s, const char*) { s.exportJsonReport = true; }},
    // The text up to the next blank; the online exchange decides whether it is a usable server.
    {"/online_host=", "URL", "send the update check and submissions to this server (scheme://host[:port])",
     [](AppState& s, const char* at) {
         static_assert(AppState::kOnlineHostSize == 256, "the format below reads 255 characters");
         char host[AppState::kOnlineHostSize] = {};
         if (std::sscanf(at, "/online_host=%255s", host) == 1) std::memcpy(s.onlineHost, host, sizeof host);
     }},
    {"/demo_capture_last_frame", nullptr, "save a demo's last frame as demo_<result name>.png",
     [](AppState& s, const char*) { s.demo.captureLastFrame = true; }},
});

// The start options of the demo table whose place in the list is `listedLast`, in table order.
template <bool listedLast>
constexpr auto demoOptions() {
    constexpr size_t count = size_t(std::ranges::count(kDemoRows, listedLast, &DemoRow::optionListedLast));
    std::array<CommandLineOption, count> options{};
    size_t i = 0;
    for (const DemoRow& demo : kDemoRows)
        if (demo.optionListedLast == listedLast)
            options[i++] = {demo.option, nullptr, demo.optionHelp, nullptr, demo.id};
    return options;
}

template <size_t... Sizes>
constexpr auto joined(const std::array<CommandLineOption, Sizes>&... parts) {
    std::array<CommandLineOption, (Sizes + ...)> all{};
    size_t i = 0;
    ((std::ranges::copy(parts, all.begin() + i), i += parts.size()), ...);
    return all;
}

constexpr auto kOptions = joined(kOptionsBeforeDemos, demoOptions<false>(), kOptionsAfterDemos, demoOptions<true>());
static_assert(kOptions.size() == 57, "the command line knows 57 options");

constexpr bool everyOptionIsDescribed() {
    for (const CommandLineOption& option : kOptions) {
        if (!option.description || !*option.description) return false;
        const bool takesValue = option.text[std::char_traits<char>::length(option.text) - 1] == '=';
        if (takesValue != (option.value != nullptr)) return false;
    }
    return true;
}
static_assert(everyOptionIsDescribed(), "every option has a description, and a value placeholder if it ends in '='");

}  // namespace

void parseCommandLine(AppState& state, const char* text) {
    if (!text) return;
    for (const CommandLineOption& option : kOptions) {
        const char* at = std::strstr(text, option.text);
        if (!at) continue;
        if (option.apply)
            option.apply(state, at);
        else if (!state.automaticDemo)
            state.automaticDemo = option.demo;
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

std::vector<OptionDescription> describedOptions() {
    std::vector<OptionDescription> rows;
    for (const CommandLineOption& option : kOptions) rows.push_back({option.text, option.value, option.description});
    for (const OptionDescription& option : describedLongOptions()) rows.push_back(option);
    rows.push_back({kHelpOption, nullptr, "print this list of options and exit"});
    rows.push_back({kVersionOption, nullptr, "print the program's name and version and exit"});
    return rows;
}

bool helpRequested(const char* text) { return text && std::strstr(text, kHelpOption); }

bool versionRequested(const char* text) { return text && std::strstr(text, kVersionOption); }
