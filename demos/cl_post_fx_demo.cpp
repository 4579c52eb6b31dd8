// "CL GPU - Post FX" and its CPU twin: a lit torus, read back each frame, made to glow by an OpenCL filter
// and shown over the whole window.
#include <GL/glew.h>

#include "demos/demo_context.h"
#include "engine/vx_math.h"
#include "demos/gl_demo_support.h"
#include "demos/gl_utility/mesh_gl.h"
#include "demos/gl_utility/render_window_gl.h"
#include "demos/gl_utility/shader_texts.h"
#include "demos/harness/demo_host.h"
#include "demos/harness/demo_media.h"
#include "demos/harness/demo_table.h"
#include "demos/opencl/cl_demo_scene.h"
#include "demos/opencl/post_fx_cl.h"
#include "demos/opencl/window_image.h"

namespace {

using Vantalux_nsp::vxMat4;
using Vantalux_nsp::vxVec3;

constexpr float kDegreesPerSecond = 14.5f;

constexpr ClDemoTraits kTraits = {.fpsWhat = "PostFX",
                                  .needsPlatformList = false,
                                  .requiredKernelFile = nullptr,
                                  .platformRule = ClDemoSession::PlatformRule::FirstWithDeviceType,
                                  .platformBuildOptions = true};

class ClPostFxDemo : public ClDemoScene {
public:
    ClPostFxDemo() : ClDemoScene(kTraits) {}

    void drawFrame(DemoContext& context, RenderWindowGL& window, float dt) override {
        const int width = context.clientWidth, height = context.clientHeight;
        glBindFramebuffer(GL_FRAMEBUFFER, window.framebuffer());
        glViewport(0, 0, width, height);
        glClearColor(0.0f, 0.0f, 0.1f, 1.0f);
        glEnable(GL_DEPTH_TEST);
        glClearDepth(1.0);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        const vxMat4 world =
            vxMat4::rotationAboutXYZ(m_rotationAngle, m_rotationAngle - 90.0f, m_rotationAngle - 90.0f);
        m_rotationAngle += dt * kDegreesPerSecond;
        m_program.use();
        m_program.setMatrix("WorldMatrix", world.data());
        m_torus.positionAttrib = uint32_t(m_program.attribLocation("In_Position"));
        m_torus.normalAttrib = uint32_t(m_program.attribLocation("In_Normal"));
        MeshDrawOptions options;
        options.useNormals = true;
        m_torus.draw(options);

        _readFrameIntoFilter(window);
        if (m_filter.enqueueFilter()) {
            glBindBuffer(GL_PIXEL_UNPACK_BUFFER, m_pixelBuffers[1]);
            if (void* target = glMapBuffer(GL_PIXEL_UNPACK_BUFFER, GL_WRITE_ONLY)) {
                m_filter.readOutput(target);
                glUnmapBuffer(GL_PIXEL_UNPACK_BUFFER);
            }
            glBindTexture(GL_TEXTURE_2D, m_image.texture());
            glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, width, height, GL_BGRA, GL_UNSIGNED_BYTE, nullptr);
            glBindTexture(GL_TEXTURE_2D, 0);
            glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
            m_image.draw(width, height);
        }
        m_logo.draw(width);
    }

protected:
    bool _buildGraphics(DemoContext& context, RenderWindowGL& window, const std::string& language) override {
        const int width = context.clientWidth, height = context.clientHeight;
        m_rotationAngle = 90.0f;
        if (!buildDemoProgram(m_program, {shaderSource(_vertexLanguage(language), "post_fx_phong.vert"), "", "",
                                          shaderSource(language, "post_fx_phong.frag")}))
            return false;
        const vxVec3 eye{0, 20, 50}, center{0, 0, 0}, up{0, 1, 0};
        m_program.setMatrix("WorldMatrix", vxMat4::identity().data());
        m_program.setMatrix("ViewMatrix", vxMat4::lookAt(eye, center, up).data());
        m_program.setMatrix("ProjectionMatrix",
                            vxMat4::perspective(60.0f, float(width) / float(height), 1.0f, 500.0f).data());
        if (!m_torus.makeTorus(20.0f, 8.0f, 100)) return false;
        if (!m_image.create(language.c_str(), width, height)) {
            demoShowError("Shader program creation failed: %s", m_image.errorText());
            return false;
        }
        const GLsizeiptr bytes = GLsizeiptr(width) * height * 4;
        glGenBuffers(2, m_pixelBuffers);
        glBindBuffer(GL_PIXEL_PACK_BUFFER, m_pixelBuffers[0]);
        glBufferData(GL_PIXEL_PACK_BUFFER, bytes, nullptr, GL_STREAM_READ);
        glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
        glBindBuffer(GL_PIXEL_UNPACK_BUFFER, m_pixelBuffers[1]);
        glBufferData(GL_PIXEL_UNPACK_BUFFER, bytes, nullptr, GL_STREAM_DRAW);
        glBindBuffer(GL_PIXEL_UNPACK_BUFFER, 0);
        if (window.headless() && window.samples() > 0) _makeResolveTarget(width, height);
        glBindFramebuffer(GL_FRAMEBUFFER, window.framebuffer());
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        glDisable(GL_CULL_FACE);
        return true;
    }

