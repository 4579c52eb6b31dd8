#pragma once

#include <cstdint>

namespace Kalidornm {

// The OpenGL calls the probe makes once a context is current. The real one goes through GLEW; tests feed
// recorded answers. Parameters are the GLenum values of the OpenGL headers.
class GlApi {
public:
    virtual ~GlApi() = default;

    virtual const char* getString(uint32_t name) = 0;  // null when the driver gives none
    virtual bool hasGetStringi() = 0;
    virtual const char* getStringi(uint32_t name, uint32_t index) = 0;
    // A parameter the driver refuses leaves the output as it was.
    virtual void getIntegerv(uint32_t pname, int32_t* values) = 0;
    virtual void getFloatv(uint32_t pname, float* values) = 0;
    virtual bool hasGetInteger64v() = 0;
    virtual void getInteger64v(uint32_t pname, int64_t* value) = 0;
    virtual bool hasGetIntegeri_v() = 0;
    virtual void getIntegeri_v(uint32_t pname, uint32_t index, int32_t* value) = 0;
    virtual void lightModeli(uint32_t pname, int32_t value) = 0;
    virtual void pointParameterf(uint32_t pname, float value) = 0;

    // GLEW's flag for an extension: false when the driver names it but its entry points did not bind.
    virtual bool glewFlag(const char* extension) = 0;
    // The display's extension string of the context platform (EGL here), read with the OpenGL names; may be
    // null.
    virtual const char* platformExtensions() = 0;
};

// The few OpenGL enums the probe names in code; the catalogue's parameters live in its table.
namespace gl {
inline constexpr uint32_t kVendor = 0x1F00, kRenderer = 0x1F01, kVersion = 0x1F02, kExtensions = 0x1F03;
inline constexpr uint32_t kShadingLanguageVersion = 0x8B8C;
inline constexpr uint32_t kMajorVersion = 0x821B, kMinorVersion = 0x821C, kNumExtensions = 0x821D;
inline constexpr uint32_t kMaxViewportDims = 0x0D3A, kMaxTextureUnits = 0x84E2, kMaxTextureSize = 0x0D33;
inline constexpr uint32_t kMaxVertexTextureImageUnits = 0x8B4C, kMaxTextureImageUnits = 0x8872;
inline constexpr uint32_t kMaxGeometryTextureImageUnits = 0x8C29;
inline constexpr uint32_t kMaxTextureMaxAnisotropy = 0x84FF;
inline constexpr uint32_t kLightModelColorControl = 0x81F8, kSeparateSpecularColor = 0x81FA;
inline constexpr uint32_t kLightModelLocalViewer = 0x0B51;
inline constexpr uint32_t kMaxVertexUniformComponents = 0x8B4A, kMaxFragmentUniformComponents = 0x8B49;
inline constexpr uint32_t kMaxGeometryUniformComponents = 0x8DDF, kMaxVaryingFloats = 0x8B4B;
inline constexpr uint32_t kPointSizeMin = 0x8126, kPointSizeMax = 0x8127;
inline constexpr uint32_t kMaxVertexBindableUniforms = 0x8DE2, kMaxFragmentBindableUniforms = 0x8DE3;
inline constexpr uint32_t kMaxGeometryBindableUniforms = 0x8DE4;
inline constexpr uint32_t kMaxDrawBuffers = 0x8824, kMaxLights = 0x0D31, kMaxSamples = 0x8D57;
inline constexpr uint32_t kMaxTessControlTextureImageUnits = 0x8E81, kMaxTessEvaluationTextureImageUnits = 0x8E82;
inline constexpr uint32_t kMaxTessGenLevel = 0x8E7E, kMaxTessControlUniformComponents = 0x8E7F;
inline constexpr uint32_t kMaxTessEvaluationUniformComponents = 0x8E80;
inline constexpr uint32_t kNvxTotalAvailableMemory = 0x9048, kNvxCurrentAvailableVidmem = 0x9049;
inline constexpr uint32_t kTextureFreeMemoryAti = 0x87FC;
}  // namespace gl

}  // namespace Kalidornm
