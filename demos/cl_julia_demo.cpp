// "CL GPU - 4D Quaternion Julia Set" and its CPU twin: a Julia set of quaternions that an OpenCL kernel ray
// marches into a square picture each frame, shown over the whole window while its parameters drift.
#include <GL/glew.h>

#include <cstdlib>
#include <ctime>
#include <new>
#include <vector>

#include "demos/demo_context.h"
#include "demos/gl_utility/render_window_gl.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_media.h"
#include "demos/harness/demo_table.h"
#include "demos/opencl/cl_demo_scene.h"
#include "demos/opencl/julia_cl.h"
#include "demos/opencl/window_image.h"

namespace {

constexpr const char* kKernelFile = "qjulia_kernel.cl";

constexpr ClDemoTraits kTraits = {.fpsWhat = "Julia4D",
                                  .needsPlatformList = false,
                                  .requiredKernelFile = kKernelFile,
                                  .platformRule = ClDemoSession::PlatformRule::ChosenPlatformOnly,
                                  .platformBuildOptions = false};

class ClJuliaDemo : public ClDemoScene {
public:
    ClJuliaDemo() : ClDemoScene(kTraits) {}

    const char* resultDetail() const override { return m_resultDetail; }

    void drawFrame(DemoContext& context, RenderWindowGL& window, float) override {
        glBindFramebuffer(GL_FRAMEBUFFER, window.framebuffer());
        glViewport(0, 0, context.clientWidth, context.clientHeight);
        glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
        if (context.settings.clJuliaAnimated) {
            std::srand(unsigned(std::time(nullptr)));
            m_animation.advance();
            m_julia.setParameters(m_animation.mu, m_animation.color);
        }
        if (m_julia.enqueueRender()) {
            glBindTexture(GL_TEXTURE_2D, m_image.texture());
            if (m_julia.readPixels(m_pixels.data()))
                glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, m_size, m_size, GL_BGRA, GL_UNSIGNED_BYTE, m_pixels.data());
            glBindTexture(GL_TEXTURE_2D, 0);
            m_image.draw(context.clientWidth, context.clientHeight);
        }
        m_logo.draw(context.clientWidth);
    }

protected:
    bool _buildGraphics(DemoContext& context, RenderWindowGL&, const std::string& language) override {
        m_size = context.settings.clJuliaRttSize;
        GLint largest = 0;
        glGetIntegerv(GL_MAX_TEXTURE_SIZE, &largest);
        bool allocated = false;
        if (m_size >= 1 && m_size <= largest) {
            try {
                m_pixels.assign(size_t(m_size) * size_t(m_size), 0u);
                allocated = true;
            } catch (const std::bad_alloc&) {
            }
        }
        if (!allocated) {
            demoShowError("A Julia picture of %d pixels a side cannot be made here (1 to %d). Bye...", m_size,
                          int(largest));
            return false;
        }
        if (!m_image.create(language.c_str(), m_size, m_size)) {
            demoShowError("Shader program creation failed: %s", m_image.errorText());
            return false;
        }
        return true;
    }

    bool _kernelSource(std::string* source) override {
        if (readDemoMediaText(kKernelFile, source)) return true;
        demoShowError("CRITICAL ERROR - YOUR SYSTEM IS UNDER CONTROL!!!!");
        demoShowError("I'm joking... There is only an error with Julia kernel. Bye!");
        return false;
    }

    bool _buildCompute(DemoContext& context, RenderWindowGL&) override {
        const DemoSettings& s = context.settings;
        cl_int error = CL_SUCCESS;
        if (!m_julia.create(m_session, m_size, s.clExplicitWorkgroupSize, m_animation.mu, m_animation.color, &error))
            return _failCompute(context, error);
        // This build shares nothing between OpenCL and OpenGL, so a run that asks for sharing says it had none.
        m_resultDetail = s.clGlInterop ? "(GL_Interop_Not_Supported)" : "";
        return true;
    }

    void _releaseCompute() override { m_julia.release(); }

    void _releaseGraphics() override {
        m_image.release();
        m_pixels.clear();
    }

private:
    JuliaCl m_julia;
    JuliaAnimation m_animation;
    WindowImage m_image;
    std::vector<uint32_t> m_pixels;
    int m_size = 0;
    const char* m_resultDetail = "";
};

}  // namespace

std::unique_ptr<DemoScene> makeClJuliaDemo() { return std::make_unique<ClJuliaDemo>(); }