    bool _kernelSource(std::string* source) override {
        if (!readDemoMediaText("postfx.cl", source)) *source = heldPostFxSource();
        return true;
    }

    bool _buildCompute(DemoContext& context, RenderWindowGL&) override {
        const DemoSettings& s = context.settings;
        cl_int error = CL_SUCCESS;
        if (!m_filter.create(m_session, context.clientWidth, context.clientHeight, s.clUseLocalMem,
                             s.clExplicitWorkgroupSize, &error))
            return _failCompute(context, error);
        return true;
    }

    void _releaseCompute() override { m_filter.release(); }

    void _releaseGraphics() override {
        if (m_pixelBuffers[0]) glDeleteBuffers(2, m_pixelBuffers);
        m_pixelBuffers[0] = m_pixelBuffers[1] = 0;
        if (m_resolveFramebuffer) glDeleteFramebuffers(1, &m_resolveFramebuffer);
        if (m_resolveColor) glDeleteRenderbuffers(1, &m_resolveColor);
        m_resolveFramebuffer = m_resolveColor = 0;
        m_image.release();
        m_program.release();
        m_torus.release();
    }

private:
    // A multisampled offscreen frame cannot be read as it is; it is resolved into this one first.
    void _makeResolveTarget(int width, int height) {
        glGenFramebuffers(1, &m_resolveFramebuffer);
        glGenRenderbuffers(1, &m_resolveColor);
        glBindRenderbuffer(GL_RENDERBUFFER, m_resolveColor);
        glRenderbufferStorage(GL_RENDERBUFFER, GL_RGBA8, width, height);
        glBindRenderbuffer(GL_RENDERBUFFER, 0);
        glBindFramebuffer(GL_FRAMEBUFFER, m_resolveFramebuffer);
        glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, m_resolveColor);
    }

    // The whole frame as BGRA bytes through the first pixel buffer into the filter's input.
    void _readFrameIntoFilter(RenderWindowGL& window) {
        const int width = window.width, height = window.height;
        if (m_resolveFramebuffer) {
            glBindFramebuffer(GL_READ_FRAMEBUFFER, window.framebuffer());
            glBindFramebuffer(GL_DRAW_FRAMEBUFFER, m_resolveFramebuffer);
            glBlitFramebuffer(0, 0, width, height, 0, 0, width, height, GL_COLOR_BUFFER_BIT, GL_NEAREST);
            glBindFramebuffer(GL_READ_FRAMEBUFFER, m_resolveFramebuffer);
        }
        glBindBuffer(GL_PIXEL_PACK_BUFFER, m_pixelBuffers[0]);
        glReadPixels(0, 0, width, height, GL_BGRA, GL_UNSIGNED_BYTE, nullptr);
        if (const void* pixels = glMapBuffer(GL_PIXEL_PACK_BUFFER, GL_READ_ONLY)) {
            m_filter.writeInput(pixels);
            glUnmapBuffer(GL_PIXEL_PACK_BUFFER);
        }
        glBindBuffer(GL_PIXEL_PACK_BUFFER, 0);
        glBindFramebuffer(GL_FRAMEBUFFER, window.framebuffer());
    }

    GpuProgram m_program;
    MeshGL m_torus;
    WindowImage m_image;
    PostFxCl m_filter;
    GLuint m_pixelBuffers[2] = {0, 0};
    GLuint m_resolveFramebuffer = 0;
    GLuint m_resolveColor = 0;
    float m_rotationAngle = 90.0f;
};

}  // namespace

std::unique_ptr<DemoScene> makeClPostFxDemo() { return std::make_unique<ClPostFxDemo>(); }
