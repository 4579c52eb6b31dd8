// "GL 3.x - Illuminated Torus": a turning torus lit per pixel by 13 fixed coloured lights.
#include <GL/glew.h>

#include <cmath>
#include <cstdlib>

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

constexpr int kLightCount = 13;
constexpr float kDegreesPerSecond = 14.5f;

// A number from 0 to 32767 as the lights were designed for; the generator's own range is wider here.
float randomNumber() { return float(std::rand() & 0x7FFF); }

class Gl3TorusDemo : public DemoScene {
public:
    bool setUp(DemoContext& context, RenderWindowGL& window) override {
        int major = 0, minor = 0;
        if (!requireGl31(window, &major, &minor)) return false;
        m_rotationAngle = 90.0f;
        const vxVec3 eye{0, 0, 10}, center{0, 0, 0}, up{0, 1, 0};
        const vxMat4 projection =
            vxMat4::perspective(60.0f, float(context.clientWidth) / float(context.clientHeight), 1.0f, 500.0f);
        const vxMat4 view = vxMat4::lookAt(eye, center, up);
        _placeLights();

        // Some drivers miscompile the light loop over a uniform bound; by default the loop runs to the
        // constant, and the uniform is set either way.
        const std::string loopEnd = context.settings.gl3TorusRadeonFix ? "NUM_LIGHTS" : "numLights";
        const std::string language = gl3LanguageLine(minor);
        const std::string prelude = language + "\n#define LIGHT_LOOP_END " + loopEnd + "\n";
        const std::string vertexPrelude = minor < 2 ? prelude + "precision highp float;\n" : prelude;
        if (!buildDemoProgram(m_program, {shaderSource(vertexPrelude, "lit_torus.vert"), "", "",
                                          shaderSource(prelude, "lit_torus.frag")})) return false;
        m_program.setMatrix("WorldMatrix", vxMat4::identity().data());
        m_program.setMatrix("ViewMatrix", view.data());
        m_program.setMatrix("ProjectionMatrix", projection.data());
        m_program.set4fArray("lightsPosition", kLightCount, m_lightsPosition);
        m_program.set4fArray("lightsDiffuse", kLightCount, m_lightsDiffuse);
        m_program.set1i("numLights", kLightCount);

        if (!m_torus.makeTorus(4.0f, 1.5f, 200)) return false;
        m_logo.create(language.c_str());
        glPolygonMode(GL_FRONT_AND_BACK, GL_FILL);
        glDisable(GL_CULL_FACE);
        return true;
    }

    void drawFrame(DemoContext& context, RenderWindowGL& window, float dt) override {
        glBindFramebuffer(GL_FRAMEBUFFER, window.framebuffer());
        glViewport(0, 0, context.clientWidth, context.clientHeight);
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
        m_torus.colorAttrib = uint32_t(m_program.attribLocation("In_Color"));
        MeshDrawOptions options;
        options.useNormals = true;
        options.useColors = true;
        m_torus.draw(options);
        m_logo.draw(context.clientWidth);
    }

    void release(DemoContext&) override {
        m_logo.release();
        m_program.release();
        m_torus.release();
    }

    std::string fpsTitle(const DemoContext& context, RenderWindowGL& window) const override {
        return glDemoFpsTitle(context, window, "Torus");
    }

private:
    // Fixed in eye space, 20 units out in random directions; the C library's generator starts from the same
    // state in every run, so every run gets the same lights.
    void _placeLights() {
        for (int i = 0; i < kLightCount; ++i) {
            float x = randomNumber() / 16384.0f - 1.0f, y = randomNumber() / 16384.0f - 1.0f,
                  z = randomNumber() / 16384.0f - 1.0f;
            const float length = std::sqrt(x * x + y * y + z * z);
            if (length > 0.0f) x /= length, y /= length, z /= length;
            float* position = m_lightsPosition + i * 4;
            position[0] = x * 20.0f, position[1] = y * 20.0f, position[2] = z * 20.0f, position[3] = 1.0f;
            float* diffuse = m_lightsDiffuse + i * 4;
            diffuse[0] = randomNumber() / 65536.0f + 0.1f;
            diffuse[1] = randomNumber() / 65536.0f + 0.1f;
            diffuse[2] = randomNumber() * 0.7f / 32768.0f + 0.1f;
            diffuse[3] = 1.0f;
        }
    }

    GpuProgram m_program;
    MeshGL m_torus;
    CornerLogo m_logo;
    float m_rotationAngle = 90.0f;
    float m_lightsPosition[kLightCount * 4] = {};
    float m_lightsDiffuse[kLightCount * 4] = {};
};

}  // namespace

std::unique_ptr<DemoScene> makeGl3TorusDemo() { return std::make_unique<Gl3TorusDemo>(); }
