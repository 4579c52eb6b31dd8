// "CL GPU - 1M Particles" and its CPU twin: a million points that swarm around the pointer, moved by an
// OpenCL kernel and read back into a vertex buffer every frame.
#include <GL/glew.h>

#include <cmath>

#include "base/log_sink.h"
#include "demos/demo_context.h"
#include "engine/vx_math.h"
#include "demos/gl_demo_support.h"
#include "demos/gl_utility/render_window_gl.h"
#include "demos/gl_utility/shader_texts.h"
#include "demos/harness/demo_media.h"
#include "demos/harness/demo_table.h"
#include "demos/opencl/cl_demo_scene.h"
#include "demos/opencl/cl_device_choice.h"
#include "demos/opencl/particle_system_cl.h"

namespace {

using Vantalux_nsp::vxMat4;

constexpr ClDemoTraits kTraits = {.fpsWhat = "Particles",
                                  .needsPlatformList = false,
                                  .requiredKernelFile = nullptr,
                                  .platformRule = ClDemoSession::PlatformRule::FirstWithDeviceType,
                                  .platformBuildOptions = true};

class ClParticlesDemo : public ClDemoScene {
public:
    ClParticlesDemo() : ClDemoScene(kTraits) {}

    const char* resultDetail() const override { return m_resultDetail; }

    void drawFrame(DemoContext& context, RenderWindowGL& window, float) override {
        const float t = float(context.stats.elapsedMs) * 0.001f;
        glBindFramebuffer(GL_FRAMEBUFFER, window.framebuffer());
        glViewport(0, 0, context.clientWidth, context.clientHeight);
        glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);

        const float mouseX = float(demoMouseX()), mouseY = float(context.clientHeight - demoMouseY());
        if (m_particles.enqueueStep(mouseX, mouseY, t)) {
            glBindBuffer(GL_ARRAY_BUFFER, m_positionBuffer);
            if (m_particles.readPositions())
                glBufferSubData(GL_ARRAY_BUFFER, 0, GLsizeiptr(m_particles.count()) * 8, m_particles.positions());
            m_program.use();
            m_program.set4f("partColor", std::cos(0.4f * t) * 0.4f + 0.6f, std::sin(0.6f * t) * 0.25f + 0.75f,
                            std::cos(-0.8f * t) * 0.4f + 0.6f, 1.0f);
            const int attrib = m_program.attribLocation("In_Position");
            if (attrib >= 0) {
                glEnableVertexAttribArray(GLuint(attrib));
                glVertexAttribPointer(GLuint(attrib), 2, GL_FLOAT, GL_FALSE, 0, nullptr);
                glDrawArrays(GL_POINTS, 0, GLsizei(m_particles.count()));
                glDisableVertexAttribArray(GLuint(attrib));
            }
            glBindBuffer(GL_ARRAY_BUFFER, 0);
        }
        m_logo.draw(context.clientWidth);
    }

protected:
    bool _buildGraphics(DemoContext& context, RenderWindowGL&, const std::string& language) override {
        if (!buildDemoProgram(m_program, {shaderSource(_vertexLanguage(language), "transformed_position.vert"), "", "",
                                          shaderSource(language, "particles.frag")}))
            return false;
        const vxMat4 pixelsToClip =
            vxMat4::orthographic(0, float(context.clientWidth), 0, float(context.clientHeight), -1, 1);
        m_program.setMatrix("WorldViewProjectionMatrix", pixelsToClip.data());
        glPointSize(1.2f);
        setDemoMouse(context.clientWidth / 2, context.clientHeight / 2);
        return true;
    }

    bool _kernelSource(std::string* source) override {
        if (!readDemoMediaText("particles.cl", source)) *source = heldParticlesSource();
        return true;
    }

    bool _buildCompute(DemoContext& context, RenderWindowGL&) override {
        const DemoSettings& s = context.settings;
        const int32_t count = s.clDeviceType == kClDeviceTypeGpu ? s.clParticlesGpu : s.clParticlesCpu;
        cl_int error = CL_SUCCESS;
        if (!m_particles.create(m_session, count, context.clientWidth, context.clientHeight, s.clParticlesSin,
                                s.clNativeSin, s.clExplicitWorkgroupSize, &error))
            return _failCompute(context, error);
        if (m_particles.range().explicitLocal)
            base::logLine("OpenCL 1M particle - global_work_items: %d - local_work_items: %d",
                           int(m_particles.range().global[0]), int(m_particles.range().local[0]));
        glGenBuffers(1, &m_positionBuffer);
        glBindBuffer(GL_ARRAY_BUFFER, m_positionBuffer);
        glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(m_particles.count()) * 8, m_particles.positions(), GL_DYNAMIC_COPY);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        // This build shares nothing between OpenCL and OpenGL, so a run that asks for sharing says it had none.
        const bool sharingRefused = s.clGlInterop;
        if (s.clParticlesSin)
            m_resultDetail = sharingRefused ? "(with sin - GL_Interop_Not_Supported)" : "(with sin)";
        else
            m_resultDetail = sharingRefused ? "(GL_Interop_Not_Supported)" : "";
        return true;
    }

    void _releaseCompute() override { m_particles.release(); }

    void _releaseGraphics() override {
        if (m_positionBuffer) glDeleteBuffers(1, &m_positionBuffer);
        m_positionBuffer = 0;
        m_program.release();
    }

private:
    GpuProgram m_program;
    ParticleSystemCl m_particles;
    GLuint m_positionBuffer = 0;
    const char* m_resultDetail = "";
};

}  // namespace

std::unique_ptr<DemoScene> makeClParticlesDemo() { return std::make_unique<ClParticlesDemo>(); }
