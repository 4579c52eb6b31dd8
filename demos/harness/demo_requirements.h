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

// The message the OpenGL Start button shows instead of starting row `row`, or null when the row may start.
const char* openGlDemoRequirementFailure(int row, const DemoCapabilities& caps);

// The row a Start button starts for a combo selection: a selection the OpenGL table does not hold counts
// as row 9, one the OpenCL table does not hold as row 0.
int openGlStartRow(int selected);
int openClStartRow(int selected);
