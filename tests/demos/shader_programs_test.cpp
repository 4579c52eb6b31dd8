// Every GLSL program the demos build from the held sources of media/shaders/, compiled and linked on Mesa
// through a headless EGL context of the kind its demo runs in: a typo in a shader file fails here, with the
// driver's log, instead of at a demo's start.
#include <GL/glew.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <string_view>

#include "demos/gl_utility/gpu_program.h"
#include "demos/gl_utility/render_window_gl.h"
#include "demos/gl_utility/shader_texts.h"

namespace {

// What a demo puts before a stage's text; a null prelude gives the text as it is (the engine demos').
constexpr const char* kAsIs = nullptr;
constexpr const char* kGl140 = "#version 140";
constexpr const char* kGl140Vertex = "#version 140\nprecision highp float;";
constexpr const char* kGl150 = "#version 150 core";
constexpr const char* kGl400 = "#version 400 core\n";
constexpr const char* kTorusLoop140 = "#version 140\n#define LIGHT_LOOP_END numLights\n";
constexpr const char* kTorusLoop140Vertex = "#version 140\n#define LIGHT_LOOP_END numLights\nprecision highp float;\n";
constexpr const char* kTorusLoop150 = "#version 150 core\n#define LIGHT_LOOP_END numLights\n";
constexpr const char* kTorusConstantLoop150 = "#version 150 core\n#define LIGHT_LOOP_END NUM_LIGHTS\n";
constexpr const char* kLongArrays = "#version 120\n#extension GL_EXT_gpu_shader4 : enable\n"
                                    "#extension GL_EXT_draw_instanced : enable\n#define ARRAY_SIZE 400\n";

struct ProgramRow {
    const char* program;
    uint32_t contextKind;
    const char* vertexPrelude;
    const char* prelude;  // of the other stages
    const char* vertex;
    const char* tessControl;  // null: no such stage
    const char* tessEvaluation;
    const char* pixel;
};

// One row per program and language line a demo on Mesa builds.
constexpr ProgramRow kPrograms[] = {
    {"triangle 1.40", RenderWindowGL::kGl32, kGl140Vertex, kGl140, "colored_triangle.vert", nullptr, nullptr,
     "vertex_color.frag"},
    {"triangle 1.50", RenderWindowGL::kGl32, kGl150, kGl150, "colored_triangle.vert", nullptr, nullptr,
     "vertex_color.frag"},
    {"torus 1.40", RenderWindowGL::kGl32, kTorusLoop140Vertex, kTorusLoop140, "lit_torus.vert", nullptr, nullptr,
     "lit_torus.frag"},
    {"torus 1.50", RenderWindowGL::kGl32, kTorusLoop150, kTorusLoop150, "lit_torus.vert", nullptr, nullptr,
     "lit_torus.frag"},
    {"torus, constant loop", RenderWindowGL::kGl32, kTorusConstantLoop150, kTorusConstantLoop150, "lit_torus.vert",
     nullptr, nullptr, "lit_torus.frag"},
    {"tessellation", RenderWindowGL::kGl40, kGl400, kGl400, "transformed_position.vert", "tessellated_triangle.tesc",
     "tessellated_triangle.tese", "vertex_color.frag"},
    {"corner logo 1.40", RenderWindowGL::kGl32, kGl140, kGl140, "textured_quad.vert", nullptr, nullptr,
     "textured_quad.frag"},
    {"corner logo 1.50", RenderWindowGL::kGl32, kGl150, kGl150, "textured_quad.vert", nullptr, nullptr,
     "textured_quad.frag"},
    {"corner logo 4.00", RenderWindowGL::kGl40, "#version 400 core", "#version 400 core", "textured_quad.vert",
     nullptr, nullptr, "textured_quad.frag"},
    {"CL particles", RenderWindowGL::kGl32, kGl150, kGl150, "transformed_position.vert", nullptr, nullptr,
     "particles.frag"},
    {"CL post effects", RenderWindowGL::kGl32, kGl150, kGl150, "post_fx_phong.vert", nullptr, nullptr,
     "post_fx_phong.frag"},
    {"CL deformer", RenderWindowGL::kGl32, kGl150, kGl150, "deformer_phong.vert", nullptr, nullptr,
     "deformer_phong.frag"},
    {"CL deformer 1.40", RenderWindowGL::kGl32, kGl140Vertex, kGl140, "deformer_phong.vert", nullptr, nullptr,
     "deformer_phong.frag"},
    {"toon", RenderWindowGL::kGl20, kAsIs, kAsIs, "toon.vert", nullptr, nullptr, "toon.frag"},
    {"fur", RenderWindowGL::kGl20, kAsIs, kAsIs, "fur.vert", nullptr, nullptr, "fur.frag"},
    {"asteroids", RenderWindowGL::kGl20, kLongArrays, kAsIs, "instanced_asteroid.vert", nullptr, nullptr,
     "planet_phong.frag"},
    {"planet", RenderWindowGL::kGl20, kAsIs, kAsIs, "planet_phong.vert", nullptr, nullptr, "planet_phong.frag"},
    {"asteroid belt", RenderWindowGL::kGl20, kAsIs, kAsIs, "asteroid_belt.vert", nullptr, nullptr,
     "asteroid_belt.frag"},
    {"depth of field", RenderWindowGL::kGl20, kAsIs, kAsIs, "texcoord_passthrough.vert", nullptr, nullptr,
     "depth_of_field.frag"},
    {"bright pass", RenderWindowGL::kGl20, kAsIs, kAsIs, "texcoord_passthrough.vert", nullptr, nullptr,
     "bright_pass.frag"},
    {"blur", RenderWindowGL::kGl20, kAsIs, kAsIs, "texcoord_passthrough.vert", nullptr, nullptr, "blur_3x3.frag"},
    {"viewer", RenderWindowGL::kGl20, kAsIs, kAsIs, "texcoord_passthrough.vert", nullptr, nullptr,
     "texture_copy.frag"},
    {"tone mapping", RenderWindowGL::kGl20, kAsIs, kAsIs, "texcoord_passthrough.vert", nullptr, nullptr,
     "tone_mapping.frag"},
    {"HDR sky", RenderWindowGL::kGl20, kAsIs, kAsIs, "texcoord_passthrough.vert", nullptr, nullptr, "hdr_sky.frag"},
    {"chromatic glass", RenderWindowGL::kGl20, kAsIs, kAsIs, "chromatic_glass.vert", nullptr, nullptr,
     "chromatic_glass.frag"},
    {"point sprites", RenderWindowGL::kGl20, kAsIs, kAsIs, "point_sprite.vert", nullptr, nullptr,
     "point_sprite.frag"},
    {"shadow ambient pass", RenderWindowGL::kGl20, kAsIs, kAsIs, "shadow_ambient.vert", nullptr, nullptr,
     "shadow_ambient.frag"},
    {"shadow Phong pass", RenderWindowGL::kGl20, kAsIs, kAsIs, "shadow_phong.vert", nullptr, nullptr,
     "shadow_phong.frag"},
    {"displaced terrain", RenderWindowGL::kGl20, kAsIs, kAsIs, "displaced_terrain.vert", nullptr, nullptr,
     "displaced_terrain.frag"},
};

std::string stage(const char* prelude, const char* name) {
    return prelude ? shaderSource(prelude, name) : std::string(shaderText(name));
}

// Compiles each stage, then links; the failing step and the driver's log otherwise.
testing::AssertionResult builds(const ProgramRow& row) {
    GpuProgram program;
    struct Stage {
        GpuProgram::StageKind kind;
        const char* prelude;
        const char* name;
    };
    const Stage stages[] = {{GpuProgram::kVertex, row.vertexPrelude, row.vertex},
                            {GpuProgram::kTessControl, row.prelude, row.tessControl},
                            {GpuProgram::kTessEvaluation, row.prelude, row.tessEvaluation},
                            {GpuProgram::kPixel, row.prelude, row.pixel}};
    for (const Stage& s : stages) {
        if (!s.name) continue;
        const std::string text = stage(s.prelude, s.name);
        if (!program.loadShader(s.kind, text.c_str(), text.size())) {
            const std::string log = program.errorText();
            program.release();
            return testing::AssertionFailure() << s.name << " does not compile:\n" << log;
        }
    }
    const bool linked = program.use();
    const std::string log = program.errorText();
    program.unuse();
    program.release();
    if (!linked) return testing::AssertionFailure() << "does not link:\n" << log;
    return testing::AssertionSuccess();
}

TEST(HeldShaders, EveryProgramOfEveryDemoCompilesAndLinksOnMesa) {
    for (const uint32_t kind : {RenderWindowGL::kGl20, RenderWindowGL::kGl32, RenderWindowGL::kGl40}) {
        RenderWindowGL window;
        ASSERT_TRUE(window.create(NativeWindow{}, 16, 16, 0, kind))
            << "no headless context of kind " << kind << ": the README's set-up installs Mesa";
        for (const ProgramRow& row : kPrograms) {
            if (row.contextKind != kind) continue;
            EXPECT_TRUE(builds(row)) << row.program;
        }
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
        window.release();
    }
}

TEST(HeldShaders, EveryFileIsHeldAndEveryHeldFileIsBuiltAbove) {
    std::set<std::string_view> used;
    for (const ProgramRow& row : kPrograms) {
        for (const char* name : {row.vertex, row.tessControl, row.tessEvaluation, row.pixel}) {
            if (!name) continue;
            EXPECT_FALSE(shaderText(name).empty()) << row.program << ": the program holds no " << name;
            used.insert(name);
        }
    }
    ASSERT_FALSE(shaderTexts().empty());
    for (const ShaderText& held : shaderTexts()) {
        EXPECT_TRUE(used.count(held.name)) << held.name << " is built by no program of this test";
        // The table's texts are literals: the zero byte that the driver's calls need follows each one.
        EXPECT_EQ(held.text.data()[held.text.size()], '\0') << held.name;
    }
    EXPECT_TRUE(shaderText("no_such_file.vert").empty());
    EXPECT_EQ(shaderSource("#version 150 core", "vertex_color.frag").rfind("#version 150 core\nin vec4", 0), 0u);
}

}  // namespace
