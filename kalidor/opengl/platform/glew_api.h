#pragma once

#include "kalidor/opengl/gl_api.h"

namespace Kalidornm {

// The OpenGL calls of the probe through GLEW, on the context current on this thread.
class GlewApi : public GlApi {
public:
    explicit GlewApi(const char* platformExtensions) : m_platformExtensions(platformExtensions) {}

    // Binds entry points and extension flags. On an EGL context GLEW reports a missing GLX display after it
    // has bound them, so the result is not looked at.
    static void initGlew();

    const char* getString(uint32_t name) override;
    bool hasGetStringi() override;
    const char* getStringi(uint32_t name, uint32_t index) override;
    void getIntegerv(uint32_t pname, int32_t* values) override;
    void getFloatv(uint32_t pname, float* values) override;
    bool hasGetInteger64v() override;
    void getInteger64v(uint32_t pname, int64_t* value) override;
    bool hasGetIntegeri_v() override;
    void getIntegeri_v(uint32_t pname, uint32_t index, int32_t* value) override;
    void lightModeli(uint32_t pname, int32_t value) override;
    void pointParameterf(uint32_t pname, float value) override;
    bool glewFlag(const char* extension) override;
    const char* platformExtensions() override { return m_platformExtensions; }

private:
    const char* m_platformExtensions;
};

}  // namespace Kalidornm
