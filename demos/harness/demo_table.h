#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>

#include "demos/harness/demo_scene.h"
#include "demos/harness/demo_settings.h"
#include "demos/gl_utility/render_window_gl.h"

// Every demo of the program, a row each: the /start_demo_... option that starts it at start-up, its row in a
// picker of the main window, the name of its result row, and how the harness runs it. The command line, the
// pickers, the automatic start and the harness all read this table; a new demo is a row here, the maker of
// its scene declared below, and its scene file.
//
// The command line builds its option table from this one while it compiles, so the option library and the
// manual page writer read the texts here without linking any demo.

// The demos in table order, which is the order their options are listed in: of two /start_demo_... options
// given at once, the one listed first starts.
enum class DemoId : uint8_t {
    ClSurfaceDeformer,
    ClPostFx,
    ClParticles,
    ClJulia,
    Gl3Torus,
    Gl3Triangle,
    FurryCube,
    HdrDof,
    GeometryInstancing,
    SoftShadows,
    PointSprites,
    VertexDisplacement,
    ToonShading,
    SimpleMesh,
    Gl4Tessellation,
};

// The two demo pickers of the main window. An OpenCL demo stands in its picker twice: the row that runs it
// on a GPU device and, below it, the row that runs it on a CPU device.
enum class DemoPicker : uint8_t { OpenGl, OpenCl };

// What a picker row is called, what the options dialog says about it, and where a full benchmark of it lives.
struct DemoDescriptor {
    const char* title;
    const char* description;
    const char* benchmarkUrl;  // empty: no benchmark page exists
};

// What the options dialog shows under a demo without description, and for a demo without benchmark page.
constexpr const char* kNoDemoDescriptionText = "No description available for this demo.";
constexpr const char* kBenchmarkAvailableText = "A full-featured benchmark of this demo is available here:";
constexpr const char* kNoBenchmarkText = "No benchmark is available for this demo.";

// The three ways a demo renders, which decide its timer, its lock and where its FPS show.
enum class DemoFamily {
    Engine,     // through the scene-graph engine: one at a time inside it, FPS drawn in the picture
    OwnOpenGl,  // through the GL utility layer, FPS in the window title
    OpenCl,     // computes with OpenCL, draws through the GL utility layer, FPS in the title
};

// What the OpenGL Start button tests of the driver before it starts the demo (demo_requirements.h).
enum class DemoNeeds : uint8_t {
    Nothing,
    OpenGl20,
    TwoRenderTargets,    // OpenGL 2.0 and two draw buffers
    InstancedDrawing,    // GL_EXT_gpu_shader4 and instanced drawing
    FramebufferObjects,  // OpenGL 2.0 and framebuffer objects
    PointSprites,        // OpenGL 2.0 and point sprites
    VertexTextures,      // OpenGL 2.0 and a vertex texture unit
};

struct DemoRow {
    DemoId id;

    // The command line.
    const char* option;              // "/start_demo_...": starts the demo at start-up
    const char* optionHelp;          // what --help and the manual page say of it
    bool optionListedLast = false;   // listed after every other option instead of beside the other start options

    // The main window.
    DemoPicker picker;
    int pickerRow;                   // of an OpenCL demo, its GPU row
    DemoDescriptor shown;            // that row
    DemoDescriptor shownOnCpu = {};  // the CPU row below it, for an OpenCL demo
    DemoNeeds needs = DemoNeeds::Nothing;
    // An OpenCL Start warns when GL interop is asked for and the device cannot share with OpenGL.
    bool warnsWithoutGlInterop = false;

    // The run.
    // The "Test name" of its result row and the name of its captured frame; the scene may add a detail of the
    // run behind it (DemoScene::resultDetail).
    const char* resultName;
    DemoFamily family;
    uint32_t contextKind;         // the RenderWindowGL context kind
    bool tickTimer = false;       // runs on the coarse process-wide timer instead of its own
    bool setsAffinity = false;    // pins its thread by the demo-thread counter
    const char* windowFailureText;  // shown when the window's context cannot be made
    std::unique_ptr<DemoScene> (*makeScene)();
    // Run on the starting thread before anything else; shows its own message and returns false to refuse the
    // start. Null: no check. `deviceType` is the OpenCL device type of the start (4 GPU, 2 CPU), else 0.
    bool (*checkBeforeStart)(const DemoSettings& settings, uint32_t deviceType) = nullptr;
};

