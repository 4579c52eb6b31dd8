#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "kalidor/gpu_record.h"
#include "kalidor/machine_snapshot.h"
#include "kalidor/platform/cpu_x86.h"
#include "kalidor/render_window.h"

namespace Kalidornm {

// The primary GPU as the scan saw it at the end of start-up; never refreshed.
struct GpuSummary {
    char gpuName[256] = {};
    char driverText[256] = {};
    char codename[128] = {};
    char biosVersion[256] = {};
    char osDescription[256] = {};
    char openGLVersion[256] = {};
    char glslVersion[256] = {};
    int32_t tdpWatts = 0;
    int32_t unifiedShaders = 0;
    int32_t vertexPipes = 0;
    int32_t pixelPipes = 0;
    int32_t tmus = 0;
    int32_t rops = 0;
    uint32_t videoMemoryMb = 0;
    uint32_t vendorId = 0;
    uint32_t deviceId = 0;
    uint32_t totalGpuCount = 0;
    std::vector<std::string> extensionNames;
    uint32_t glExtensionCount = 0;
    uint32_t wglExtensionCount = 0;
    OpenGlNumbers glNumbers;
};

// The library's one global block.
struct LibraryGlobals {
    bool started = false;
    bool liveOnly = false;  // started by startupLiveOnly
    // Taken when start-up begins; the CPU clock is measured from it, over the probe's time.
    TscReading tscAtStartup;
    GpuList gpus;
    int32_t gpu_db_index = -1;
    std::vector<std::unique_ptr<RenderWindow>> windows;
    RenderWindow* mainWindow = nullptr;
    bool hasDisplayDevice = false;
    bool isVista = false;
    uint32_t physxVersion = 0;
    GpuSummary summary;
    std::optional<MachineSnapshot> snapshot;  // read on first use, dropped at shutdown
};

extern LibraryGlobals gGlobals;

// The snapshot the library holds, read from the records on first use after start-up; what the facade's
// accessors of static facts answer from.
const MachineSnapshot& heldSnapshot();

// A snapshot text where the facade hands out C strings: one the library never found reads as empty.
inline const char* textOrEmpty(const std::optional<std::string>& text) { return text ? text->c_str() : ""; }

}  // namespace Kalidornm
