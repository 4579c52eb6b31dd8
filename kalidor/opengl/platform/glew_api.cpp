#include "kalidor/opengl/platform/glew_api.h"

#include <GL/glew.h>

namespace Kalidornm {

void GlewApi::initGlew() { (void)glewInit(); }

const char* GlewApi::getString(uint32_t name) { return reinterpret_cast<const char*>(glGetString(name)); }

bool GlewApi::hasGetStringi() { return glGetStringi != nullptr; }

const char* GlewApi::getStringi(uint32_t name, uint32_t index) {
    return reinterpret_cast<const char*>(glGetStringi(name, index));
}

void GlewApi::getIntegerv(uint32_t pname, int32_t* values) { glGetIntegerv(pname, values); }

void GlewApi::getFloatv(uint32_t pname, float* values) { glGetFloatv(pname, values); }

bool GlewApi::hasGetInteger64v() { return glGetInteger64v != nullptr; }

void GlewApi::getInteger64v(uint32_t pname, int64_t* value) {
    GLint64 v = *value;
    glGetInteger64v(pname, &v);
    *value = v;
}

bool GlewApi::hasGetIntegeri_v() { return glGetIntegeri_v != nullptr; }

void GlewApi::getIntegeri_v(uint32_t pname, uint32_t index, int32_t* value) { glGetIntegeri_v(pname, index, value); }

void GlewApi::lightModeli(uint32_t pname, int32_t value) { glLightModeli(pname, value); }

void GlewApi::pointParameterf(uint32_t pname, float value) {
    if (glPointParameterf) glPointParameterf(pname, value);
}

bool GlewApi::glewFlag(const char* extension) {
    return glewIsSupported(extension) == GL_TRUE;
}

}  // namespace Kalidornm
