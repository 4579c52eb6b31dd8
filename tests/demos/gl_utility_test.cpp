// The GL utility layer on a real driver: Mesa through a headless EGL context, no display needed.
#include <GL/glew.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "demos/gl_utility/gpu_program.h"
#include "demos/gl_utility/image_codec.h"
#include "demos/gl_utility/mesh_gl.h"
#include "demos/gl_utility/render_window_gl.h"
#include "demos/gl_utility/textured_quad.h"
#include "engine/vx_math.h"
#include "unit/compute_test_log.h"

namespace {

using Vantalux_nsp::vxMat4;

constexpr int kSize = 64;

class HeadlessWindow : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(window.create(NativeWindow{}, kSize, kSize, 0, RenderWindowGL::kGl32))
            << "no OpenGL 3.2 context: the README's set-up installs Mesa";
    }
    void TearDown() override { window.release(); }

    // RGBA of pixel (x, y), y counted from the bottom.
    std::vector<uint8_t> pixelAt(const std::vector<uint8_t>& frame, int x, int y) {
        const size_t at = (size_t(y) * kSize + size_t(x)) * 4;
        return {frame[at], frame[at + 1], frame[at + 2], frame[at + 3]};
    }

    RenderWindowGL window;
};

const std::string kVertex = R"(#version 150 core
in vec4 In_Position;
in vec4 In_Color;
out vec4 Vertex_Color;
void main() { gl_Position = In_Position; Vertex_Color = In_Color; }
)";

const std::string kPixel = R"(#version 150 core
in vec4 Vertex_Color;
uniform vec4 tint;
out vec4 Out_Color;
void main() { Out_Color = Vertex_Color * tint; }
)";

