#include <cstring>

#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"
#include "kalidor/opengl/extension_list.h"
#include "kalidor/opengl/gl_capability_reader.h"

namespace Kalidornm {

namespace {
const OpenGlState* glState() {
    return gGlobals.mainWindow && gGlobals.mainWindow->caps() ? &gGlobals.mainWindow->caps()->gl : nullptr;
}
const OpenGlNumbers& summaryNumbers() { return gGlobals.summary.glNumbers; }
}  // namespace

bool Kalidor::hasCapability(int index) const { return caps() && Kalidornm::hasCapability(*caps(), index); }

bool Kalidor::isExtensionSupported(const char* name) const {
    return glState() && hasExtension(glState()->extensions, name);
}

bool Kalidor::isGlVersionAtLeast(int major, int minor) const {
    return Kalidornm::isGlVersionAtLeast(summaryNumbers(), major, minor);
}

const char* Kalidor::getGlRenderer() const {
    const OpenGlState* gl = glState();
    return gl ? gl->rendererText : "";
}
const char* Kalidor::getGlVendor() const {
    const OpenGlState* gl = glState();
    return gl ? gl->vendorText : "";
}
const char* Kalidor::getGlVersion() const { return gGlobals.summary.openGLVersion; }
const char* Kalidor::getGlslVersion() const { return gGlobals.summary.glslVersion; }

uint32_t Kalidor::getExtensionCount() const { return static_cast<uint32_t>(gGlobals.summary.extensionNames.size()); }
const char* Kalidor::getExtensionName(int index) const {
    const auto& names = gGlobals.summary.extensionNames;
    if (index < 0 || static_cast<size_t>(index) >= names.size()) return nullptr;
    return names[static_cast<size_t>(index)].c_str();
}
uint32_t Kalidor::getGlExtensionCount() const { return gGlobals.summary.glExtensionCount; }
uint32_t Kalidor::getWglExtensionCount() const { return gGlobals.summary.wglExtensionCount; }

int32_t Kalidor::getMsaaModeCount() const {
    return glState() ? static_cast<int32_t>(glState()->msaaModes.size()) : 0;
}
int32_t Kalidor::getMsaaMode(int index) const {
    const OpenGlState* gl = glState();
    if (!gl || index < 0 || static_cast<size_t>(index) >= gl->msaaModes.size()) return 0;
    return gl->msaaModes[static_cast<size_t>(index)].samples;
}

int32_t Kalidor::capCount() const { return glState() ? static_cast<int32_t>(glState()->caps.size()) : 0; }
int32_t Kalidor::capCountInGroup(const char* group, int32_t* firstIndex) const {
    return glState() ? Kalidornm::capCountInGroup(*glState(), group, firstIndex) : 0;
}
bool Kalidor::findCapByName(const char* name, int32_t* index) const {
    return glState() && Kalidornm::findCapByName(*glState(), name, index);
}

bool Kalidor::getCap(int index, char* name, int32_t* valueType, int32_t* intValue, int32_t* tripleValue,
                     int64_t* int64Value, float* floatValue, char* group) const {
    const OpenGlState* gl = glState();
    if (!gl || index < 0 || static_cast<size_t>(index) >= gl->caps.size()) return false;
    const GlCap& cap = gl->caps[static_cast<size_t>(index)];
    if (name) std::memcpy(name, cap.name, sizeof cap.name);
    if (group) std::memcpy(group, cap.group, sizeof cap.group);
    if (valueType) *valueType = cap.valueType;
    switch (cap.valueType) {
        case GlCap::kInteger:
            if (intValue) *intValue = cap.intValue;
            break;
        case GlCap::kFloat:
            if (floatValue) *floatValue = cap.floatValue;
            break;
        case GlCap::kInteger64:
            if (int64Value) *int64Value = cap.int64Value;
            break;
        case GlCap::kTriple:
            if (tripleValue) std::memcpy(tripleValue, cap.tripleValue, sizeof cap.tripleValue);
            break;
        default:
            break;
    }
    return true;
}

bool Kalidor::readGlNvxMemory(int32_t* totalKb, int32_t* freeKb) {
    return gGlobals.mainWindow && gGlobals.mainWindow->readNvxMemoryKb(totalKb, freeKb);
}
int32_t Kalidor::readGlAtiTotalMemoryKb() {
    return gGlobals.mainWindow ? gGlobals.mainWindow->atiTotalMemoryKb() : -1024;
}
int32_t Kalidor::readGlAtiUsedMemoryKb() { return gGlobals.mainWindow ? gGlobals.mainWindow->atiUsedMemoryKb() : -1; }

int32_t Kalidor::getGlMajorVersion() const { return summaryNumbers().majorVersion; }
int32_t Kalidor::getGlMinorVersion() const { return summaryNumbers().minorVersion; }
int32_t Kalidor::getMaxTextureUnitsARB() const { return summaryNumbers().maxTextureUnits; }
int32_t Kalidor::getMaxVertexTextureUnits() const { return summaryNumbers().maxVertexTextureUnits; }
int32_t Kalidor::getMaxPixelTextureUnits() const { return summaryNumbers().maxPixelTextureUnits; }
int32_t Kalidor::getMaxGeometryTextureUnits() const { return summaryNumbers().maxGeometryTextureUnits; }
int32_t Kalidor::getMaxTextureSize() const { return summaryNumbers().maxTextureSize; }
float Kalidor::getMaxAnisotropy() const { return summaryNumbers().maxAnisotropy; }
float Kalidor::getMaxPointSpriteSize() const { return summaryNumbers().maxPointSize; }
int32_t Kalidor::getMaxDynamicLights() const { return summaryNumbers().maxLights; }
int32_t Kalidor::getMaxViewportSize() const { return summaryNumbers().maxViewportSize; }
int32_t Kalidor::getMaxVertexUniformComponents() const { return summaryNumbers().maxVertexUniformComponents; }
int32_t Kalidor::getMaxFragmentUniformComponents() const { return summaryNumbers().maxFragmentUniformComponents; }
int32_t Kalidor::getMaxGeometryUniformComponents() const { return summaryNumbers().maxGeometryUniformComponents; }
int32_t Kalidor::getMaxVaryingFloats() const { return summaryNumbers().maxVaryingFloats; }
int32_t Kalidor::getMaxVertexBindableUniforms() const { return glState() ? glState()->maxVertexBindableUniforms : 0; }
int32_t Kalidor::getMaxFragmentBindableUniforms() const {
    return glState() ? glState()->maxFragmentBindableUniforms : 0;
}
int32_t Kalidor::getMaxGeometryBindableUniforms() const {
    return glState() ? glState()->maxGeometryBindableUniforms : 0;
}
int32_t Kalidor::getMaxDrawBuffers() const { return summaryNumbers().maxDrawBuffers; }

}  // namespace Kalidornm
