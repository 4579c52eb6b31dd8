#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

// What the library knows of the machine, as plain values: built once after start-up, the live part of every
// GPU refreshed on request. The report, the validation body and the windows read this; nothing here calls
// a driver.
//
// Unknown is std::optional: a reading the driver did not give is absent, never 0 or -1. Texts a driver may
// not give are optional too; an empty text is a text that exists. Counts the library always knows are plain
// numbers, 0 where the machine has none.
namespace Kalidornm {

struct SystemFacts {
    std::optional<std::string> cpuName;
    int32_t cpuSpeedMhz = 0;
    int32_t logicalCores = 0;
    int32_t cpuFamily = 0, cpuModel = 0, cpuStepping = 0;
    uint32_t installedMemoryMb = 0;  // 0 where the system cannot tell
    uint32_t totalMemoryKb = 0;
    uint32_t physicalMemoryBytes = 0;  // saturates at the 32-bit limit
    // The summary's copy, which the graphics scan fills: empty on a machine without a display device.
    std::optional<std::string> osDescription;
    // The same text as the system gave it at start, known with or without a GPU.
    std::optional<std::string> systemOsDescription;
    int32_t physxVersion = 0;
    bool osIsVista = false;
};

struct DisplayModeFacts {
    int32_t width = 0, height = 0, refreshHz = 0, bitsPerPixel = 0;
};

struct PerfLevelFacts {
    uint32_t id = 0;  // NVIDIA P-state number
    float gpuClockMhz = 0.0f;
    float memClockMhz = 0.0f;
    float shaderClockMhz = 0.0f;
    float vddcVolts = 0.0f;
    // The level's lowest clocks where the driver gives a range (NVIDIA P-states); gpuClockMhz and memClockMhz
    // are then its highest.
    std::optional<float> minGpuClockMhz, minMemClockMhz;
};

struct ClockOffsets {
    float coreMhz = 0.0f, memoryMhz = 0.0f, volts = 0.0f;
};

struct ClockSet {
    float gpuMhz = 0.0f, memoryMhz = 0.0f, volts = 0.0f;
};

// Boost-era NVIDIA values, read through the driver once; each is absent where the driver did not answer.
struct NvidiaClockFacts {
    std::optional<float> baseClockMhz, memoryClockMhz;  // the base clocks
    std::optional<float> boostClockMhz, boostMemoryClockMhz;
    std::optional<float> powerTargetPercent;
    std::optional<float> minPowerTargetPercent, maxPowerTargetPercent, defaultPowerTargetPercent;
    std::optional<ClockOffsets> clockOffsets;
    std::optional<ClockSet> p0Clocks;
};

// One named value of a live sample: a temperature by sensor, a voltage by rail.
struct NamedReading {
    std::string name;
    float value = 0.0f;
};

// The sensor names a live sample uses.
inline constexpr const char* kSensorNames[] = {
    "edge", "junction", "memory", "vr_gfx", "vr_soc", "vr_mem", "package", "vram", "gfx", "soc",
};
// The rail names a live sample uses, as the drivers label them.
inline constexpr const char* kRailNames[] = {"vddgfx", "vddnb", "vddc", "gt", "card", "pkg"};

// One GPU's readings of one moment. A GPU that sleeps is not asked (asking wakes it): every value is absent.
struct LiveSample {
    bool suspended = false;
    // Whether the driver answered each read at all; a read can answer and still leave some values unknown.
    bool temperaturesRead = false, fanRead = false, loadRead = false;
    // Whether a backend's readMoreLive reached the driver: its lists below then hold what the GPU named, even
    // when that is nothing.
    bool moreRead = false;
    std::optional<float> coreTemperatureC, boardTemperatureC, memoryTemperatureC, vrmTemperatureC;
    std::optional<float> fanPercent, fanRpm;
    std::optional<float> gpuLoadPercent, frameBufferLoadPercent;
    std::optional<uint32_t> currentPstate;
    std::optional<float> currentGpuClockMhz, currentMemClockMhz, currentShaderClockMhz, currentVolts;
    std::optional<float> powerUsagePercent;  // of the board's power target
    // AMD: the power limit as percent of the board's default, and that default.
    std::optional<int32_t> powerLimitPercent, defaultPowerLimitPercent;

