#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kalidor/opengl/context_ladder.h"
#include "kalidor/opengl/msaa_modes.h"

namespace Kalidornm {

// The headless EGL display and the one OpenGL context of the probe. No surface is ever made: the context is
// made current surfaceless. Owns both and lets go of them in its destructor.
class EglProbe : public ContextCreator {
public:
    EglProbe() = default;
    ~EglProbe() override;
    EglProbe(const EglProbe&) = delete;
    EglProbe& operator=(const EglProbe&) = delete;

    // The device platform, preferring the EGL device whose DRM node is one of the primary display device's
    // ("card0", "renderD128"), else the first device; Mesa's surfaceless platform when no device opens.
    bool openDisplay(const std::vector<std::string>& primaryDrmNodes);
    const char* displayExtensions() const;
    const char* platformName() const { return m_platformName; }
    std::vector<EglConfigTraits> configTraits() const;

    bool tryCreate(const std::vector<int32_t>& attributes) override;
    bool hasContext() const { return m_context != nullptr; }
    bool makeCurrent();
    void destroyContext();
    void release();

private:
    void* m_display = nullptr;  // EGLDisplay
    void* m_context = nullptr;  // EGLContext
    const char* m_platformName = "none";
};

}  // namespace Kalidornm