TEST_F(HeadlessWindow, ContextComesUpWithItsStartingStateAndReadsBackWhatWasDrawn) {
    int major = 0, minor = 0;
    ASSERT_TRUE(window.getVersion(&major, &minor));
    EXPECT_GE(major * 10 + minor, 32);
    EXPECT_TRUE(window.headless());
    EXPECT_NE(window.framebuffer(), 0u);
    EXPECT_TRUE(window.makeCurrent());
    // The first clear is green, depth testing on with LEQUAL, culling on.
    window.present();
    std::vector<uint8_t> frame;
    ASSERT_TRUE(window.readLastFrame(frame));
    EXPECT_EQ(pixelAt(frame, kSize / 2, kSize / 2), (std::vector<uint8_t>{0, 255, 0, 255}));
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_TRUE(glIsEnabled(GL_CULL_FACE));
    GLint depthFunction = 0;
    glGetIntegerv(GL_DEPTH_FUNC, &depthFunction);
    EXPECT_EQ(depthFunction, GL_LEQUAL);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(HeadlessWindow, ShaderErrorsAreReportedAtCompileAndAtFirstUse) {
    GpuProgram program;
    EXPECT_FALSE(program.loadVertexShader(nullptr, 10));
    EXPECT_FALSE(program.loadVertexShader(kVertex.c_str(), 0));
    EXPECT_FALSE(program.use());  // nothing loaded, nothing to link

    const std::string broken = "#version 150 core\nvoid main() { gl_Position = undeclared; }\n";
    EXPECT_FALSE(program.loadVertexShader(broken.c_str(), broken.size()));
    EXPECT_NE(std::string(program.errorText()).find("undeclared"), std::string::npos) << program.errorText();
    EXPECT_FALSE(program.loadShader(GpuProgram::kTessControl, broken.c_str(), broken.size()));
    EXPECT_STRNE(program.errorText(), "");

    // Stages that compile but do not fit together fail at the first use, with the linker's words.
    GpuProgram mismatched;
    const std::string writesVec2 =
        "#version 150 core\nout vec2 shade;\nvoid main() { shade = vec2(1.0); gl_Position = vec4(0.0); }\n";
    const std::string readsVec4 = "#version 150 core\nin vec4 shade;\nout vec4 c;\nvoid main() { c = shade; }\n";
    ASSERT_TRUE(mismatched.loadVertexShader(writesVec2.c_str(), writesVec2.size()));
    ASSERT_TRUE(mismatched.loadPixelShader(readsVec4.c_str(), readsVec4.size()));
    EXPECT_FALSE(mismatched.use());
    EXPECT_NE(std::string(mismatched.errorText()).find("shade"), std::string::npos) << mismatched.errorText();
    EXPECT_FALSE(mismatched.use());  // a failed link stays failed
    program.release();
    mismatched.release();
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

// The demos' habits log every failure and link again at every use; the engine's log nothing, name the
// failures the driver left without words and give up on a failed link until a stage changes.
TEST_F(HeadlessWindow, EachUserKeepsItsWayOfReportingAndRetryingAFailedLink) {
    TestLog log;
    base::installProgramLog(&log);
    const std::string broken = "#version 150 core\nvoid main() { gl_Position = undeclared; }\n";
    const std::string writesVec2 =
        "#version 150 core\nout vec2 shade;\nvoid main() { shade = vec2(1.0); gl_Position = vec4(0.0); }\n";
    const std::string readsVec4 = "#version 150 core\nin vec4 shade;\nout vec4 c;\nvoid main() { c = shade; }\n";

    GpuProgram demos;
    EXPECT_FALSE(demos.loadVertexShader(broken.c_str(), broken.size()));
    EXPECT_FALSE(demos.loadShader(GpuProgram::kGeometry, broken.c_str(), broken.size()));
    ASSERT_TRUE(demos.loadVertexShader(writesVec2.c_str(), writesVec2.size()));
    ASSERT_TRUE(demos.loadPixelShader(readsVec4.c_str(), readsVec4.size()));
    EXPECT_FALSE(demos.use());
    EXPECT_FALSE(demos.use());
    const std::vector<std::string> lines = log.messages();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].rfind("Vertex Shader Error: ", 0), 0u) << lines[0];
    EXPECT_EQ(lines[1].rfind("Geometry shader error: ", 0), 0u) << lines[1];
    EXPECT_EQ(lines[2].rfind("Shader program Error: ", 0), 0u) << lines[2];
    EXPECT_EQ(lines[3], lines[2]);  // linked, and logged, again
    demos.release();

    log.clear();
    GpuProgram engine(GpuProgramHabits{.logFailures = false, .retryFailedLink = false, .nameSilentFailures = true});
    EXPECT_FALSE(engine.link());
    EXPECT_STREQ(engine.errorText(), "no stage loaded");
    EXPECT_FALSE(engine.loadPixelShader("", 0));
    EXPECT_STREQ(engine.errorText(), "empty shader source");
    EXPECT_FALSE(engine.loadVertexShader(broken.c_str(), broken.size()));
    EXPECT_NE(std::string(engine.errorText()).find("undeclared"), std::string::npos) << engine.errorText();
    ASSERT_TRUE(engine.loadVertexShader(writesVec2.c_str(), writesVec2.size()));
    ASSERT_TRUE(engine.loadPixelShader(readsVec4.c_str(), readsVec4.size()));
    EXPECT_FALSE(engine.link());
    const std::string linkLog = engine.errorText();
    EXPECT_NE(linkLog.find("shade"), std::string::npos) << linkLog;
    EXPECT_FALSE(engine.use());
    EXPECT_EQ(engine.errorText(), linkLog);
    // A stage that compiles replaces the old one and earns a new link.
    const std::string readsVec2 = "#version 150 core\nin vec2 shade;\nout vec4 c;\nvoid main() { c = shade.xyxy; }\n";
    ASSERT_TRUE(engine.loadPixelShader(readsVec2.c_str(), readsVec2.size()));
    EXPECT_TRUE(engine.use()) << engine.errorText();
    EXPECT_TRUE(log.messages().empty());
    engine.release();
    base::installProgramLog(nullptr);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_F(HeadlessWindow, UniformsTheCompilerDroppedAreSkippedWithoutAnError) {
    GpuProgram program;
    ASSERT_TRUE(program.loadVertexShader(kVertex.c_str(), kVertex.size()));
    ASSERT_TRUE(program.loadPixelShader(kPixel.c_str(), kPixel.size()));
    ASSERT_TRUE(program.use()) << program.errorText();
    program.set4f("tint", 1, 1, 1, 1);
    program.set1f("no_such_uniform", 2.0f);
    program.setMatrix("also_missing", vxMat4::identity().data());
    const float values[8] = {};
    program.set4fArray("missing_array", 2, values);
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_EQ(program.attribLocation("no_such_input"), -1);
    program.release();
}

TEST_F(HeadlessWindow, MeshesWithThirtyTwoBitIndicesDrawAsWellAsSixteenBitOnes) {
    GpuProgram program;
    ASSERT_TRUE(program.loadVertexShader(kVertex.c_str(), kVertex.size()));
    ASSERT_TRUE(program.loadPixelShader(kPixel.c_str(), kPixel.size()));
    ASSERT_TRUE(program.use());
    program.set4f("tint", 1, 1, 1, 1);
    glDisable(GL_CULL_FACE);
    for (int segments : {8, 300}) {  // 128 faces, then 180,000 faces
        MeshGL grid;
        ASSERT_TRUE(grid.makeGrid(2.0f, 2.0f, segments, segments));
        // Stand the grid up so that it fills the clip square: z becomes y.
        for (uint32_t i = 0; i < grid.vertexCount; ++i) {
            float* p = grid.positions.get() + size_t(i) * 4;
            p[1] = p[2], p[2] = 0.0f;
        }
        const float red[4] = {1, 0, 0, 1};
        grid.setAllColors(red);
        grid.positionAttrib = uint32_t(program.attribLocation("In_Position"));
        grid.colorAttrib = uint32_t(program.attribLocation("In_Color"));
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        MeshDrawOptions options;
        options.useColors = true;
        grid.draw(options);
        grid.draw(options);  // the second draw only binds
        window.present();
        std::vector<uint8_t> frame;
        ASSERT_TRUE(window.readLastFrame(frame));
        for (int y : {1, kSize / 2, kSize - 2}) {
            for (int x : {1, kSize / 2, kSize - 2}) {
                EXPECT_EQ(pixelAt(frame, x, y)[0], 255) << segments << " segments at " << x << "," << y;
            }
        }
        grid.release();
        EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR)) << segments;
    }
    program.release();
}

