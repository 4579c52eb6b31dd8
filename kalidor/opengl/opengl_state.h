#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Kalidornm {

// One multisample mode the demos can ask for: the config that offers it and its sample count.
struct MsaaMode {
    int32_t pixelFormat = 0;  // EGL config id; 0 when the count comes from GL_MAX_SAMPLES alone
    int32_t samples = 0;
};

// One catalogue entry. Only the value of the entry's type is meaningful.
struct GlCap {
    static constexpr int kNone = 0, kInteger = 1, kFloat = 2, kInteger64 = 4, kTriple = 5;
    uint32_t pname = 0;  // 0 for the separator
    int32_t valueType = kNone;
    int32_t intValue = 0;
    int32_t tripleValue[3] = {};
    int64_t int64Value = 0;
    float floatValue = 0.0f;
    char name[128] = {};
    char group[128] = {};  // empty only for the separator
};

// The numbers the scan copies into the summary of the primary GPU.
struct OpenGlNumbers {
    int32_t majorVersion = 1;
    int32_t minorVersion = 1;
    int32_t maxViewportSize = 1024;
    float maxAnisotropy = 1.0f;
    float maxPointSize = 1.0f;
    int32_t maxTextureUnits = 0;
    int32_t maxTextureSize = 0;
    int32_t maxVertexTextureUnits = 0;
    int32_t maxPixelTextureUnits = 0;
    int32_t maxGeometryTextureUnits = 0;
    int32_t maxVertexUniformComponents = 0;
    int32_t maxFragmentUniformComponents = 0;
    int32_t maxGeometryUniformComponents = 0;
    int32_t maxVaryingFloats = 0;
    int32_t maxDrawBuffers = 0;
    int32_t maxLights = 0;
};

// What the OpenGL probe learnt: version numbers, strings, limits, extension names, catalogue and the
// multisample modes.
struct OpenGlState {
    float versionNumber = 1.1f;
    OpenGlNumbers numbers;
    char versionText[256] = {};
    char vendorText[256] = {};
    char rendererText[256] = {};
    char glslVersionText[256] = {};
    int32_t maxVertexBindableUniforms = 0;
    int32_t maxFragmentBindableUniforms = 0;
    int32_t maxGeometryBindableUniforms = 0;

    // Driver order first, then the names the platform's extension string adds; each cut to 127 characters.
    std::vector<std::string> extensions;
    int32_t glExtensionCount = 0;
    int32_t wglExtensionCount = 0;  // names beyond the OpenGL ones: the EGL display's extensions

    std::vector<GlCap> caps;

    std::vector<MsaaMode> msaaModes;  // strictly rising sample counts, each at least 2
    int32_t maxSamples = 0;

    int32_t atiTotalMemoryKb = -1;  // first AMD memory query, then cached
};

}  // namespace Kalidornm
