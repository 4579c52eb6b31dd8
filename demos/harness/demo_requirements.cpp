#include "demo_requirements.h"

#include "demo_tables.h"
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
    switch (row) {
        case 3:
        case 9:
            return caps.openGl20 ? nullptr : kNeedsGl20;
        case 4:
            return caps.openGl20 && caps.maxDrawBuffers >= 2
                       ? nullptr
                       : "This demo requires the support of OpenGL 2.0 and two render targets.";
        case 5:
            return caps.drawInstanced && caps.gpuShader4
                       ? nullptr
                       : "This demo requires the support of GL_EXT_gpu_shader4 / GL_ARB_draw_instanced / "
                         "GL_EXT_draw_instanced.";
        case 6:
            return caps.openGl20 && caps.framebufferObjects
                       ? nullptr
                       : "This demo requires the support of OpenGL 2.0 and FBO.";
        case 7:
            return caps.openGl20 && caps.pointSprites
                       ? nullptr
                       : "This demo requires the support of OpenGL 2.0 and Point Sprite.";
        case 8:
            return caps.openGl20 && caps.maxVertexTextureUnits > 0
                       ? nullptr
                       : "This demo requires the support of OpenGL 2.0 and one vertex texture unit.";
        default:
            return nullptr;  // rows 0, 1, 2 and 10 need nothing
    }
}

int openGlStartRow(int selected) { return selected >= 0 && selected < kOpenGlDemoRows ? selected : 9; }

int openClStartRow(int selected) { return selected >= 0 && selected < kOpenClDemoRows ? selected : 0; }
