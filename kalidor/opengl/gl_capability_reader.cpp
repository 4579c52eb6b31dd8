#include "kalidor/opengl/gl_capability_reader.h"

#include <cstdio>
#include <cstring>

#include "kalidor/opengl/extension_list.h"
#include "kalidor/opengl/gl_cap_table.h"

namespace Kalidornm {

namespace {

void copyCut(char* target, size_t size, const char* text) { std::snprintf(target, size, "%s", text); }

int32_t readInt(GlApi& api, uint32_t pname) {
    int32_t values[16] = {};  // some parameters (the viewport dimensions) answer with more than one value
    api.getIntegerv(pname, values);
    return values[0];
}

// A limit the driver does not know keeps what it had.
void readIntInto(GlApi& api, uint32_t pname, int32_t& field) {
    int32_t values[16] = {field};
    api.getIntegerv(pname, values);
    field = values[0];
}

}  // namespace

bool hasCapability(const HardwareCaps& caps, int index) {
    return index >= 0 && index < kCapabilityFlagCount && caps.capabilityFlags[index];
}

void setCapability(HardwareCaps& caps, int index, bool value) {
    if (index >= 0 && index < kCapabilityFlagCount) caps.capabilityFlags[index] = value;
}

bool isGlVersionAtLeast(const OpenGlNumbers& n, int major, int minor) {
    return n.majorVersion > major || (n.majorVersion == major && n.minorVersion >= minor);
}

bool getOpenGLVersion(GlApi& api, int32_t& major, int32_t& minor) {
    const char* text = api.getString(gl::kVersion);
    if (!text) return false;
    major = text[0] - '0';
    if (major < 3) {
        // The minor is the third character; a shorter string keeps the caller's minor.
        if (text[0] && text[1] && text[2]) minor = text[2] - '0';
        return true;
    }
    readIntInto(api, gl::kMajorVersion, major);
    readIntInto(api, gl::kMinorVersion, minor);
    return true;
}

void detectOpenGLApiVersion(GlApi& api, OpenGlState& state) {
    int32_t major = 0, minor = 0;
    if (!getOpenGLVersion(api, major, minor)) return;
    if (const char* text = api.getString(gl::kVersion)) copyCut(state.versionText, sizeof state.versionText, text);
    state.numbers.majorVersion = major;
    state.numbers.minorVersion = minor;
}

int32_t vendorKindFromGlVendor(const char* vendor) {
    if (std::strstr(vendor, "NVIDIA")) return kPrimaryVendorNvidia;
    if (std::strstr(vendor, "ATI")) return kPrimaryVendorAmd;
    if (std::strstr(vendor, "S3")) return kPrimaryVendorS3;
    return kPrimaryVendorOther;
}

void initOpenGLRendererData(GlApi& api, HardwareCaps& caps) {
    OpenGlState& state = caps.gl;
    const char* vendor = api.getString(gl::kVendor);
    if (!vendor) {
        copyCut(state.vendorText, sizeof state.vendorText, "n.a.");
        return;
    }
    copyCut(state.vendorText, sizeof state.vendorText, vendor);
    if (caps.primaryVendorKind == kPrimaryVendorNone) caps.primaryVendorKind = vendorKindFromGlVendor(vendor);
    const char* renderer = api.getString(gl::kRenderer);
    copyCut(state.rendererText, sizeof state.rendererText, renderer ? renderer : "n.a.");
}

void readCapCatalogue(GlApi& api, OpenGlState& state) {
    for (size_t i = 0; i < glCapTable.size(); ++i) {
        if (i == kGlCoreCapRows) {
            GlCap separator;
            copyCut(separator.name, sizeof separator.name, kGlCapSeparatorName);
            state.caps.push_back(separator);
        }
        const GlCapRow& row = glCapTable[i];
        if (row.core) {
            if (row.minVersion && !isGlVersionAtLeast(state.numbers, row.minVersion / 10, row.minVersion % 10))
                continue;
        } else if (!hasExtension(state.extensions, row.group)) {
            continue;
        }
        GlCap cap;
        cap.pname = row.pname;
        cap.valueType = row.valueType;
        copyCut(cap.name, sizeof cap.name, row.name);
        copyCut(cap.group, sizeof cap.group, row.group);
        switch (row.valueType) {
            case GlCap::kInteger:
                cap.intValue = readInt(api, row.pname);
                break;
            case GlCap::kFloat: {
                float values[16] = {};
                api.getFloatv(row.pname, values);
                cap.floatValue = values[0];
                break;
            }
            case GlCap::kInteger64:
                if (!api.hasGetInteger64v()) continue;
                api.getInteger64v(row.pname, &cap.int64Value);
                break;
            case GlCap::kTriple:
                if (!api.hasGetIntegeri_v()) continue;
                for (uint32_t k = 0; k < 3; ++k) api.getIntegeri_v(row.pname, k, &cap.tripleValue[k]);
                break;
            default:
                continue;
        }
        state.caps.push_back(cap);
    }
}

void readOpenGLCaps(GlApi& api, HardwareCaps& caps) {
    OpenGlState& state = caps.gl;
    OpenGlNumbers& n = state.numbers;
    readCapCatalogue(api, state);

    n.maxViewportSize = readInt(api, gl::kMaxViewportDims);

    setCapability(caps, GlFeatureMultitexture, api.glewFlag("GL_ARB_multitexture"));
    readIntInto(api, gl::kMaxTextureUnits, n.maxTextureUnits);
    readIntInto(api, gl::kMaxTextureSize, n.maxTextureSize);
    readIntInto(api, gl::kMaxVertexTextureImageUnits, n.maxVertexTextureUnits);
    readIntInto(api, gl::kMaxTextureImageUnits, n.maxPixelTextureUnits);

    setCapability(caps, GlFeatureAnisotropy, api.glewFlag("GL_EXT_texture_filter_anisotropic"));
    if (hasCapability(caps, GlFeatureAnisotropy)) {
        float values[16] = {n.maxAnisotropy};
        api.getFloatv(gl::kMaxTextureMaxAnisotropy, values);
        n.maxAnisotropy = values[0];
    } else {
        n.maxAnisotropy = 1.0f;
    }

    setCapability(caps, GlFeatureSeparateSpecular, api.glewFlag("GL_EXT_separate_specular_color"));
    if (hasCapability(caps, GlFeatureSeparateSpecular)) {
        api.lightModeli(gl::kLightModelColorControl, static_cast<int32_t>(gl::kSeparateSpecularColor));
        api.lightModeli(gl::kLightModelLocalViewer, 1);
    }

    setCapability(caps, GlFeatureVbo, api.glewFlag("GL_ARB_vertex_buffer_object"));
    setCapability(caps, GlFeatureOpenGL20, isGlVersionAtLeast(n, 2, 0));
    setCapability(caps, GlFeatureGlsl, api.glewFlag("GL_ARB_shading_language_100"));
    if (hasCapability(caps, GlFeatureGlsl) && hasCapability(caps, GlFeatureOpenGL20)) {
        readIntInto(api, gl::kMaxVertexUniformComponents, n.maxVertexUniformComponents);
        readIntInto(api, gl::kMaxFragmentUniformComponents, n.maxFragmentUniformComponents);
        readIntInto(api, gl::kMaxGeometryUniformComponents, n.maxGeometryUniformComponents);
        readIntInto(api, gl::kMaxVaryingFloats, n.maxVaryingFloats);
    }

    const char* glsl = api.getString(gl::kShadingLanguageVersion);
    copyCut(state.glslVersionText, sizeof state.glslVersionText, glsl ? glsl : "n.a.");

    setCapability(caps, GlFeaturePointSprite, api.glewFlag("GL_ARB_point_sprite"));
    if (hasCapability(caps, GlFeaturePointSprite)) {
        float values[16] = {n.maxPointSize};
        api.getFloatv(gl::kPointSizeMax, values);
        n.maxPointSize = values[0];
        api.pointParameterf(gl::kPointSizeMin, 1.0f);
        api.pointParameterf(gl::kPointSizeMax, n.maxPointSize);
    }

    setCapability(caps, GlFeaturePbo, api.glewFlag("GL_ARB_pixel_buffer_object"));
    setCapability(caps, GlFeatureFbo, api.glewFlag("GL_EXT_framebuffer_object"));
    setCapability(caps, GlFeatureS3tc, api.glewFlag("GL_EXT_texture_compression_s3tc"));
    setCapability(caps, GlFeature3Dc, hasExtension(state.extensions, "GL_ATI_texture_compression_3dc"));
    setCapability(caps, GlFeatureTextureRectangle,
                  api.glewFlag("GL_NV_texture_rectangle") || api.glewFlag("GL_ARB_texture_rectangle"));
    setCapability(caps, GlFeatureFloatTexture, api.glewFlag("GL_ARB_texture_float") ||
                                                   api.glewFlag("GL_ATI_texture_float") ||
                                                   api.glewFlag("GL_NV_float_buffer"));

    if (api.glewFlag("GL_EXT_bindable_uniform")) {
        readIntInto(api, gl::kMaxVertexBindableUniforms, state.maxVertexBindableUniforms);
        readIntInto(api, gl::kMaxFragmentBindableUniforms, state.maxFragmentBindableUniforms);
        readIntInto(api, gl::kMaxGeometryBindableUniforms, state.maxGeometryBindableUniforms);
    }
    if (api.glewFlag("GL_EXT_geometry_shader4"))
        readIntInto(api, gl::kMaxGeometryTextureImageUnits, n.maxGeometryTextureUnits);

    setCapability(caps, GlFeatureTextureArray, api.glewFlag("GL_EXT_texture_array"));
    setCapability(caps, GlFeatureTextureBuffer, api.glewFlag("GL_EXT_texture_buffer_object"));
    setCapability(caps, GlFeatureInstancing,
                  api.glewFlag("GL_EXT_draw_instanced") || api.glewFlag("GL_ARB_draw_instanced"));

    readIntInto(api, gl::kMaxDrawBuffers, n.maxDrawBuffers);
    readIntInto(api, gl::kMaxLights, n.maxLights);
}

int32_t capCountInGroup(const OpenGlState& state, const char* group, int32_t* firstIndex) {
    const char* wanted = group ? group : "";
    int32_t count = 0;
    for (size_t i = 0; i < state.caps.size(); ++i) {
        if (std::strncmp(state.caps[i].group, wanted, 127) != 0) continue;
        if (count++ == 0 && firstIndex) *firstIndex = static_cast<int32_t>(i);
    }
    return count;
}

bool findCapByName(const OpenGlState& state, const char* name, int32_t* index) {
    if (!name) return false;
    for (size_t i = 0; i < state.caps.size(); ++i) {
        if (std::strncmp(state.caps[i].name, name, 127) != 0) continue;
        if (index) *index = static_cast<int32_t>(i);
        return true;
    }
    return false;
}

}  // namespace Kalidornm
