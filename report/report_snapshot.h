#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "compute/cuda_records.h"
#include "compute/opencl_records.h"

// Everything a report prints, gathered once from the library, the discovery records and the application
// state. The generators read nothing else, so a snapshot filled by hand replays any machine.
//
// Absent and zero differ where a reader can fail: such fields are std::optional. Texts a library accessor
// may give as null are optional too; an empty text is a text that exists.
namespace report {

struct ReportSystem {
    std::optional<std::string> cpuName;
    int32_t cpuSpeedMhz = 0;
    int32_t logicalCores = 0;
    int32_t cpuFamily = 0, cpuModel = 0, cpuStepping = 0;
    uint32_t installedMemoryMb = 0;  // 0 where the system cannot tell
    uint32_t totalMemoryKb = 0;
    // The summary's copy, which the graphics scan fills: empty on a machine without a display device. The
    // text and XML rows show this one.
    std::optional<std::string> osDescription;
    // The same text as the system gave it at start, known with or without a GPU: the JSON's value.
    std::optional<std::string> systemOsDescription;
    int32_t physxVersion = 0;
    bool osIsVista = false;
};

struct ReportDisplayMode {
    int32_t width = 0, height = 0, refreshHz = 0, bitsPerPixel = 0;
};

struct ReportPerfLevel {
    uint32_t id = 0;  // NVIDIA P-state number
    float gpuClockMhz = 0.0f;
    float memClockMhz = 0.0f;
    float shaderClockMhz = 0.0f;
    float vddcVolts = 0.0f;
};

// Boost-era NVIDIA values; each is absent where the driver did not answer.
struct ReportNvidiaClocks {
    std::optional<float> baseClockMhz, boostClockMhz, memoryClockMhz;
    std::optional<float> powerTargetPercent, minPowerTargetPercent, maxPowerTargetPercent;
};

// Last live readings at the time the snapshot was taken.
struct ReportLiveReadings {
    std::optional<float> coreTemperatureC, boardTemperatureC, memoryTemperatureC, vrmTemperatureC;
    std::optional<float> fanPercent, fanRpm;
    std::optional<float> gpuLoadPercent, frameBufferLoadPercent;
    std::optional<uint32_t> currentPstate;
    std::optional<float> currentGpuClockMhz, currentMemClockMhz, currentShaderClockMhz, currentVolts;
};

struct ReportGpu {
    std::optional<std::string> name;
    std::optional<std::string> codename;
    std::optional<std::string> marketingNameFromDb;
    bool hasPciIds = false;
    uint32_t vendorId = 0, deviceId = 0, subvendorId = 0, subdeviceId = 0;
    std::optional<std::string> driverVersion;    // this GPU's own driver text
    std::optional<std::string> catalystVersion;  // AMD
    bool isCrimson = false;                      // AMD
    int32_t busId = -1;
    int32_t shaderCores = 0, textureUnits = 0, ropUnits = 0, tdpWatts = 0;
    std::optional<std::string> biosVersion;
    uint32_t memorySizeMb = 0;
    std::optional<std::string> memoryType;
    std::optional<uint32_t> memoryBusWidthBits;
    std::optional<std::string> memoryLocation;  // "GPU dedicated", "Sys shared", "Sys dedicated"
    ReportNvidiaClocks nvidia;
    std::vector<ReportPerfLevel> perfLevels;  // the levels that could be read, in level order
    ReportLiveReadings live;
};

// Machine-level driver values of the primary device.
struct ReportDriver {
    std::optional<std::string> primaryDriverVersion;
    std::optional<std::string> primaryDriverText;  // the summary's driver line
    uint32_t nvDriverVersionNumber = 0;            // NVIDIA driver version x 100
    std::optional<std::string> nvDriverBranch;
};

struct ReportGlCap {
    std::string name;
    std::string group;       // version or extension the entry belongs to; empty for the separator
    int32_t valueType = 0;   // 1 integer, 2 float, 4 64-bit integer, 5 three integers, else none
    int32_t intValue = 0;
    float floatValue = 0.0f;
    int64_t int64Value = 0;
    int32_t tripleValue[3] = {};
};

struct ReportGlExtension {
    std::string name;
    std::string note;  // from the extension notes table; empty where there is none
};

struct ReportOpenGl {
    std::string vendor, renderer, version, glslVersion;
    int32_t arbTextureUnits = 0;
    int32_t vertexTextureUnits = 0, pixelTextureUnits = 0, geometryTextureUnits = 0;
    int32_t maxTextureSize = 0;
    float maxAnisotropy = 0.0f;
    float maxPointSpriteSize = 0.0f;
    int32_t maxDynamicLights = 0;
    int32_t maxViewportSize = 0;
    int32_t maxVertexUniformComponents = 0, maxFragmentUniformComponents = 0, maxGeometryUniformComponents = 0;
    int32_t maxVaryingFloats = 0;
    int32_t maxVertexBindableUniforms = 0, maxFragmentBindableUniforms = 0, maxGeometryBindableUniforms = 0;
    int32_t maxDrawBuffers = 0;
    // Capability tests 20, 26, 11, 39, 21 and 22.
    bool fbo = false, pbo = false, s3tc = false, ati3dc = false, textureRectangle = false, floatTextures = false;
    std::vector<int32_t> msaaSampleCounts;
    std::vector<ReportGlExtension> extensions;
    uint32_t glExtensionCount = 0, wglExtensionCount = 0;
    std::vector<ReportGlCap> catalogue;  // core entries, the separator, then the entries of extensions
};

// OpenCL and CUDA take discovery's own records: the field rows in compute/ say how each value is printed.
using ReportClDevice = compute::ClDeviceRecord;
using ReportClPlatform = compute::ClPlatformRecord;
using ReportCudaDevice = compute::CudaDeviceRecord;

// The legacy NVIDIA control panel values; absent where that interface does not exist.
struct ReportNvidiaControlPanel {
    int32_t coreTemperatureC = 0;
    std::string displayAdapter, displayBoard, displayDriver, busMode;
    int32_t busTransferRate = 0;
    int32_t videoMemoryMb = 0;
    long gpuCount = 0, sliGpuCount = 0;
    std::string sliRenderingMode;
};

struct ReportLink {
    std::string key;  // reviews only: text searched for in the adapter's name
    std::string url;
};

// The web-link tables chosen by the tools panel; a batch run never has them.
struct ReportLinks {
    std::vector<ReportLink> drivers;
    std::vector<ReportLink> reviews;
};

struct ReportSnapshot {
    // Banner
    std::string programName;
    int versionMajor = 0, versionMinor = 0, versionPatch = 0, versionBuild = 0;
    std::string homePage;

    ReportSystem system;
    bool hasDisplayDevice = false;
    ReportDisplayMode displayMode;
    std::string primaryDisplayDeviceString;  // display device 0
    bool primaryIsNvidia = false;             // primary vendor kind
    ReportDriver driver;
    std::vector<ReportGpu> gpus;
    ReportOpenGl gl;
    std::vector<ReportCudaDevice> cudaDevices;
    std::vector<ReportClPlatform> clPlatforms;
    std::optional<ReportNvidiaControlPanel> nvidiaControlPanel;
    std::optional<ReportLinks> links;
};


}  // namespace report