TEST_F(HeadlessWindow, TexturedQuadCoversTheViewportAndHandsBackTheStatesItTurnedOff) {
    TexturedQuad quad;
    EXPECT_FALSE(quad.create("#version 9999"));
    EXPECT_STRNE(quad.errorText(), "");
    ASSERT_TRUE(quad.create("#version 150 core")) << quad.errorText();
    // A 2x2 texture: red, green on the bottom row, blue, white on the top one.
    const uint8_t texels[16] = {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255};
    GLuint texture = 0;
    glGenTextures(1, &texture);
    glBindTexture(GL_TEXTURE_2D, texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 2, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    glClearColor(0, 0, 0, 1);
    glClearDepth(0.0);  // a depth test left on would hide the quad
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glViewport(0, 0, kSize, kSize);
    glEnable(GL_CULL_FACE);
    quad.draw(texture);
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_TRUE(glIsEnabled(GL_CULL_FACE));
    GLboolean depthWrites = GL_FALSE;
    glGetBooleanv(GL_DEPTH_WRITEMASK, &depthWrites);
    EXPECT_EQ(depthWrites, GL_TRUE);
    window.present();
    std::vector<uint8_t> frame;
    ASSERT_TRUE(window.readLastFrame(frame));
    EXPECT_EQ(pixelAt(frame, 8, 8), (std::vector<uint8_t>{255, 0, 0, 255}));
    EXPECT_EQ(pixelAt(frame, kSize - 8, 8), (std::vector<uint8_t>{0, 255, 0, 255}));
    EXPECT_EQ(pixelAt(frame, 8, kSize - 8), (std::vector<uint8_t>{0, 0, 255, 255}));
    EXPECT_EQ(pixelAt(frame, kSize - 8, kSize - 8), (std::vector<uint8_t>{255, 255, 255, 255}));
    glClearDepth(1.0);
    glDeleteTextures(1, &texture);
    quad.release();
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST(HeadlessContexts, EveryKindComesUpAtLeastAtItsVersionAndUnknownKindsMakeNothing) {
    for (uint32_t kind = RenderWindowGL::kGl20; kind <= RenderWindowGL::kGl41; ++kind) {
        RenderWindowGL window;
        ASSERT_TRUE(window.create(NativeWindow{}, 32, 16, 0, kind)) << "no headless context of kind " << kind;
        int major = 0, minor = 0;
        ASSERT_TRUE(window.getVersion(&major, &minor));
        const int asked[] = {20, 30, 31, 32, 40, 41};
        EXPECT_GE(major * 10 + minor, asked[kind]) << kind;
        window.release();
        EXPECT_FALSE(window.valid);
        EXPECT_FALSE(window.makeCurrent());
    }
    RenderWindowGL unknown;
    EXPECT_FALSE(unknown.create(NativeWindow{}, 32, 32, 0, 6));
    EXPECT_FALSE(unknown.create(NativeWindow{}, 0, 32, 0, RenderWindowGL::kGl32));
    EXPECT_FALSE(unknown.valid);
}

TEST(HeadlessContexts, AMultisampledFramebufferIsResolvedForReading) {
    RenderWindowGL window;
    ASSERT_TRUE(window.create(NativeWindow{}, 48, 48, 3, RenderWindowGL::kGl32)) << "no headless context";
    // Asking for 3 gets what the driver offers, never less than one sample buffer's worth.
    EXPECT_GT(window.samples(), 0);
    glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    window.present();
    std::vector<uint8_t> frame;
    ASSERT_TRUE(window.readLastFrame(frame));
    EXPECT_EQ(frame[(24 * 48 + 24) * 4 + 2], 255);
    window.release();
}

TEST(ImageCodec, DecodesImagesAndRefusesWhatIsNotOne) {
    DecodedImage image;
    const uint8_t garbage[] = {1, 2, 3, 4, 5, 6, 7, 8};
    EXPECT_FALSE(decodeImageMemory(garbage, sizeof garbage, image));
    EXPECT_FALSE(decodeImageMemory(nullptr, 10, image));
    EXPECT_FALSE(decodeImageFile("/nonexistent/texture.png", image));
    EXPECT_FALSE(decodeImageFile(nullptr, image));
    // A truncated PNG header is not an image either.
    const uint8_t truncatedPng[] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n', 0, 0, 0, 13};
    EXPECT_FALSE(decodeImageMemory(truncatedPng, sizeof truncatedPng, image));
    EXPECT_TRUE(image.rgba.empty());

    // A 2x1 grey-scale PGM comes out as opaque RGBA.
    const char pgm[] = "P5\n2 1\n255\n\x10\x20";
    ASSERT_TRUE(decodeImageMemory(reinterpret_cast<const uint8_t*>(pgm), sizeof pgm - 1, image));
    EXPECT_EQ(image.width, 2);
    EXPECT_EQ(image.height, 1);
    EXPECT_EQ(image.rgba, (std::vector<uint8_t>{0x10, 0x10, 0x10, 255, 0x20, 0x20, 0x20, 255}));
}

TEST(ImageCodec, AWrittenPngReadsBackWithItsRowsInOrderAndItsAlphaDropped) {
    // Bottom row red and green, top row blue and white, half transparent: the file keeps the colours only.
    const std::vector<uint8_t> rgba = {255, 0, 0, 128, 0, 255, 0, 128, 0, 0, 255, 128, 255, 255, 255, 128};
    const std::string path = ::testing::TempDir() + "codec_round_trip.png";
    ASSERT_TRUE(writePng(path, rgba, 2, 2));
    DecodedImage back;
    ASSERT_TRUE(decodeImageFile(path.c_str(), back));
    std::remove(path.c_str());
    ASSERT_EQ(back.width, 2);
    ASSERT_EQ(back.height, 2);
    std::vector<uint8_t> opaque = rgba;
    for (size_t i = 3; i < opaque.size(); i += 4) opaque[i] = 255;
    EXPECT_EQ(back.rgba, opaque);
    // Sizes that do not fit the bytes, and a folder that does not exist, write nothing.
    EXPECT_FALSE(writePng(path, rgba, 3, 2));
    EXPECT_FALSE(writePng("/nonexistent/frame.png", rgba, 2, 2));
}

}  // namespace
