// "GL 4.x - Tessellation": one triangle subdivided by the tessellation stages, drawn as lines so that the
// subdivision shows, its levels swinging with time.
#include <GL/glew.h>

#include <algorithm>
#include <cmath>

#include "demos/demo_context.h"
#include "engine/vantalux.h"
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

constexpr const char* kLanguage = "#version 400 core\n";

class Gl4TessellationDemo : public DemoScene {
public:
    bool setUp(DemoContext& context, RenderWindowGL& window) override {
        int major = 0, minor = 0;
        if (!requireGl40(window, &major, &minor)) return false;
        GLint maxLevel = 0;
        glGetIntegerv(GL_MAX_TESS_GEN_LEVEL, &maxLevel);
        const float maxTessLevel = float(maxLevel);
        Vantalux_nsp::vxTraceMgr::getInstance()->logTrace(4, "GL 4 Tessellation: max_tess_level=%.1f",
                                                          double(maxTessLevel));
        // The upper bound first, so a maximum the driver reports as 0 still leaves level 1.
        DemoSettings& settings = context.settings;
        settings.gl4TessLevelOuter = std::max(1.0f, std::min(settings.gl4TessLevelOuter, maxTessLevel));
        settings.gl4TessLevelInner = std::max(1.0f, std::min(settings.gl4TessLevelInner, maxTessLevel));

        const vxVec3 eye{0, 0, 2}, center{0, 0, 0}, up{0, 1, 0};
        const vxMat4 projection =
            vxMat4::perspective(60.0f, float(context.clientWidth) / float(context.clientHeight), 1.0f, 500.0f);
        m_worldViewProjection = projection * vxMat4::lookAt(eye, center, up) * vxMat4::identity();

        const std::string language = kLanguage;
        if (!buildDemoProgram(m_program, {shaderSource(language, "transformed_position.vert"),
                                          shaderSource(language, "tessellated_triangle.tesc"),
                                          shaderSource(language, "tessellated_triangle.tese"),
                                          shaderSource(language, "vertex_color.frag")}))
            return false;
        m_program.setMatrix("WorldViewProjectionMatrix", m_worldViewProjection.data());
        m_program.set1f("tessLevelOuter", settings.gl4TessLevelOuter);
        m_program.set1f("tessLevelInner", settings.gl4TessLevelInner);
        if (!m_triangle.makeTriangle()) return false;
        m_logo.create("#version 400 core");
        return true;
    }

    void drawFrame(DemoContext& context, RenderWindowGL& window, float) override {
        glBindFramebuffer(GL_FRAMEBUFFER, window.framebuffer());
        glViewport(0, 0, context.clientWidth, context.clientHeight);
        glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
        glEnable(GL_DEPTH_TEST);
        glClearDepth(1.0);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);

        m_program.use();
        m_program.setMatrix("WorldViewProjectionMatrix", m_worldViewProjection.data());
        if (context.settings.gl4TessLevelAnim) {
            // Not clamped: the swing stays within 4 to 60 and 2 to 62, inside every 4.0 driver's range of 64.
            const float t = float(context.stats.elapsedMs) * 0.001f;
            m_program.set1f("tessLevelOuter", std::sin(t) * 28.0f + 32.0f);
            m_program.set1f("tessLevelInner", std::cos(t) * 30.0f + 32.0f);
        }
        glPatchParameteri(GL_PATCH_VERTICES, 3);
        m_triangle.positionAttrib = uint32_t(m_program.attribLocation("In_Position"));
        MeshDrawOptions options;
        options.patches = true;
        m_triangle.draw(options);

        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        m_logo.draw(context.clientWidth);
    }

    void release(DemoContext&) override {
        m_logo.release();
        m_program.release();
        m_triangle.release();
    }

    std::string fpsTitle(const DemoContext& context, RenderWindowGL& window) const override {
        return glDemoFpsTitle(context, window, "Tessellation");
    }

private:
    GpuProgram m_program;
    MeshGL m_triangle;
    CornerLogo m_logo;
    vxMat4 m_worldViewProjection;
};

}  // namespace

std::unique_ptr<DemoScene> makeGl4TessellationDemo() { return std::make_unique<Gl4TessellationDemo>(); }
