#pragma once

#include <cstdint>
#include <memory>

#include "kalidor/hardware_caps.h"

namespace Kalidornm {

class EglProbe;
class GlApi;

// Owner of the hidden OpenGL probe context and of the machine's HardwareCaps.
class RenderWindow {
public:
    RenderWindow();
    virtual ~RenderWindow();

    // Reads the hardware (HardwareCaps::init), then with glMajor of 1 or more creates the probe context and
    // runs the OpenGL probe. Fails only without HardwareCaps; a failed OpenGL context is not a failure.
    bool create(int width, int height, int colorBits, int depthBits, int stencilBits, int msaaSamples, int glMajor,
                int glMinor, bool debugContext, GpuList& gpus);
    void destroyContext();

    HardwareCaps* caps() const { return m_caps.get(); }
    uint32_t serial() const { return m_serial; }
    bool hasNvxMemoryInfo() const { return m_hasNvxMemoryInfo; }
    bool hasAtiMemInfo() const { return m_hasAtiMemInfo; }

    // GPU memory through OpenGL, read anew on each call on the probe's thread; false or -1 when that way is
    // closed.
    bool readNvxMemoryKb(int32_t* totalKb, int32_t* freeKb);
    int32_t atiTotalMemoryKb();
    int32_t atiUsedMemoryKb();

    int requestedGlMajor = 0;
    int requestedGlMinor = 0;
    int width = 0, height = 0, colorBits = 0, depthBits = 0, stencilBits = 0, msaaSamples = 0;
    bool debugContext = false;

private:
    // Creates the OpenGL context and reads what it offers; false when no context could be made.
    bool _createProbeContext();
    void _destroyProbeContext();

    uint32_t m_serial;
    std::unique_ptr<HardwareCaps> m_caps;
    bool m_hasNvxMemoryInfo = false;
    bool m_hasAtiMemInfo = false;
    std::unique_ptr<EglProbe> m_probe;
    std::unique_ptr<GlApi> m_glApi;
};

// Serial numbers shared by the library's list nodes and windows; the first is 1.
uint32_t nextLibrarySerial();

}  // namespace Kalidornm
