#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <string>

#include "kalidor/opengl/context_ladder.h"
#include "kalidor/opengl/gl_cap_table.h"
#include "kalidor/opengl/gl_capability_reader.h"
#include "kalidor/opengl/msaa_modes.h"
#include "tests/unit/fake_gl_api.h"

using namespace Kalidornm;

namespace {

// Grants the first version at or below the one it offers, from list `grantList` only; records every attempt.
class FakeCreator : public ContextCreator {
public:
    FakeCreator(int major, int minor, bool grantAll = true) : m_major(major), m_minor(minor), m_grant(grantAll) {}
    std::vector<std::string> attempts;
    bool tryCreate(const std::vector<int32_t>& a) override {
        const bool debug = a.size() > 4 && a[4] == egl_attr::kFlags;
        const bool profile = a.size() > 5 && a[a.size() - 3] == egl_attr::kProfileMask;
        const char* list = debug ? "A" : profile ? "B" : "C";
        attempts.push_back(std::string(list) + std::to_string(a[1]) + "." + std::to_string(a[3]));
        return m_grant && (a[1] < m_major || (a[1] == m_major && a[3] <= m_minor));
    }

private:
    int m_major, m_minor;
    bool m_grant;
};

}  // namespace

TEST(ContextLadder, AttributeListsEndInNoneAndAskForCompatibility) {
    EXPECT_EQ(ladderAttributes(LadderList::A, 4, 5),
              (std::vector<int32_t>{0x3098, 4, 0x30FB, 5, 0x30FC, 1, 0x30FD, 2, 0x3038}));
    EXPECT_EQ(ladderAttributes(LadderList::B, 4, 5), (std::vector<int32_t>{0x3098, 4, 0x30FB, 5, 0x30FD, 2, 0x3038}));
    EXPECT_EQ(ladderAttributes(LadderList::C, 3, 0), (std::vector<int32_t>{0x3098, 3, 0x30FB, 0, 0x3038}));
}

TEST(ContextLadder, WalksDownInTheOrderOfTheRungs) {
    FakeCreator driver42(4, 2);
    EXPECT_TRUE(runContextLadder(driver42, 4, 5, true));
    EXPECT_EQ(driver42.attempts, (std::vector<std::string>{"A4.5", "A4.4", "A4.3", "A4.2"}));

    FakeCreator refusing(0, 0, false);
    EXPECT_FALSE(runContextLadder(refusing, 4, 5, false));
    EXPECT_EQ(refusing.attempts,
              (std::vector<std::string>{"B4.5", "B4.4", "B4.3", "B4.2", "B4.1", "B4.0", "B3.3", "B3.2", "B3.1",
                                        "B3.0", "C4.5", "C4.4", "C4.3", "C4.2", "C4.1", "C4.0"}));

    FakeCreator refuses32(0, 0, false);
    runContextLadder(refuses32, 3, 2, true);
    EXPECT_EQ(refuses32.attempts,
              (std::vector<std::string>{"A3.2", "A3.1", "A3.0", "A3.0", "C3.2", "C3.1", "C3.0"}));

    // The major goes down once only: 5.1 ends at 4.0 before list C.
    FakeCreator refuses51(0, 0, false);
    runContextLadder(refuses51, 5, 1, true);
    EXPECT_EQ(refuses51.attempts[5], "A4.0");
    EXPECT_EQ(refuses51.attempts[6], "C5.1");
}

TEST(GlVersion, ParseRules) {
    FakeGlApi api;
    int32_t major = 7, minor = 7;
    EXPECT_FALSE(getOpenGLVersion(api, major, minor));
    EXPECT_EQ(major, 7);

    api.strings[gl::kVersion] = "2.1 Mesa 22.3.6";
    EXPECT_TRUE(getOpenGLVersion(api, major, minor));
    EXPECT_EQ(major, 2);
    EXPECT_EQ(minor, 1);

    // From 3 on the integer queries win over the string.
    api.strings[gl::kVersion] = "4.9 whatever";
    api.ints[gl::kMajorVersion] = 4;
    api.ints[gl::kMinorVersion] = 5;
    EXPECT_TRUE(getOpenGLVersion(api, major, minor));
    EXPECT_EQ(major, 4);
    EXPECT_EQ(minor, 5);

    // A string shorter than three characters keeps the caller's minor.
    api.strings[gl::kVersion] = "2";
    minor = 9;
    EXPECT_TRUE(getOpenGLVersion(api, major, minor));
    EXPECT_EQ(major, 2);
    EXPECT_EQ(minor, 9);

    // A non-digit gives its distance from '0'; above 2 that goes to the integer queries, which refuse here.
    FakeGlApi odd;
    odd.strings[gl::kVersion] = "X.Y";
    minor = 3;
    EXPECT_TRUE(getOpenGLVersion(odd, major, minor));
    EXPECT_EQ(major, 'X' - '0');
    EXPECT_EQ(minor, 3);
}