// The makers of the demos' scenes, one scene file each.
std::unique_ptr<DemoScene> makeGl4TessellationDemo();
std::unique_ptr<DemoScene> makeGl3TorusDemo();
std::unique_ptr<DemoScene> makeGl3TriangleDemo();
std::unique_ptr<DemoScene> makeClJuliaDemo();
std::unique_ptr<DemoScene> makeClParticlesDemo();
std::unique_ptr<DemoScene> makeClSurfaceDeformerDemo();
std::unique_ptr<DemoScene> makeClPostFxDemo();
std::unique_ptr<DemoScene> makeFurryCubeDemo();
std::unique_ptr<DemoScene> makeHdrDofDemo();
std::unique_ptr<DemoScene> makeGeometryInstancingDemo();
std::unique_ptr<DemoScene> makeSoftShadowsDemo();
std::unique_ptr<DemoScene> makePointSpriteDemo();
std::unique_ptr<DemoScene> makeVertexDisplacementDemo();
std::unique_ptr<DemoScene> makeCelShadingDemo();
std::unique_ptr<DemoScene> makeSimpleMeshDemo();

// The test of an OpenCL start (demos/opencl): the platform chosen on the OpenCL panel must have a device of
// exactly the start's type. Shows the refusal and returns false otherwise.
bool checkOpenClDemoStart(const DemoSettings& settings, uint32_t deviceType);

namespace demo_table_text {

inline constexpr const char* kGl32WindowFailed = "OpenGL 3.2 window creation failed!";
inline constexpr const char* kGl3WindowFailed = "OpenGL 3 window creation failed!";
inline constexpr const char* kGl40WindowFailed = "OpenGL 4.0 window creation failed!";
inline constexpr const char* kEngineWindowFailed = "could not create a render window.";

}  // namespace demo_table_text

// The two rows of an OpenCL demo differ in the device they name.
#define LUMENSCOPE_CL_DEMO_TEXT(what, device, radeon)                                                    \
    "This demo shows " what "\r\nan OpenCL kernel running on the " device                                \
    ".\r\nand rendered with an OpenGL 3.2 (core profile)\r\nor OpenGL 3.1 context.\r\nThis demo requires " \
    "a NVIDIA Geforce 8+\r\nor an ATI Radeon HD " radeon "+."
#define LUMENSCOPE_CL_DEMO_ROWS(name, what, radeon)                                  \
    .shown = {"CL GPU - " name, LUMENSCOPE_CL_DEMO_TEXT(what, "GPU", radeon), ""}, \
    .shownOnCpu = {"CL CPU - " name, LUMENSCOPE_CL_DEMO_TEXT(what, "CPU", radeon), ""}

