// "GL 3.x - Triangle of Death": one triangle with a colour at each corner.
#include <GL/glew.h>

#include "demos/demo_context.h"
#include "engine/vx_math.h"
#include "demos/gl_demo_support.h"
#include "demos/gl_utility/corner_logo.h"
#include "demos/gl_utility/mesh_gl.h"
#include "demos/gl_utility/render_window_gl.h"
#include "demos/gl_utility/shader_texts.h"
#include "demos/harness/demo_table.h"

namespace {

using Vantalux_nsp::vxMat4;
using Vantalux_nsp::vxVec3;

class Gl3TriangleDemo : public DemoScene {
public:
    bool setUp(DemoContext& context, RenderWindowGL& window) override {
        int major = 0, minor = 0;
        if (!requireGl31(window, &major, &minor)) return false;
        const vxVec3 eye{0, 0, 2}, center{0, 0, 0}, up{0, 1, 0};
        const vxMat4 projection =
            vxMat4::perspective(60.0f, float(context.clientWidth) / float(context.clientHeight), 1.0f, 500.0f);
        m_worldViewProjection = projection * vxMat4::lookAt(eye, center, up) * vxMat4::identity();

        const std::string language = gl3LanguageLine(minor);
        // The 1.40 set states the float precision in the vertex stage as well.
        const std::string vertexPrelude = minor < 2 ? language + "\nprecision highp float;" : language;
        if (!buildDemoProgram(m_program, {shaderSource(vertexPrelude, "colored_triangle.vert"), "", "",
                                          shaderSource(language, "vertex_color.frag")}))
            return false;
        m_program.setMatrix("WorldViewProjectionMatrix", m_worldViewProjection.data());
        if (!m_triangle.makeTriangle()) return false;
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        glDisable(GL_CULL_FACE);
        m_logo.create(language.c_str());
        return true;
    }

    void drawFrame(DemoContext& context, RenderWindowGL& window, float) override {
        glBindFramebuffer(GL_FRAMEBUFFER, window.framebuffer());
        glViewport(0, 0, context.clientWidth, context.clientHeight);
        glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
        glEnable(GL_DEPTH_TEST);
        glClearDepth(1.0);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        m_program.use();
        m_program.setMatrix("WorldViewProjectionMatrix", m_worldViewProjection.data());
        m_triangle.positionAttrib = uint32_t(m_program.attribLocation("In_Position"));
        m_triangle.colorAttrib = uint32_t(m_program.attribLocation("In_Color"));
        MeshDrawOptions options;
        options.useColors = true;
        m_triangle.draw(options);
        m_logo.draw(context.clientWidth);
    }

    void release(DemoContext&) override {
        m_logo.release();
        m_program.release();
        m_triangle.release();
    }

    std::string fpsTitle(const DemoContext& context, RenderWindowGL& window) const override {
        return glDemoFpsTitle(context, window, "Triangle");
    }

private:
    GpuProgram m_program;
    MeshGL m_triangle;
    CornerLogo m_logo;
    vxMat4 m_worldViewProjection;
};

}  // namespace

std::unique_ptr<DemoScene> makeGl3TriangleDemo() { return std::make_unique<Gl3TriangleDemo>(); }
