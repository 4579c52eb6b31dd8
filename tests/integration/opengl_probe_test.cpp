#include <gtest/gtest.h>

#include <GL/glew.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "kalidor/opengl/gl_cap_table.h"
#include "kalidor/opengl/gl_capability_reader.h"
#include "kalidor/render_window.h"

using namespace Kalidornm;

// Probes Mesa's llvmpipe through EGL with no display server, as the library's start does.
TEST(OpenGlProbeOnMesa, MakesA45CompatibilityContextAndReadsTheCatalogue) {
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    setenv("LIBGL_ALWAYS_SOFTWARE", "1", 1);
    RenderWindow window;
    GpuList gpus;
    // A second probe after tearing the first down must work as well as the first.
    ASSERT_TRUE(window.create(64, 64, 32, 24, 8, 0, 4, 5, true, gpus));
    window.destroyContext();
    ASSERT_TRUE(window.create(64, 64, 32, 24, 8, 0, 4, 5, true, gpus));

    const OpenGlState& gl = window.caps()->gl;
    ASSERT_NE(gl.versionText[0], '\0') << "no context was made";
    EXPECT_EQ(gl.numbers.majorVersion, 4);
    EXPECT_EQ(gl.numbers.minorVersion, 5);
    EXPECT_NE(std::string(gl.versionText).find("4.5"), std::string::npos);
    EXPECT_NE(std::string(gl.rendererText).find("llvmpipe"), std::string::npos);

    GLint profile = 0;
    glGetIntegerv(GL_CONTEXT_PROFILE_MASK, &profile);
    EXPECT_TRUE(profile & GL_CONTEXT_COMPATIBILITY_PROFILE_BIT);

    GLint numExtensions = 0;
    glGetIntegerv(GL_NUM_EXTENSIONS, &numExtensions);
    EXPECT_EQ(gl.glExtensionCount, numExtensions);
    EXPECT_GT(gl.wglExtensionCount, 0);  // the EGL display's names
    EXPECT_EQ(static_cast<size_t>(gl.glExtensionCount + gl.wglExtensionCount), gl.extensions.size());

    ASSERT_GT(gl.caps.size(), kGlCoreCapRows);
    EXPECT_STREQ(gl.caps[kGlCoreCapRows].name, "GL_CAP_SEPARATOR_01");
    EXPECT_EQ(capCountInGroup(gl, nullptr, nullptr), 1);
    for (const char* name : {"GL_MAX_TEXTURE_SIZE", "GL_MAX_SAMPLES", "GL_MAX_VERTEX_ATTRIBS",
                             "GL_MAX_COMPUTE_SHARED_MEMORY_SIZE", "GL_MAX_TESS_GEN_LEVEL"}) {
        int32_t index = -1;
        ASSERT_TRUE(findCapByName(gl, name, &index)) << name;
        GLint direct = -1;
        glGetIntegerv(gl.caps[index].pname, &direct);
        EXPECT_EQ(gl.caps[index].intValue, direct) << name;
    }
    int32_t index = -1;
    ASSERT_TRUE(findCapByName(gl, "GL_MAX_COMPUTE_WORK_GROUP_SIZE", &index));
    GLint directX = -1;
    glGetIntegeri_v(GL_MAX_COMPUTE_WORK_GROUP_SIZE, 0, &directX);
    EXPECT_EQ(gl.caps[index].tripleValue[0], directX);

    EXPECT_TRUE(hasCapability(*window.caps(), GlFeatureOpenGL20));
    EXPECT_TRUE(hasCapability(*window.caps(), GlFeatureFbo));
    ASSERT_FALSE(gl.msaaModes.empty());
    EXPECT_EQ(gl.maxSamples, gl.msaaModes.back().samples);

    std::string modes;
    for (const MsaaMode& m : gl.msaaModes) modes += std::to_string(m.samples) + " ";
    std::printf("GL %s | %s | %s | GLSL %s\nextensions GL=%d WGL=%d | catalogue %zu entries | MSAA %s\n",
                gl.versionText, gl.vendorText, gl.rendererText, gl.glslVersionText, gl.glExtensionCount,
                gl.wglExtensionCount, gl.caps.size(), modes.c_str());
}
