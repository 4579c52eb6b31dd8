#pragma once

#include <cstdint>
#include <string>

#include "demos/opencl/cl_demo_session.h"
#include "demos/gl_utility/corner_logo.h"
#include "demos/harness/demo_scene.h"

struct DemoSettings;

// What tells the four OpenCL demos apart in the start-up they share.
struct ClDemoTraits {
    const char* fpsWhat;  // the word of the FPS title: "Particles", "PostFX", ...
    // The deformer asks discovery for a platform; the others try to load the OpenCL library.
    bool needsPlatformList;
    // A kernel file in the media folder that must open before anything else is made; null for none.
    const char* requiredKernelFile;
    ClDemoSession::PlatformRule platformRule;
    // False: built without options whatever the platform.
    bool platformBuildOptions;
};

// The start-up and release every OpenCL demo shares: the tests before the context, the version test, the
// demo's OpenGL side, the platform, device, context and queue, the program, then the demo's compute side.
// A failure shows its message; one after the platform search also ends a benchmark run's program.
class ClDemoScene : public DemoScene {
public:
    explicit ClDemoScene(const ClDemoTraits& traits) : m_traits(traits) {}

    bool checkBeforeContext(DemoContext& context) override;
    bool setUp(DemoContext& context, RenderWindowGL& window) override;
    void release(DemoContext& context) override;
    std::string fpsTitle(const DemoContext& context, RenderWindowGL& window) const override;
    bool failureEndsProgram() const override { return m_closeFully; }

protected:
    // Programs, meshes and textures; `languageLine` starts every shader. Shows its own message on failure.
    virtual bool _buildGraphics(DemoContext& context, RenderWindowGL& window, const std::string& languageLine) = 0;
    // The program's source text; false after its own message.
    virtual bool _kernelSource(std::string* source) = 0;
    // Kernel, buffers and what ties them to the OpenGL side, on the built session; on failure it calls
    // _failCompute().
    virtual bool _buildCompute(DemoContext& context, RenderWindowGL& window) = 0;
    // Both need the window's context current.
    virtual void _releaseCompute() = 0;
    virtual void _releaseGraphics() = 0;

    // The first lines of a vertex stage: the 1.40 set states the float precision there as well.
    static std::string _vertexLanguage(const std::string& languageLine);
    // The message for a kernel or buffer the device refused; ends a benchmark run's program as well.
    bool _failCompute(const DemoContext& context, cl_int error);
    static const char* _typeName(const DemoContext& context);

    ClDemoSession m_session;
    CornerLogo m_logo;

private:
    ClDemoTraits m_traits;
    bool m_closeFully = false;
};
