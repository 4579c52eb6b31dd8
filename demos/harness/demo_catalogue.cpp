#include "demo_catalogue.h"

#include <array>

#include "demos/demo_scenes.h"
#include "demos/engine_scenes/engine_scenes.h"
#include "gl_utility/render_window_gl.h"
#include "opencl/cl_demo_scene.h"

namespace {

constexpr const char* kGl32WindowFailed = "OpenGL 3.2 window creation failed!";
constexpr const char* kGl3WindowFailed = "OpenGL 3 window creation failed!";
constexpr const char* kGl40WindowFailed = "OpenGL 4.0 window creation failed!";
constexpr const char* kEngineWindowFailed = "could not create a render window.";

using Kind = RenderWindowGL::ContextKind;

// In slot order. Engine demos take the plain context, which drivers give at the highest compatibility
// version they have.
constexpr auto kEntries = std::to_array<DemoEntry>({
    {kDemoGl4Tessellation, DemoFamily::OwnOpenGl, Kind::kGl40, false, false, kGl40WindowFailed,
     makeGl4TessellationDemo, nullptr},
    {kDemoClParticles, DemoFamily::OpenCl, Kind::kGl32, false, false, kGl3WindowFailed, makeClParticlesDemo,
     checkOpenClDemoStart},
    {kDemoClPostFx, DemoFamily::OpenCl, Kind::kGl32, false, false, kGl32WindowFailed, makeClPostFxDemo,
     checkOpenClDemoStart},
    {kDemoClSurfaceDeformer, DemoFamily::OpenCl, Kind::kGl32, false, false, kGl32WindowFailed,
     makeClSurfaceDeformerDemo, checkOpenClDemoStart},
    {kDemoGl3Torus, DemoFamily::OwnOpenGl, Kind::kGl32, false, false, kGl32WindowFailed, makeGl3TorusDemo, nullptr},
    {kDemoGl3Triangle, DemoFamily::OwnOpenGl, Kind::kGl32, false, false, kGl32WindowFailed, makeGl3TriangleDemo,
     nullptr},
    {kDemoFurryCube, DemoFamily::Engine, Kind::kGl20, true, true, kEngineWindowFailed, makeFurryCubeDemo, nullptr},
    {kDemoToonShading, DemoFamily::Engine, Kind::kGl20, false, true, kEngineWindowFailed,
     makeCelShadingDemo, nullptr},
    {kDemoVertexDisplacement, DemoFamily::Engine, Kind::kGl20, false, true, kEngineWindowFailed,
     makeVertexDisplacementDemo, nullptr},
    {kDemoSimpleMesh, DemoFamily::Engine, Kind::kGl20, false, false, kEngineWindowFailed,
     makeSimpleMeshDemo, nullptr},
    {kDemoSoftShadows, DemoFamily::Engine, Kind::kGl20, false, true, kEngineWindowFailed,
     makeSoftShadowsDemo, nullptr},
    {kDemoPointSprites, DemoFamily::Engine, Kind::kGl20, false, true, kEngineWindowFailed,
     makePointSpriteDemo, nullptr},
    {kDemoHdrDof, DemoFamily::Engine, Kind::kGl20, false, true, kEngineWindowFailed, makeHdrDofDemo, nullptr},
    {kDemoGeometryInstancing, DemoFamily::Engine, Kind::kGl20, true, true, kEngineWindowFailed,
     makeGeometryInstancingDemo, nullptr},
    {kDemoClJulia, DemoFamily::OpenCl, Kind::kGl32, false, false, kGl3WindowFailed, makeClJuliaDemo,
     checkOpenClDemoStart},
});
static_assert(kEntries.size() == kDemoSlotCount, "one entry per demo record");

constexpr bool entriesInSlotOrder() {
    for (size_t i = 0; i < kEntries.size(); ++i)
        if (kEntries[i].slot != DemoSlot(i)) return false;
    return true;
}
static_assert(entriesInSlotOrder(), "entries stand in slot order");

// The OpenGL table's rows 0 to 10, and the OpenCL table's row pairs 0-1, 2-3, 4-5, 6-7.
constexpr auto kOpenGlRowSlots = std::to_array<DemoSlot>(
    {kDemoGl4Tessellation, kDemoGl3Torus, kDemoGl3Triangle, kDemoFurryCube, kDemoHdrDof, kDemoGeometryInstancing,
     kDemoSoftShadows, kDemoPointSprites, kDemoVertexDisplacement, kDemoToonShading, kDemoSimpleMesh});
static_assert(kOpenGlRowSlots.size() == kOpenGlDemoRows, "one record per OpenGL row");
constexpr auto kOpenClPairSlots =
    std::to_array<DemoSlot>({kDemoClJulia, kDemoClParticles, kDemoClSurfaceDeformer, kDemoClPostFx});
static_assert(kOpenClPairSlots.size() * 2 == kOpenClDemoRows, "two OpenCL rows per record");

constexpr uint32_t kClDeviceTypeGpu = 4;
constexpr uint32_t kClDeviceTypeCpu = 2;

}  // namespace

const DemoEntry& demoEntry(DemoSlot slot) { return kEntries[slot >= 0 && slot < kDemoSlotCount ? slot : 0]; }

bool demoSlotForRow(DemoTable table, int row, DemoSlot* slot, uint32_t* deviceType) {
    if (row < 0 || row >= demoTableRows(table)) return false;
    if (table == DemoTable::OpenGl) {
        *slot = kOpenGlRowSlots[size_t(row)];
        *deviceType = 0;
    } else {
        *slot = kOpenClPairSlots[size_t(row / 2)];
        *deviceType = row % 2 == 0 ? kClDeviceTypeGpu : kClDeviceTypeCpu;
    }
    return true;
}

int demoRowForSlot(DemoSlot slot, uint32_t deviceType) {
    for (size_t row = 0; row < kOpenGlRowSlots.size(); ++row)
        if (kOpenGlRowSlots[row] == slot) return int(row);
    for (size_t pair = 0; pair < kOpenClPairSlots.size(); ++pair)
        if (kOpenClPairSlots[pair] == slot) return int(pair * 2) + (deviceType == kClDeviceTypeCpu ? 1 : 0);
    return -1;
}