TEST(GlRendererData, VendorKindIsRefinedOnlyFromNone) {
    EXPECT_EQ(vendorKindFromGlVendor("NVIDIA Corporation"), kPrimaryVendorNvidia);
    EXPECT_EQ(vendorKindFromGlVendor("ATI Technologies Inc."), kPrimaryVendorAmd);
    EXPECT_EQ(vendorKindFromGlVendor("S3 Graphics"), kPrimaryVendorS3);
    EXPECT_EQ(vendorKindFromGlVendor("Mesa"), kPrimaryVendorOther);

    FakeGlApi api;
    api.strings[gl::kVendor] = "NVIDIA Corporation";
    HardwareCaps caps;
    caps.primaryVendorKind = kPrimaryVendorIntel;
    initOpenGLRendererData(api, caps);
    EXPECT_EQ(caps.primaryVendorKind, kPrimaryVendorIntel);
    EXPECT_STREQ(caps.gl.rendererText, "n.a.");

    HardwareCaps unknown;
    initOpenGLRendererData(api, unknown);
    EXPECT_EQ(unknown.primaryVendorKind, kPrimaryVendorNvidia);

    FakeGlApi silent;
    HardwareCaps noVendor;
    initOpenGLRendererData(silent, noVendor);
    EXPECT_STREQ(noVendor.gl.vendorText, "n.a.");
    EXPECT_STREQ(noVendor.gl.rendererText, "");
}

// Every catalogue name the system's GL headers define must carry the headers' value: a parameter typed
// wrongly into the catalogue's data file reads another limit. Names the headers spell otherwise (the NVX
// memory rows) are not checked.
TEST(GlCatalogue, ParametersAgreeWithTheSystemGlHeaders) {
    std::map<std::string, uint32_t> values;
    std::map<std::string, std::string> aliases;  // "#define GL_MAX_CLIP_DISTANCES GL_MAX_CLIP_PLANES"
    const std::regex define(R"(#define (GL_\w+) +(0x[0-9A-Fa-f]+|[0-9]+|GL_\w+)\s*)");
    for (const char* header : {GL_GLEW_HEADER, GL_GLEXT_HEADER}) {
        std::ifstream in(header);
        ASSERT_TRUE(in) << "no " << header << ": the README's set-up installs the GL headers";
        std::smatch m;
        for (std::string line; std::getline(in, line);) {
            if (!std::regex_match(line, m, define)) continue;
            if (m[2].str().rfind("GL_", 0) == 0)
                aliases.emplace(m[1], m[2]);
            else
                values.emplace(m[1], uint32_t(std::stoul(m[2], nullptr, 0)));
        }
    }
    size_t checked = 0;
    for (const GlCapRow& row : glCapTable) {
        auto found = values.find(row.name);
        if (found == values.end() && aliases.count(row.name)) found = values.find(aliases[row.name]);
        if (found == values.end()) continue;
        ++checked;
        EXPECT_EQ(row.pname, found->second) << row.name << " in " << row.group;
    }
    EXPECT_GT(checked, kGlCapRows * 9 / 10);
}

// Readers walk a group as one run from its first row, and the core groups end where the separator goes.
TEST(GlCatalogue, EachGroupStandsTogetherAndCoreGroupsComeFirst) {
    std::set<std::string> closed;
    for (size_t i = 0; i < glCapTable.size(); ++i) {
        const GlCapRow& row = glCapTable[i];
        EXPECT_EQ(row.core, i < kGlCoreCapRows) << row.name;
        EXPECT_EQ(row.core, std::string(row.group).rfind("GL_VERSION_", 0) == 0) << row.name;
        if (i > 0 && std::string(glCapTable[i - 1].group) != row.group) {
            closed.insert(glCapTable[i - 1].group);
            EXPECT_EQ(closed.count(row.group), 0u) << row.group << " stands in two places";
        }
    }
}

