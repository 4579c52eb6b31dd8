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
const OpenGlFacts& glFacts() { return heldSnapshot().gl; }
}  // namespace

bool Kalidor::hasCapability(int index) const { return caps() && Kalidornm::hasCapability(*caps(), index); }

bool Kalidor::isExtensionSupported(const char* name) const {
    return glState() && hasExtension(glState()->extensions, name);
}

bool Kalidor::isGlVersionAtLeast(int major, int minor) const {
    return Kalidornm::isGlVersionAtLeast(summaryNumbers(), major, minor);
}

const char* Kalidor::getGlRenderer() const { return glFacts().renderer.c_str(); }
const char* Kalidor::getGlVersion() const { return glFacts().version.c_str(); }
const char* Kalidor::getGlslVersion() const { return glFacts().glslVersion.c_str(); }

uint32_t Kalidor::getExtensionCount() const { return glFacts().extensionCount; }
const char* Kalidor::getExtensionName(int index) const {
    const std::vector<GlExtensionFacts>& extensions = glFacts().extensions;
    if (index < 0 || size_t(index) >= extensions.size()) return nullptr;
    return extensions[size_t(index)].name.c_str();
}
uint32_t Kalidor::getGlExtensionCount() const { return glFacts().glExtensionCount; }
uint32_t Kalidor::getWglExtensionCount() const { return glFacts().wglExtensionCount; }

int32_t Kalidor::capCount() const { return int32_t(glFacts().catalogue.size()); }
int32_t Kalidor::capCountInGroup(const char* group, int32_t* firstIndex) const {
    return glState() ? Kalidornm::capCountInGroup(*glState(), group, firstIndex) : 0;
}
bool Kalidor::findCapByName(const char* name, int32_t* index) const {
    return glState() && Kalidornm::findCapByName(*glState(), name, index);
}

std::optional<GlCapFacts> Kalidor::getCap(int index) const {
    const std::vector<GlCapFacts>& catalogue = glFacts().catalogue;
    if (index < 0 || size_t(index) >= catalogue.size()) return std::nullopt;
    return catalogue[size_t(index)];
}

bool Kalidor::readGlNvxMemory(int32_t* totalKb, int32_t* freeKb) {
    return gGlobals.mainWindow && gGlobals.mainWindow->readNvxMemoryKb(totalKb, freeKb);
}
int32_t Kalidor::readGlAtiTotalMemoryKb() {
    return gGlobals.mainWindow ? gGlobals.mainWindow->atiTotalMemoryKb() : -1024;
}
int32_t Kalidor::readGlAtiUsedMemoryKb() { return gGlobals.mainWindow ? gGlobals.mainWindow->atiUsedMemoryKb() : -1; }

int32_t Kalidor::getGlMajorVersion() const { return glFacts().majorVersion; }
int32_t Kalidor::getGlMinorVersion() const { return glFacts().minorVersion; }
int32_t Kalidor::getMaxVertexTextureUnits() const { return glFacts().vertexTextureUnits; }
int32_t Kalidor::getMaxVertexUniformComponents() const { return glFacts().maxVertexUniformComponents; }
int32_t Kalidor::getMaxDrawBuffers() const { return glFacts().maxDrawBuffers; }

}  // namespace Kalidornm
