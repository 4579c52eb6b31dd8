#include "demo_titles.h"

#include <iterator>

namespace panels {

namespace {

constexpr const char* kGlDemoTitles[] = {
    "GL 4.x - Tessellation",
    "GL 3.x - Illuminated Torus",
    "GL 3.x - Triangle of Death",
    "GL 2.1 - Furry Cube",
    "GL 2.1 - HDR, DoF and RadialBlur",
    "GL 2.1 - HW Geometry Instancing",
    "GL 2.1 - Soft Shadows",
    "GL 2.1 - GLSL Point Sprite Particles",
    "GL 2.1 - Vertex Displacement Mapping",
    "GL 2.1 - CEL-SHADING",
    "GL 1.2 - Simple Mesh",
};
static_assert(std::size(kGlDemoTitles) == 11);

constexpr const char* kClDemoTitles[] = {
    "CL GPU - 4D Quaternion Julia Set",
    "CL CPU - 4D Quaternion Julia Set",
    "CL GPU - 1M Particles",
    "CL CPU - 1M Particles",
    "CL GPU - Mesh Deformer",
    "CL CPU - Mesh Deformer",
    "CL GPU - Post FX",
    "CL CPU - Post FX",
};
static_assert(std::size(kClDemoTitles) == 8);

}  // namespace

size_t glDemoTitleCount() { return std::size(kGlDemoTitles); }
size_t clDemoTitleCount() { return std::size(kClDemoTitles); }
const char* glDemoTitle(size_t row) { return row < std::size(kGlDemoTitles) ? kGlDemoTitles[row] : nullptr; }
const char* clDemoTitle(size_t row) { return row < std::size(kClDemoTitles) ? kClDemoTitles[row] : nullptr; }

}  // namespace panels
