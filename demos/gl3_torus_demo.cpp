// "GL 3.x - Illuminated Torus": a turning torus lit per pixel by 13 fixed coloured lights.
#include <GL/glew.h>

#include <cmath>
#include <cstdlib>

#include "demo_context.h"
#include "gl_demo_support.h"
#include "gl_utility/corner_logo.h"
#include "gl_utility/mesh_gl.h"
#include "gl_utility/render_window_gl.h"
#include "harness/demo_table.h"

namespace {

constexpr int kLightCount = 13;
constexpr float kDegreesPerSecond = 14.5f;

constexpr const char* kVertexShader = R"(
#define NUM_LIGHTS 13
in vec4 In_Position;
in vec4 In_Normal;
in vec4 In_Color;
uniform mat4 WorldMatrix;
uniform mat4 ViewMatrix;
uniform mat4 ProjectionMatrix;
uniform vec4 lightsPosition[NUM_LIGHTS];
uniform int numLights;
out vec3 Normal;
out vec3 EyeVector;
out vec3 LightDirection[NUM_LIGHTS];
out vec4 Vertex_Color;
void main()
{
    mat4 modelView = ViewMatrix * WorldMatrix;
    vec4 viewPosition = modelView * In_Position;
    Normal = mat3(modelView) * In_Normal.xyz;
    EyeVector = -viewPosition.xyz;
    for (int i = 0; i < LIGHT_LOOP_END; ++i)
        LightDirection[i] = lightsPosition[i].xyz - viewPosition.xyz;
    Vertex_Color = In_Color;
    gl_Position = ProjectionMatrix * viewPosition;
}
)";

constexpr const char* kPixelShader = R"(
#define NUM_LIGHTS 13
uniform vec4 lightsDiffuse[NUM_LIGHTS];
uniform int numLights;
in vec3 Normal;
in vec3 EyeVector;
in vec3 LightDirection[NUM_LIGHTS];
in vec4 Vertex_Color;
out vec4 Out_Color;
void main()
{
    const vec4 lightDiffuse = vec4(0.1, 0.1, 0.1, 1.0);
    const vec4 materialDiffuse = vec4(0.8, 0.8, 0.8, 1.0);
    const vec4 materialSpecular = vec4(0.9, 0.9, 0.9, 1.0);
    const float shininess = 90.0;
    vec3 N = normalize(Normal);
    vec3 E = normalize(EyeVector);
    vec4 color = vec4(0.0);
    for (int i = 0; i < LIGHT_LOOP_END; ++i)
    {
        vec3 L = normalize(LightDirection[i]);
        float lambert = dot(N, L);
        if (lambert > 0.0)
        {
            color += lightDiffuse * materialDiffuse * lambert;
            float specular = pow(max(dot(reflect(-L, N), E), 0.0), shininess);
            color += lightsDiffuse[i] * materialSpecular * specular * lambert;
        }
    }
    Out_Color = vec4(color.rgb, 1.0);
}
)";

// A number from 0 to 32767 as the lights were designed for; the generator's own range is wider here.
float randomNumber() { return float(std::rand() & 0x7FFF); }

class Gl3TorusDemo : public DemoScene {
public:
    bool setUp(DemoContext& context, RenderWindowGL& window) override {
        int major = 0, minor = 0;
        if (!requireGl31(window, &major, &minor)) return false;
        m_rotationAngle = 90.0f;
        const float eye[3] = {0, 0, 10}, center[3] = {0, 0, 0}, up[3] = {0, 1, 0};
        const Mat4 projection =
            Mat4::perspective(60.0f, float(context.clientWidth) / float(context.clientHeight), 1.0f, 500.0f, 1e-5f);
        const Mat4 view = Mat4::lookAt(eye, center, up);
        _placeLights();

        // Some drivers miscompile the light loop over a uniform bound; by default the loop runs to the
        // constant, and the uniform is set either way.
        const std::string loopEnd = context.settings.gl3TorusRadeonFix ? "NUM_LIGHTS" : "numLights";
        const std::string language = gl3LanguageLine(minor);
        const std::string prelude = language + "\n#define LIGHT_LOOP_END " + loopEnd + "\n";
        const std::string vertexPrelude = minor < 2 ? prelude + "precision highp float;\n" : prelude;
        if (!buildDemoProgram(m_program, {vertexPrelude + kVertexShader, "", "", prelude + kPixelShader})) return false;
        m_program.setMatrix("WorldMatrix", Mat4::identity());
        m_program.setMatrix("ViewMatrix", view);
        m_program.setMatrix("ProjectionMatrix", projection);
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

        const Mat4 world = Mat4::rotationEuler(m_rotationAngle, m_rotationAngle - 90.0f, m_rotationAngle - 90.0f);
        m_rotationAngle += dt * kDegreesPerSecond;
        m_program.use();
        m_program.setMatrix("WorldMatrix", world);
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