// Engine demos take the plain context, which drivers give at the highest compatibility version they have.
inline constexpr auto kDemoRows = std::to_array<DemoRow>({
    {.id = DemoId::ClSurfaceDeformer,
     .option = "/start_demo_cl_deformer",
     .optionHelp = "start the OpenCL mesh deformer demo",
     .picker = DemoPicker::OpenCl,
     .pickerRow = 4,
     LUMENSCOPE_CL_DEMO_ROWS("Mesh Deformer", "a surface deformed by", "4000"),
     .resultName = "CL_SurfaceDeformer",
     .family = DemoFamily::OpenCl,
     .contextKind = RenderWindowGL::kGl32,
     .windowFailureText = demo_table_text::kGl32WindowFailed,
     .makeScene = makeClSurfaceDeformerDemo,
     .checkBeforeStart = checkOpenClDemoStart},
    {.id = DemoId::ClPostFx,
     .option = "/start_demo_cl_postfx",
     .optionHelp = "start the OpenCL post FX demo",
     .picker = DemoPicker::OpenCl,
     .pickerRow = 6,
     LUMENSCOPE_CL_DEMO_ROWS("Post FX", "a post processing effect with", "5000"),
     .resultName = "CL_PostFX",
     .family = DemoFamily::OpenCl,
     .contextKind = RenderWindowGL::kGl32,
     .windowFailureText = demo_table_text::kGl32WindowFailed,
     .makeScene = makeClPostFxDemo,
     .checkBeforeStart = checkOpenClDemoStart},
    {.id = DemoId::ClParticles,
     .option = "/start_demo_cl_particles",
     .optionHelp = "start the OpenCL 1M particles demo",
     .picker = DemoPicker::OpenCl,
     .pickerRow = 2,
     LUMENSCOPE_CL_DEMO_ROWS("1M Particles", "a massive mouse-controlled particle system computed by", "4000"),
     .warnsWithoutGlInterop = true,
     .resultName = "CL_Particles",
     .family = DemoFamily::OpenCl,
     .contextKind = RenderWindowGL::kGl32,
     .windowFailureText = demo_table_text::kGl3WindowFailed,
     .makeScene = makeClParticlesDemo,
     .checkBeforeStart = checkOpenClDemoStart},
    {.id = DemoId::ClJulia,
     .option = "/start_demo_cl_julia",
     .optionHelp = "start the OpenCL 4D quaternion Julia set demo",
     .picker = DemoPicker::OpenCl,
     .pickerRow = 0,
     LUMENSCOPE_CL_DEMO_ROWS("4D Quaternion Julia Set", "a 3D Julia fractal computed by", "4000"),
     .warnsWithoutGlInterop = true,
     .resultName = "CL_Julia4D",
     .family = DemoFamily::OpenCl,
     .contextKind = RenderWindowGL::kGl32,
     .windowFailureText = demo_table_text::kGl3WindowFailed,
     .makeScene = makeClJuliaDemo,
     .checkBeforeStart = checkOpenClDemoStart},
    {.id = DemoId::Gl3Torus,
     .option = "/start_demo_gl3_torus",
     .optionHelp = "start the OpenGL 3 illuminated torus demo",
     .picker = DemoPicker::OpenGl,
     .pickerRow = 1,
     .shown = {"GL 3.x - Illuminated Torus",
               "This demo shows a torus lit by several dynamic lights\r\nrendered with an OpenGL 3.2 (core profile) "
               "\r\nor OpenGL 3.1. context.\r\nThis demo requires a NVIDIA Geforce 8+\r\nor an ATI Radeon HD 2000+.",
               ""},
     .resultName = "GL3_IlluminatedTorus",
     .family = DemoFamily::OwnOpenGl,
     .contextKind = RenderWindowGL::kGl32,
     .windowFailureText = demo_table_text::kGl32WindowFailed,
     .makeScene = makeGl3TorusDemo},
    {.id = DemoId::Gl3Triangle,
     .option = "/start_demo_gl3_triangle",
     .optionHelp = "start the OpenGL 3 triangle of death demo",
     .picker = DemoPicker::OpenGl,
     .pickerRow = 2,
     .shown = {"GL 3.x - Triangle of Death",
               "This demo shows a simple triangle rendered with\r\nan OpenGL 3.2 (core profile) \r\nor OpenGL 3.1 "
               "context.\r\nThis demo requires a NVIDIA Geforce 8+\r\nor an ATI Radeon HD 2000+.",
               ""},
     .resultName = "GL3_TriangleOfDeath",
     .family = DemoFamily::OwnOpenGl,
     .contextKind = RenderWindowGL::kGl32,
     .windowFailureText = demo_table_text::kGl32WindowFailed,
     .makeScene = makeGl3TriangleDemo},
    {.id = DemoId::FurryCube,
     .option = "/start_demo_gl2_furry_cube",
     .optionHelp = "start the OpenGL 2 furry cube demo",
     .picker = DemoPicker::OpenGl,
     .pickerRow = 3,
     .shown = {"GL 2.1 - Furry Cube",
               "This demo shows a fur rendering using a multipass algorithm + GLSL Shader.\r\nThis demo requires a "
               "NVIDIA Geforce 5+\r\nor an ATI Radeon 9600+.",
               "https://lumenscope.example.org/benchmarks/furry-cube/"},
     .needs = DemoNeeds::OpenGl20,
     .resultName = "GL_Furry_Cube",
     .family = DemoFamily::Engine,
     .contextKind = RenderWindowGL::kGl20,
     .tickTimer = true,
     .setsAffinity = true,
     .windowFailureText = demo_table_text::kEngineWindowFailed,
     .makeScene = makeFurryCubeDemo},
    {.id = DemoId::HdrDof,
     .option = "/start_demo_gl2_hdr_dof",
     .optionHelp = "start the OpenGL 2 HDR, depth of field and radial blur demo",
     .picker = DemoPicker::OpenGl,
     .pickerRow = 4,
     .shown = {"GL 2.1 - HDR, DoF and RadialBlur",
               "This demo shows a mesh rendered with High Dynamic Range (HDR), Depth of Field (DoF), radial blur "
               "and a little bit of chromatic aberration.\r\nThis demo requires at least 2 render targets\n\r"
               "(NVIDIA Geforce 6 and higher, ATI Radeon 1k\r\nand higher or S3 Graphics Chrome 430 GT).",
               ""},
     .needs = DemoNeeds::TwoRenderTargets,
     .resultName = "GL_HDR_DoF",
     .family = DemoFamily::Engine,
     .contextKind = RenderWindowGL::kGl20,
     .setsAffinity = true,
     .windowFailureText = demo_table_text::kEngineWindowFailed,
     .makeScene = makeHdrDofDemo},
    {.id = DemoId::GeometryInstancing,
     .option = "/start_demo_gl2_gi",
     .optionHelp = "start the OpenGL 2 geometry instancing demo",
     .picker = DemoPicker::OpenGl,
     .pickerRow = 5,
     .shown = {"GL 2.1 - HW Geometry Instancing",
               "This demo shows an asteroid belt rendering with hardware geometry instancing. There are 10000 "
               "asteroids and each asteroid is made of 800 triangles.\r\nThis demo requires a NVIDIA Geforce 8 and "
               "higher or a S3 Graphics 430 GT\r\nand higher.",
               ""},
     .needs = DemoNeeds::InstancedDrawing,
     .resultName = "GL_GeometryInstancing",
     .family = DemoFamily::Engine,
     .contextKind = RenderWindowGL::kGl20,
     .tickTimer = true,
     .setsAffinity = true,
     .windowFailureText = demo_table_text::kEngineWindowFailed,
     .makeScene = makeGeometryInstancingDemo},
    {.id = DemoId::SoftShadows,
     .option = "/start_demo_gl2_soft_shadows",
     .optionHelp = "start the OpenGL 2 soft shadows demo",
     .picker = DemoPicker::OpenGl,
     .pickerRow = 6,
     .shown = {"GL 2.1 - Soft Shadows",
               "This demo shows the rendering of soft shadows using GLSL shaders, FBO and a\r\npoisson disk filter to "
               "blur shadow edges. This demo requires a NVIDIA Geforce 6 and higher, an ATI Radeon 1k\r\nand higher "
               "or a S3 Graphics Chrome 400 series and higher.",
               ""},
     .needs = DemoNeeds::FramebufferObjects,
     .resultName = "GL_SoftShadows",
     .family = DemoFamily::Engine,
     .contextKind = RenderWindowGL::kGl20,
     .setsAffinity = true,
     .windowFailureText = demo_table_text::kEngineWindowFailed,
     .makeScene = makeSoftShadowsDemo},
    {.id = DemoId::PointSprites,
     .option = "/start_demo_gl2_point_sprite",
     .optionHelp = "start the OpenGL 2 point sprite particles demo",
     .picker = DemoPicker::OpenGl,
     .pickerRow = 7,
     .shown = {"GL 2.1 - GLSL Point Sprite Particles",
               "This demo shows a stateless point-sprite based particle system.\r\nParticles are rendered using a "
               "GLSL shader. \r\nThis demo requires a NVIDIA Geforce 6 and higher, an ATI Radeon 1k\r\nand higher or "
               "a S3 Graphics Chrome 400 series and higher.",
               ""},
     .needs = DemoNeeds::PointSprites,
     .resultName = "GL_PointSprite",
     .family = DemoFamily::Engine,
     .contextKind = RenderWindowGL::kGl20,
     .setsAffinity = true,
     .windowFailureText = demo_table_text::kEngineWindowFailed,
     .makeScene = makePointSpriteDemo},
    {.id = DemoId::VertexDisplacement,
     .option = "/start_demo_gl2_vtf",
     .optionHelp = "start the OpenGL 2 vertex displacement mapping demo",
     .picker = DemoPicker::OpenGl,
     .pickerRow = 8,
     .shown = {"GL 2.1 - Vertex Displacement Mapping",
               "This demo shows vertex displacement mapping (or vertex texture fetching - VTF).\r\nThis demo requires "
               "a NVIDIA Geforce 6 and higher\r\nor a S3 Graphics Chrome 400 series and higher.",
               ""},
     .needs = DemoNeeds::VertexTextures,
     .resultName = "GL_VertexTextureFetch",
     .family = DemoFamily::Engine,
     .contextKind = RenderWindowGL::kGl20,
     .setsAffinity = true,
     .windowFailureText = demo_table_text::kEngineWindowFailed,
     .makeScene = makeVertexDisplacementDemo},
    {.id = DemoId::ToonShading,
     .option = "/start_demo_gl2_toon",
     .optionHelp = "start the OpenGL 2 cel-shading demo",
     .picker = DemoPicker::OpenGl,
     .pickerRow = 9,
     .shown = {"GL 2.1 - CEL-SHADING",
               "This demo shows a simple Cel-Shading rendering using a GLSL shader.\r\nThis demo requires a NVIDIA "
               "Geforce 5 and higher or an ATI Radeon\r\n9600 and higher.",
               ""},
     .needs = DemoNeeds::OpenGl20,
     .resultName = "GL_ToonShading",
     .family = DemoFamily::Engine,
     .contextKind = RenderWindowGL::kGl20,
     .setsAffinity = true,
     .windowFailureText = demo_table_text::kEngineWindowFailed,
     .makeScene = makeCelShadingDemo},
    {.id = DemoId::SimpleMesh,
     .option = "/start_demo_gl2_simple_torus",
     .optionHelp = "start the simple mesh demo",
     .picker = DemoPicker::OpenGl,
     .pickerRow = 10,
     .shown = {"GL 1.2 - Simple Mesh",
               "This demo shows a simple torus mesh).\r\nThis demo does not use the programmable pipeline. This demo "
               "requires\r\nan OpenGL 1.2 capable graphics card.",
               ""},
     .resultName = "GL_SimpleTorus",
     .family = DemoFamily::Engine,
     .contextKind = RenderWindowGL::kGl20,
     .windowFailureText = demo_table_text::kEngineWindowFailed,
     .makeScene = makeSimpleMeshDemo},
    {.id = DemoId::Gl4Tessellation,
     .option = "/start_demo_gl4_tessellation",
     .optionHelp = "start the GL 4 tessellation demo at start-up",
     .optionListedLast = true,
     .picker = DemoPicker::OpenGl,
     .pickerRow = 0,
     .shown = {"GL 4.x - Tessellation",
               "This demo shows the tessellation of a simple triangle\r\nrendered with an OpenGL 4.0 (core profile) "
               "context.\r\nThis demo requires a NVIDIA Geforce GTX 400+\r\nor an ATI Radeon HD 5000+.",
               "https://lumenscope.example.org/benchmarks/tessellation/"},
     .resultName = "GL4_Tessellation",
     .family = DemoFamily::OwnOpenGl,
     .contextKind = RenderWindowGL::kGl40,
     .windowFailureText = demo_table_text::kGl40WindowFailed,
     .makeScene = makeGl4TessellationDemo},
});

