#include <gtest/gtest.h>

#include <string>

#include "kalidor/opengl/extension_list.h"
#include "kalidor/opengl/extension_link_table.h"
#include "fake_gl_api.h"

using namespace Kalidornm;

TEST(ExtensionTokeniser, OnlyBlankTerminatedNamesAreTokens) {
    EXPECT_EQ(tokenizeExtensions("GL_A GL_B "), (std::vector<std::string>{"GL_A", "GL_B"}));
    // The name behind the last blank is lost.
    EXPECT_EQ(tokenizeExtensions("GL_A GL_B"), (std::vector<std::string>{"GL_A"}));
    EXPECT_EQ(tokenizeExtensions("GL_A  GL_B "), (std::vector<std::string>{"GL_A", "", "GL_B"}));
    EXPECT_TRUE(tokenizeExtensions("").empty());
    EXPECT_TRUE(tokenizeExtensions(nullptr).empty());
    EXPECT_EQ(tokenizeExtensions((std::string(130, 'x') + " ").c_str())[0].size(), 127u);
}

TEST(ExtensionTokeniser, HasExtensionComparesThe127FirstCharacters) {
    const std::string longName(130, 'n');
    std::vector<std::string> names = {longName.substr(0, 127)};
    EXPECT_TRUE(hasExtension(names, longName.c_str()));
    EXPECT_FALSE(hasExtension({}, "GL_ARB_sync"));
    EXPECT_FALSE(hasExtension({"GL_ARB_sync"}, "GL_ARB_syn"));
}

TEST(ExtensionList, IndexedPathCountsWglNamesAndSkipsPlatformDuplicates) {
    FakeGlApi api;
    api.indexedExtensions = {"GL_ARB_sync", nullptr, "WGL_EXT_swap_control", "GL_EXT_texture_array"};
    api.platform = "WGL_EXT_swap_control EGL_KHR_create_context  EGL_MESA_x ";
    OpenGlState state;
    ASSERT_TRUE(buildOpenGLExtensionsList(api, state));
    // A null name is missing from the list but counted; the WGL-looking name counts on the other side.
    EXPECT_EQ(state.glExtensionCount, 3);
    EXPECT_EQ(state.extensions, (std::vector<std::string>{"GL_ARB_sync", "WGL_EXT_swap_control",
                                                          "GL_EXT_texture_array", "EGL_KHR_create_context", "",
                                                          "EGL_MESA_x"}));
    EXPECT_EQ(state.glExtensionCount + state.wglExtensionCount, static_cast<int32_t>(state.extensions.size()));
}

TEST(ExtensionList, EmptyDriverListReadsNoPlatformNames) {
    FakeGlApi api;
    api.platform = "EGL_KHR_create_context ";
    OpenGlState state;
    EXPECT_FALSE(buildOpenGLExtensionsList(api, state));
    EXPECT_TRUE(state.extensions.empty());
    EXPECT_EQ(state.wglExtensionCount, 0);
}

TEST(ExtensionList, LegacyStringKeepsDuplicatesAndLosesItsLastName) {
    FakeGlApi api;
    api.indexedBound = false;
    api.strings[gl::kExtensions] = "GL_A GL_A GL_B";
    api.platform = "GL_A EGL_X ";
    OpenGlState state;
    ASSERT_TRUE(buildOpenGLExtensionsList(api, state));
    EXPECT_EQ(state.extensions, (std::vector<std::string>{"GL_A", "GL_A", "EGL_X"}));
    EXPECT_EQ(state.glExtensionCount, 2);
    EXPECT_EQ(state.wglExtensionCount, 1);

    FakeGlApi none;
    none.indexedBound = false;
    OpenGlState empty;
    EXPECT_FALSE(buildOpenGLExtensionsList(none, empty));
}

TEST(ExtensionSpecTable, RowsNotesAndLinks) {
    EXPECT_STREQ(extensionSpecTable.front().name, "GL_3DFX_texture_compression_FXT1");
    EXPECT_STREQ(extensionNote("GL_ARB_sync"), "OpenGL 3.2");
    EXPECT_STREQ(extensionNote("GL_EXT_texture_cube_map"), "See GL_ARB_texture_cube_map");
    EXPECT_EQ(extensionNote("GL_3DFX_tbuffer"), nullptr);  // row without a note
    EXPECT_EQ(extensionNote("GL_NOBODY_nothing"), nullptr);
    EXPECT_EQ(extensionNote(nullptr), nullptr);

    const int sync = findSpecRowInText("GL_ARB_sync");
    ASSERT_GE(sync, 0);
    EXPECT_STREQ(extensionSpecTable[sync].specUrl, "https://registry.khronos.org/OpenGL/extensions/ARB/ARB_sync.txt");
    // The substring search stops at the shorter WGL_ARB_pixel_format, so find the row by its whole name.
    int wgl = -1;
    for (size_t i = 0; i < extensionSpecTable.size() && wgl < 0; ++i)
        if (std::string(extensionSpecTable[i].name) == "WGL_ARB_pixel_format_float") wgl = static_cast<int>(i);
    ASSERT_GE(wgl, 0);
    EXPECT_STREQ(extensionSpecTable[findSpecRowInText("WGL_ARB_pixel_format_float")].name, "WGL_ARB_pixel_format");
    // The float pixel formats are written up with the colour buffer extension.
    EXPECT_STREQ(extensionSpecTable[wgl].specUrl,
                 "https://registry.khronos.org/OpenGL/extensions/ARB/ARB_color_buffer_float.txt");
    EXPECT_STREQ(extensionSpecTable[findSpecRowInText("GL_ATI_texture_compression_3dc")].specUrl, "");
}

TEST(ExtensionSpecTable, SubstringSearchTakesTheFirstContainedRow) {
    EXPECT_STREQ(extensionSpecTable[findSpecRowInText("GL_EXT_texture_swizzle")].name, "GL_EXT_texture");
    EXPECT_STREQ(extensionSpecTable[findSpecRowInText("GL_NV_vertex_program2_option")].name, "GL_NV_vertex_program");
    EXPECT_STREQ(extensionSpecTable[findSpecRowInText("GL_SGIS_multitexture See GL_ARB_multitexture")].name,
                 "GL_ARB_multitexture");
    EXPECT_EQ(findSpecRowInText("GL_ZZZ_unknown"), -1);
}

TEST(ExtensionSpecTable, ThreeNamesStandTwiceAndTheSecondIsNeverFound) {
    for (const char* name : {"GL_ARB_shader_stencil_export", "GL_ATI_element_array",
                             "WGL_EXT_pixel_format_packed_float"}) {
        int count = 0;
        for (const auto& row : extensionSpecTable) count += std::string(row.name) == name;
        EXPECT_EQ(count, 2) << name;
    }
}