TEST(GlCatalogue, FullDriverGivesEveryRowAndTheSeparatorAt179) {
    FakeGlApi api;
    api.ints[0x0D31] = 8;                  // GL_MAX_LIGHTS
    api.floats[0x84FF] = 16.0f;            // anisotropy
    api.int64s[0x9111] = 123456789012LL;   // GL_MAX_SERVER_WAIT_TIMEOUT
    api.indexedInts[{0x91BE, 2}] = 65535;  // GL_MAX_COMPUTE_WORK_GROUP_COUNT, z
    OpenGlState state;
    state.numbers.majorVersion = 4;
    state.numbers.minorVersion = 5;
    for (const GlCapRow& row : glCapTable) state.extensions.push_back(row.group);
    readCapCatalogue(api, state);
    ASSERT_EQ(state.caps.size(), kGlCapRows + 1);
    EXPECT_STREQ(state.caps[kGlCoreCapRows].name, "GL_CAP_SEPARATOR_01");
    EXPECT_EQ(capCountInGroup(state, nullptr, nullptr), 1);
    int32_t first = -1;
    EXPECT_EQ(capCountInGroup(state, "GL_ARB_tessellation_shader", &first), 16);
    EXPECT_STREQ(state.caps[first].name, "GL_MAX_TESS_CONTROL_TEXTURE_IMAGE_UNITS");

    int32_t index = -1;
    ASSERT_TRUE(findCapByName(state, "GL_MAX_LIGHTS", &index));
    EXPECT_EQ(state.caps[index].intValue, 8);
    ASSERT_TRUE(findCapByName(state, "GL_MAX_COMPUTE_WORK_GROUP_COUNT", &index));
    EXPECT_EQ(state.caps[index].tripleValue[2], 65535);
    ASSERT_TRUE(findCapByName(state, "GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT", &index));
    EXPECT_FLOAT_EQ(state.caps[index].floatValue, 16.0f);
    // Plain integer in the core part, 64-bit under GL_ARB_sync.
    int32_t syncFirst = -1;
    ASSERT_EQ(capCountInGroup(state, "GL_ARB_sync", &syncFirst), 1);
    EXPECT_EQ(state.caps[syncFirst].int64Value, 123456789012LL);
}

TEST(GlCatalogue, OldContextSkipsVersionGatedRowsAndAbsentGroups) {
    FakeGlApi api;
    api.indexedIntBound = false;
    api.int64Bound = false;
    OpenGlState state;
    state.numbers.majorVersion = 2;
    state.numbers.minorVersion = 1;
    state.extensions = {"GL_EXT_texture_array", "GL_ARB_sync", "GL_ARB_compute_shader"};
    readCapCatalogue(api, state);
    int32_t index = -1;
    EXPECT_TRUE(findCapByName(state, "GL_MAX_TESS_GEN_LEVEL", &index));
    EXPECT_EQ(state.caps[index].intValue, 0);
    EXPECT_EQ(capCountInGroup(state, "GL_VERSION_4_1", nullptr), 4);
    EXPECT_EQ(capCountInGroup(state, "GL_VERSION_4_3", nullptr), 16);
    EXPECT_EQ(capCountInGroup(state, "GL_EXT_texture_array", nullptr), 1);
    EXPECT_EQ(capCountInGroup(state, "GL_ARB_uniform_buffer_object", nullptr), 0);
    // Rows whose entry point GLEW did not bind leave no entry.
    EXPECT_EQ(capCountInGroup(state, "GL_ARB_sync", nullptr), 0);
    EXPECT_EQ(capCountInGroup(state, "GL_ARB_compute_shader", nullptr), 9);
    EXPECT_EQ(state.caps.size(), kGlCoreCapRows - 3 + 1 + 1 + 9);
}

