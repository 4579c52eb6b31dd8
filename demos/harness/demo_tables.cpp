#include "demo_tables.h"

#include <array>

namespace {

constexpr auto kOpenGlDemos = std::to_array<DemoDescriptor>({
    {"GL 4.x - Tessellation",
     "This demo shows the tessellation of a simple triangle\r\nrendered with an OpenGL 4.0 (core profile) "
     "context.\r\nThis demo requires a NVIDIA Geforce GTX 400+\r\nor an ATI Radeon HD 5000+.",
     "https://lumenscope.example.org/benchmarks/tessellation/"},
    {"GL 3.x - Illuminated Torus",
     "This demo shows a torus lit by several dynamic lights\r\nrendered with an OpenGL 3.2 (core profile) "
     "\r\nor OpenGL 3.1. context.\r\nThis demo requires a NVIDIA Geforce 8+\r\nor an ATI Radeon HD 2000+.",
     ""},
    {"GL 3.x - Triangle of Death",
     "This demo shows a simple triangle rendered with\r\nan OpenGL 3.2 (core profile) \r\nor OpenGL 3.1 "
     "context.\r\nThis demo requires a NVIDIA Geforce 8+\r\nor an ATI Radeon HD 2000+.",
     ""},
    {"GL 2.1 - Furry Cube",
     "This demo shows a fur rendering using a multipass algorithm + GLSL Shader.\r\nThis demo requires a NVIDIA "
     "Geforce 5+\r\nor an ATI Radeon 9600+.",
     "https://lumenscope.example.org/benchmarks/furry-cube/"},
    {"GL 2.1 - HDR, DoF and RadialBlur",
     "This demo shows a mesh rendered with High Dynamic Range (HDR), Depth of Field (DoF), radial blur and a "
     "little bit of chromatic aberration.\r\nThis demo requires at least 2 render targets\n\r(NVIDIA Geforce 6 "
     "and higher, ATI Radeon 1k\r\nand higher or S3 Graphics Chrome 430 GT).",
     ""},
    {"GL 2.1 - HW Geometry Instancing",
     "This demo shows an asteroid belt rendering with hardware geometry instancing. There are 10000 asteroids "
     "and each asteroid is made of 800 triangles.\r\nThis demo requires a NVIDIA Geforce 8 and higher or a S3 "
     "Graphics 430 GT\r\nand higher.",
     ""},
    {"GL 2.1 - Soft Shadows",
     "This demo shows the rendering of soft shadows using GLSL shaders, FBO and a\r\npoisson disk filter to blur "
     "shadow edges. This demo requires a NVIDIA Geforce 6 and higher, an ATI Radeon 1k\r\nand higher or a S3 "
     "Graphics Chrome 400 series and higher.",
     ""},
    {"GL 2.1 - GLSL Point Sprite Particles",
     "This demo shows a stateless point-sprite based particle system.\r\nParticles are rendered using a GLSL "
     "shader. \r\nThis demo requires a NVIDIA Geforce 6 and higher, an ATI Radeon 1k\r\nand higher or a S3 "
     "Graphics Chrome 400 series and higher.",
     ""},
    {"GL 2.1 - Vertex Displacement Mapping",
     "This demo shows vertex displacement mapping (or vertex texture fetching - VTF).\r\nThis demo requires a "
     "NVIDIA Geforce 6 and higher\r\nor a S3 Graphics Chrome 400 series and higher.",
     ""},
    {"GL 2.1 - CEL-SHADING",
     "This demo shows a simple Cel-Shading rendering using a GLSL shader.\r\nThis demo requires a NVIDIA Geforce "
     "5 and higher or an ATI Radeon\r\n9600 and higher.",
     ""},
    {"GL 1.2 - Simple Mesh",
     "This demo shows a simple torus mesh).\r\nThis demo does not use the programmable pipeline. This demo "
     "requires\r\nan OpenGL 1.2 capable graphics card.",
     ""},
    {"", "", ""},  // the unused twelfth row
});
static_assert(kOpenGlDemos.size() == kOpenGlDemoRows + 1, "the OpenGL table has 12 rows, 11 in use");

#define LUMENSCOPE_CL_DEMO_TEXT(what, device, radeon)                                                    \
    "This demo shows " what "\r\nan OpenCL kernel running on the " device                                \
    ".\r\nand rendered with an OpenGL 3.2 (core profile)\r\nor OpenGL 3.1 context.\r\nThis demo requires " \
    "a NVIDIA Geforce 8+\r\nor an ATI Radeon HD " radeon "+."

constexpr auto kOpenClDemos = std::to_array<DemoDescriptor>({
    {"CL GPU - 4D Quaternion Julia Set", LUMENSCOPE_CL_DEMO_TEXT("a 3D Julia fractal computed by", "GPU", "4000"), ""},
    {"CL CPU - 4D Quaternion Julia Set", LUMENSCOPE_CL_DEMO_TEXT("a 3D Julia fractal computed by", "CPU", "4000"), ""},
    {"CL GPU - 1M Particles",
     LUMENSCOPE_CL_DEMO_TEXT("a massive mouse-controlled particle system computed by", "GPU", "4000"), ""},
    {"CL CPU - 1M Particles",
     LUMENSCOPE_CL_DEMO_TEXT("a massive mouse-controlled particle system computed by", "CPU", "4000"), ""},
    {"CL GPU - Mesh Deformer", LUMENSCOPE_CL_DEMO_TEXT("a surface deformed by", "GPU", "4000"), ""},
    {"CL CPU - Mesh Deformer", LUMENSCOPE_CL_DEMO_TEXT("a surface deformed by", "CPU", "4000"), ""},
    {"CL GPU - Post FX", LUMENSCOPE_CL_DEMO_TEXT("a post processing effect with", "GPU", "5000"), ""},
    {"CL CPU - Post FX", LUMENSCOPE_CL_DEMO_TEXT("a post processing effect with", "CPU", "5000"), ""},
});
static_assert(kOpenClDemos.size() == kOpenClDemoRows, "the OpenCL table has 8 rows");

#undef LUMENSCOPE_CL_DEMO_TEXT

}  // namespace

const DemoDescriptor* demoDescriptor(DemoTable table, int row) {
    if (row < 0 || row >= demoTableRows(table)) return nullptr;
    return table == DemoTable::OpenGl ? &kOpenGlDemos[size_t(row)] : &kOpenClDemos[size_t(row)];
}

int demoTableRows(DemoTable table) { return table == DemoTable::OpenGl ? kOpenGlDemoRows : kOpenClDemoRows; }