#undef LUMENSCOPE_CL_DEMO_ROWS
#undef LUMENSCOPE_CL_DEMO_TEXT

inline constexpr size_t kDemoCount = kDemoRows.size();

// The row of a demo; ids outside the table read the first row.
constexpr const DemoRow& demoRow(DemoId id) { return kDemoRows[size_t(id) < kDemoCount ? size_t(id) : 0]; }

// The rows a picker shows.
constexpr int demoPickerRows(DemoPicker picker) {
    int rows = 0;
    for (const DemoRow& demo : kDemoRows)
        if (demo.picker == picker) rows += picker == DemoPicker::OpenCl ? 2 : 1;
    return rows;
}

// What a picker row starts: its demo and, in the OpenCL picker, the device type it runs on (kClDeviceTypeGpu
// or kClDeviceTypeCpu; 0 in the OpenGL picker).
struct DemoPick {
    DemoId id;
    uint32_t clDeviceType;
};

// Nothing for a row outside the picker.
constexpr std::optional<DemoPick> demoAtPickerRow(DemoPicker picker, int row) {
    for (const DemoRow& demo : kDemoRows) {
        if (demo.picker != picker) continue;
        if (picker == DemoPicker::OpenGl && row == demo.pickerRow) return DemoPick{demo.id, 0};
        if (picker == DemoPicker::OpenCl && row == demo.pickerRow) return DemoPick{demo.id, kClDeviceTypeGpu};
        if (picker == DemoPicker::OpenCl && row == demo.pickerRow + 1) return DemoPick{demo.id, kClDeviceTypeCpu};
    }
    return std::nullopt;
}

// The text of a picker row; null outside the picker.
const DemoDescriptor* demoDescriptor(DemoPicker picker, int row);

// The text of the picker row a demo was started from: for an OpenCL demo the row of its device type.
const DemoDescriptor& demoShown(DemoId id, uint32_t clDeviceType);