TEST(GlCaps, FlagsAndLimitsFollowGlewFlagsAndVersion) {
    FakeGlApi api;
    api.glewFlags = {"GL_ATI_texture_float", "GL_ARB_point_sprite", "GL_EXT_texture_array",
                     "GL_EXT_texture_buffer_object", "GL_ARB_shading_language_100"};
    api.floats[gl::kPointSizeMax] = 63.0f;
    api.ints[gl::kMaxViewportDims] = 16384;
    api.ints[gl::kMaxVertexUniformComponents] = 4096;
    HardwareCaps caps;
    caps.gl.numbers.majorVersion = 1;
    caps.gl.numbers.minorVersion = 5;
    caps.gl.extensions = {"GL_ATI_texture_compression_3dc"};
    readOpenGLCaps(api, caps);
    EXPECT_TRUE(hasCapability(caps, GlFeatureFloatTexture));
    EXPECT_TRUE(hasCapability(caps, GlFeature3Dc));
    EXPECT_TRUE(hasCapability(caps, GlFeatureTextureArray) && hasCapability(caps, GlFeatureTextureBuffer));
    EXPECT_FALSE(hasCapability(caps, GlFeatureOpenGL20));
    EXPECT_EQ(caps.gl.numbers.maxVertexUniformComponents, 0);  // GLSL limits need OpenGL 2.0 as well
    EXPECT_EQ(caps.gl.numbers.maxViewportSize, 16384);
    EXPECT_FLOAT_EQ(caps.gl.numbers.maxAnisotropy, 1.0f);
    EXPECT_FLOAT_EQ(caps.gl.numbers.maxPointSize, 63.0f);
    ASSERT_EQ(api.pointParameters.size(), 2u);
    EXPECT_FLOAT_EQ(api.pointParameters[1].second, 63.0f);
    EXPECT_STREQ(caps.gl.glslVersionText, "n.a.");
    EXPECT_EQ(api.lightModelCalls, 0);

    setCapability(caps, 50, true);
    EXPECT_FALSE(hasCapability(caps, 50));
    EXPECT_FALSE(hasCapability(caps, -1));
    caps.gl.numbers.majorVersion = 4;
    caps.gl.numbers.minorVersion = 0;
    EXPECT_TRUE(isGlVersionAtLeast(caps.gl.numbers, 3, 3));
    caps.gl.numbers.majorVersion = 3;
    caps.gl.numbers.minorVersion = 2;
    EXPECT_FALSE(isGlVersionAtLeast(caps.gl.numbers, 3, 3));
}

TEST(MsaaModes, FirstConfigOfEachRisingCountWins) {
    auto config = [](int id, int samples, int sampleBuffers = 1) {
        EglConfigTraits t;
        t.configId = id;
        t.rendersOpenGl = t.windowOrPbuffer = t.rgba = true;
        t.colorBits = 32, t.depthBits = 24, t.stencilBits = 8;
        t.sampleBuffers = sampleBuffers, t.samples = samples;
        return t;
    };
    auto samplesOf = [](const std::vector<MsaaMode>& modes) {
        std::vector<int32_t> s;
        for (const MsaaMode& m : modes) s.push_back(m.samples);
        return s;
    };
    EXPECT_EQ(samplesOf(scanMsaaModes({config(1, 2), config(2, 4), config(3, 4), config(4, 8)}, 32, 24, 8)),
              (std::vector<int32_t>{2, 4, 8}));
    EXPECT_EQ(samplesOf(scanMsaaModes({config(1, 8), config(2, 4), config(3, 2)}, 32, 24, 8)),
              (std::vector<int32_t>{8}));
    EXPECT_TRUE(scanMsaaModes({config(1, 1), config(2, 4, 0)}, 32, 24, 8).empty());
    EXPECT_TRUE(scanMsaaModes({config(1, 4)}, 32, 16, 8).empty());

    const auto modes = scanMsaaModes({config(11, 2), config(12, 4), config(13, 8)}, 32, 24, 8);
    EXPECT_EQ(modeForSamples(modes, 3), 12);
    EXPECT_EQ(modeForSamples(modes, 16), 0);
    EXPECT_EQ(modeForSamples(modes, -1), 13);
    EXPECT_EQ(modeForSamples({}, -1), 0);

    EXPECT_EQ(samplesOf(framebufferMsaaModes(16)), (std::vector<int32_t>{2, 4, 8, 16}));
    EXPECT_TRUE(framebufferMsaaModes(1).empty());
}
