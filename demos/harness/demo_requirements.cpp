#include "demos/harness/demo_requirements.h"

#include <optional>

#include "demos/harness/demo_table.h"
#include "kalidor/kalidor.h"

namespace {

// Capability flags of the hardware library.
constexpr int kCapFramebufferObjects = 20;
constexpr int kCapPointSprites = 24;
constexpr int kCapOpenGl20 = 25;
constexpr int kCapDrawInstanced = 29;

constexpr const char* kNeedsGl20 = "This demo requires the support of OpenGL 2.0.";

}  // namespace

DemoCapabilities readDemoCapabilities(const Kalidornm::Kalidor& library) {
    DemoCapabilities caps;
    caps.openGl20 = library.hasCapability(kCapOpenGl20);
    caps.framebufferObjects = library.hasCapability(kCapFramebufferObjects);
    caps.pointSprites = library.hasCapability(kCapPointSprites);
    caps.drawInstanced = library.hasCapability(kCapDrawInstanced);
    caps.gpuShader4 = library.isExtensionSupported("GL_EXT_gpu_shader4");
    caps.maxDrawBuffers = library.getMaxDrawBuffers();
    caps.maxVertexTextureUnits = library.getMaxVertexTextureUnits();
    return caps;
}

const char* openGlDemoRequirementFailure(int row, const DemoCapabilities& caps) {
    const std::optional<DemoPick> pick = demoAtPickerRow(DemoPicker::OpenGl, row);
    switch (pick ? demoRow(pick->id).needs : DemoNeeds::Nothing) {
        case DemoNeeds::Nothing:
            return nullptr;
        case DemoNeeds::OpenGl20:
            return caps.openGl20 ? nullptr : kNeedsGl20;
        case DemoNeeds::TwoRenderTargets:
            return caps.openGl20 && caps.maxDrawBuffers >= 2
                       ? nullptr
                       : "This demo requires the support of OpenGL 2.0 and two render targets.";
        case DemoNeeds::InstancedDrawing:
            return caps.drawInstanced && caps.gpuShader4
                       ? nullptr
                       : "This demo requires the support of GL_EXT_gpu_shader4 / GL_ARB_draw_instanced / "
                         "GL_EXT_draw_instanced.";
        case DemoNeeds::FramebufferObjects:
            return caps.openGl20 && caps.framebufferObjects
                       ? nullptr
                       : "This demo requires the support of OpenGL 2.0 and FBO.";
        case DemoNeeds::PointSprites:
            return caps.openGl20 && caps.pointSprites
                       ? nullptr
                       : "This demo requires the support of OpenGL 2.0 and Point Sprite.";
        case DemoNeeds::VertexTextures:
            return caps.openGl20 && caps.maxVertexTextureUnits > 0
                       ? nullptr
                       : "This demo requires the support of OpenGL 2.0 and one vertex texture unit.";
    }
    return nullptr;
}

int openGlStartRow(int selected) {
    return demoAtPickerRow(DemoPicker::OpenGl, selected) ? selected : demoRow(DemoId::ToonShading).pickerRow;
}

int openClStartRow(int selected) { return demoAtPickerRow(DemoPicker::OpenCl, selected) ? selected : 0; }
