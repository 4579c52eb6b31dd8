#include <gtest/gtest.h>

#include <string>

#include "kalidor/opengl/extension_list.h"
#include "kalidor/opengl/extension_link_table.h"
#include "tests/unit/fake_gl_api.h"

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

// The first row of a name answers; a longer name that begins with a shorter one ("GL_EXT_texture_array" after
// "GL_EXT_texture") still finds its own row, and a row with an empty note gives null, not "".
TEST(ExtensionLinkTable, NotesAreFoundByWholeNameFirstRowFirst) {
    for (size_t i = 0; i < extensionLinkTable.size(); ++i) {
        const ExtensionLinkEntry& row = extensionLinkTable[i];
        size_t first = 0;
        while (std::string(extensionLinkTable[first].name) != row.name) ++first;
        const char* expected = extensionLinkTable[first].note[0] ? extensionLinkTable[first].note : nullptr;
        EXPECT_EQ(extensionNote(row.name), expected) << row.name;
    }
    EXPECT_EQ(extensionNote("GL_NOBODY_nothing"), nullptr);
    EXPECT_EQ(extensionNote("GL_EXT"), nullptr);
    EXPECT_EQ(extensionNote(""), nullptr);
    EXPECT_EQ(extensionNote(nullptr), nullptr);
    EXPECT_EQ(findLinkRowInText(nullptr), -1);
}

// Three rows once named registry files that do not exist; every link must be a registry text file.
TEST(ExtensionLinkTable, LinksNameRegistryFilesThatExist) {
    const std::string registry = "https://registry.khronos.org/OpenGL/extensions/";
    for (const ExtensionLinkEntry& row : extensionLinkTable) {
        const std::string link = row.link;
        if (link.empty()) continue;
        EXPECT_EQ(link.rfind(registry, 0), 0u) << row.name;
        EXPECT_EQ(link.substr(link.size() - 4), ".txt") << row.name;
        for (const char* missing : {"/ARB_debug_group.txt", "/ARB_debug_label.txt", "/ARB_debug_output2.txt",
                                    "/KHR_texture_compression_astc_ldr.txt", "/EXT_texture_edge_clamp.txt"})
            EXPECT_EQ(link.find(missing), std::string::npos) << row.name;
    }
}

TEST(ExtensionLinkTable, SubstringSearchTakesTheFirstContainedRow) {
    EXPECT_STREQ(extensionLinkTable[findLinkRowInText("GL_EXT_texture_swizzle")].name, "GL_EXT_texture");
    EXPECT_STREQ(extensionLinkTable[findLinkRowInText("GL_NV_vertex_program2_option")].name, "GL_NV_vertex_program");
    EXPECT_STREQ(extensionLinkTable[findLinkRowInText("GL_SGIS_multitexture See GL_ARB_multitexture")].name,
                 "GL_ARB_multitexture");
    EXPECT_EQ(findLinkRowInText("GL_ZZZ_unknown"), -1);
}
