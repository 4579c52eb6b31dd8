#pragma once

namespace Kalidornm {
class Kalidor;
}

// What the OpenGL Start button tests before it starts an engine demo, read from the hardware library.
struct DemoCapabilities {
    bool openGl20 = false;       // version 2.0 or later
    bool framebufferObjects = false;
    bool pointSprites = false;
    bool drawInstanced = false;  // GL_ARB_draw_instanced or GL_EXT_draw_instanced
    bool gpuShader4 = false;     // GL_EXT_gpu_shader4 in the extension list
    int maxDrawBuffers = 0;
    int maxVertexTextureUnits = 0;
};

DemoCapabilities readDemoCapabilities(const Kalidornm::Kalidor& library);

// The message the OpenGL Start button shows instead of starting row `row` of the OpenGL picker, or null when
// the row may start: what the row's demo needs (its DemoNeeds) against what the driver offers.
const char* openGlDemoRequirementFailure(int row, const DemoCapabilities& caps);

// The row a Start button starts for a picker selection: a selection the OpenGL picker does not hold counts
// as the cel-shading row, one the OpenCL picker does not hold as row 0.
int openGlStartRow(int selected);
int openClStartRow(int selected);
