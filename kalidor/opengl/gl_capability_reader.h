#pragma once

#include <cstdint>

#include "kalidor/opengl/gl_api.h"
#include "kalidor/hardware_caps.h"
#include "kalidor/opengl/opengl_state.h"

namespace Kalidornm {

// Capability flags with a meaning; the other indices of the 50 stay 0.
enum GlFeature : int {
    GlFeatureAnisotropy = 2,
    GlFeatureSeparateSpecular = 3,
    GlFeatureMultitexture = 5,
    GlFeatureS3tc = 11,
    GlFeatureGlsl = 17,
    GlFeatureVbo = 19,
    GlFeatureFbo = 20,
    GlFeatureTextureRectangle = 21,
    GlFeatureFloatTexture = 22,
    GlFeaturePointSprite = 24,
    GlFeatureOpenGL20 = 25,
    GlFeaturePbo = 26,
    GlFeatureInstancing = 29,
    GlFeatureTextureArray = 30,
    GlFeatureTextureBuffer = 31,
    GlFeature3Dc = 39,
};

// A read above 49 gives false; a write there does nothing.
bool hasCapability(const HardwareCaps& caps, int index);
void setCapability(HardwareCaps& caps, int index, bool value);

bool isGlVersionAtLeast(const OpenGlNumbers& numbers, int major, int minor);

// The version of the current context: below 3 from the string's first and third characters, else from the
// integer queries. False when the driver gives no version string; the outputs then stay untouched.
bool getOpenGLVersion(GlApi& api, int32_t& major, int32_t& minor);

// Stores the version text and numbers; leaves the defaults when there is no version string.
void detectOpenGLApiVersion(GlApi& api, OpenGlState& gl);

// Vendor and renderer strings; a primary vendor kind of 0 is refined from the vendor string.
void initOpenGLRendererData(GlApi& api, HardwareCaps& caps);
int32_t vendorKindFromGlVendor(const char* vendor);

// The catalogue in table order with the separator behind the core part, then the flags and scalar limits.
void readCapCatalogue(GlApi& api, OpenGlState& gl);
void readOpenGLCaps(GlApi& api, HardwareCaps& caps);

// Catalogue lookups. A null group selects the separator's empty group.
int32_t capCountInGroup(const OpenGlState& gl, const char* group, int32_t* firstIndex);
bool findCapByName(const OpenGlState& gl, const char* name, int32_t* index);

}  // namespace Kalidornm