    // What a backend reads beyond the values above, each in its unit. Sensor and rail names are those every
    // output uses (report.json's keys, the metrics' labels): kSensorNames and kRailNames below.
    std::vector<NamedReading> temperaturesC;  // by sensor, in the order the backend read them
    std::optional<float> hotspotTemperatureC;  // the junction sensor, where the GPU has one
    std::optional<float> requestedGpuClockMhz;  // what the driver asked for; currentGpuClockMhz is the actual
    std::vector<NamedReading> voltagesV;  // by rail
    std::optional<float> powerWatts, powerLimitWatts;
    std::optional<double> energyJoules;  // the driver's running total
    std::optional<uint64_t> memoryUsedMb, memoryTotalMb;
    std::vector<std::string> throttleReasons;  // the driver's names for what holds the clocks down now
    bool throttleRead = false;  // the driver gave a throttle status: an empty list then means nothing holds them
};

struct GpuSnapshot {
    // Identity
    std::optional<std::string> name;
    std::optional<std::string> codename;
    bool hasPciIds = false;  // false for a device off the PCI bus, whose ids read 0
    uint32_t vendorId = 0, deviceId = 0, subvendorId = 0, subdeviceId = 0;
    int32_t busId = -1;
    std::optional<std::string> pciAddress;  // "0000:03:00.0"; absent off the PCI bus
    // Driver
    std::optional<std::string> driverVersion;    // this GPU's own driver text
    std::optional<std::string> catalystVersion;  // AMD
    bool isCrimson = false;                      // AMD
    // Static figures, from the database and the driver
    int32_t shaderCores = 0, textureUnits = 0, ropUnits = 0, tdpWatts = 0;
    std::optional<std::string> biosVersion;
    uint32_t memorySizeMb = 0;
    std::optional<std::string> memoryType;
    std::optional<uint32_t> memoryBusWidthBits;
    std::optional<std::string> memoryLocation;  // "GPU dedicated", "Sys shared", "Sys dedicated"
    std::optional<std::string> memoryMaker;     // the memory chips' vendor, where the driver tells
    int32_t vertexPipes = 0, pixelPipes = 0;    // of GPUs before unified shaders
    std::string displayDeviceString;            // its display device's text; empty without one
    std::string displayDeviceId;                // its display device's PCI id string; empty without one
    std::optional<std::string> driverDate;      // the kernel driver's build date
    bool hasTemperatureSensor = false;
    NvidiaClockFacts nvidia;
    std::vector<PerfLevelFacts> perfLevels;  // the levels that could be read, in level order
    LiveSample live;
};

// The primary display device as the summary describes it; what a machine without GPU records still has.
struct PrimaryDeviceFacts {
    int32_t vendorKind = 0;  // 1 NVIDIA
    std::optional<std::string> driverVersion, driverDate, driverText;
    uint32_t vendorId = 0, deviceId = 0, subvendorId = 0, subdeviceId = 0;
    std::optional<std::string> gpuName, codename;
    int32_t shaderCores = 0;
    uint32_t videoMemoryMb = 0;
    std::optional<std::string> biosVersion;
    int32_t textureUnits = 0, ropUnits = 0, tdpWatts = 0;
    std::string displayDeviceString;  // display device 0; empty without one
    std::optional<std::string> biosString;  // the BIOS as the display driver words it
    std::string revisionText;               // the PCI revision, "A1"; empty before a display device is decoded
    std::optional<std::string> driverDescription, deviceDescription, openGLDriverName;
    uint32_t totalGpuCount = 0;             // GPUs the primary vendor's driver counts, linked ones included
};

struct DriverFacts {
    uint32_t nvDriverVersionNumber = 0;  // NVIDIA driver version x 100; 0 without the driver
    std::optional<std::string> nvDriverBranch;
    uint32_t amdGpuCount = 0, amdCrossfireGpuCount = 0;  // 0 without the AMD driver
    uint32_t amdAdapterCount = 0, amdUsableAdapterCount = 0;
};

struct GlCapFacts {
    std::string name;
    std::string group;      // version or extension the entry belongs to; empty for the separator
    int32_t valueType = 0;  // 1 integer, 2 float, 4 64-bit integer, 5 three integers, else none
    int32_t intValue = 0;
    float floatValue = 0.0f;
    int64_t int64Value = 0;
    int32_t tripleValue[3] = {};
};

struct GlExtensionFacts {
    std::string name;
    std::string note;  // from the extension notes table; empty where there is none
};

struct OpenGlFacts {
    std::string vendor, renderer, version, glslVersion;  // empty without a context
    int32_t majorVersion = 0, minorVersion = 0;
    uint32_t extensionCount = 0;  // every extension string, GL and window system together
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
    bool fbo = false, pbo = false, s3tc = false, ati3dc = false, textureRectangle = false, floatTextures = false;
    std::vector<int32_t> msaaSampleCounts;
    std::vector<GlExtensionFacts> extensions;
    uint32_t glExtensionCount = 0, wglExtensionCount = 0;
    std::vector<GlCapFacts> catalogue;  // core entries, the separator, then the entries of extensions
};

struct MachineSnapshot {
    SystemFacts system;
    bool hasDisplayDevice = false;
    DisplayModeFacts displayMode;
    PrimaryDeviceFacts primary;
    DriverFacts driver;
    std::vector<GpuSnapshot> gpus;  // in the library's GPU order
    OpenGlFacts gl;
};

}  // namespace Kalidornm
