#include "kalidor/machine_snapshot_reader.h"

#include <cmath>
#include <limits>

#include "kalidor/gpu_database/gpu_database.h"
#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"
#include "kalidor/opengl/extension_link_table.h"
#include "kalidor/opengl/gl_capability_reader.h"
#include "kalidor/platform/cpu_x86.h"
#include "kalidor/platform/x11_display_mode.h"
#include "kalidor/vendors/nvidia_gpu.h"

namespace Kalidornm {

namespace {

// Record and summary texts are fixed arrays, so an empty one is a value the library never found.
std::optional<std::string> presentText(const char* text) {
    return text && *text ? std::optional<std::string>(text) : std::nullopt;
}

std::string textOf(const char* text) { return text ? text : ""; }

// A read leaves an output it could not fill as the caller gave it, so outputs start as NaN and an output
// still NaN afterwards is one the driver did not give.
constexpr float kNotRead = std::numeric_limits<float>::quiet_NaN();

std::optional<float> reading(bool ok, float value) {
    return ok && !std::isnan(value) ? std::optional<float>(value) : std::nullopt;
}

// The CPU clock is measured once, from the start-up reading to now, and kept in the CPU block.
int32_t measuredCpuSpeedMhz(CpuOsInfo& cpuOs) {
    if (cpuOs.cpuSpeedMhz == 0) {
        const TscReading start = gGlobals.tscAtStartup.ns != 0 ? gGlobals.tscAtStartup : readTscAtTime();
        cpuOs.cpuSpeedMhz = tscMhzSince(start);
    }
    return int32_t(cpuOs.cpuSpeedMhz);
}

SystemFacts readSystem(HardwareCaps* machine) {
    SystemFacts sys;
    sys.physxVersion = int32_t(gGlobals.physxVersion);
    sys.osIsVista = gGlobals.isVista;
    sys.osDescription = std::string(gGlobals.summary.osDescription);
    if (!machine) {
        sys.cpuName = std::string();
        sys.systemOsDescription = std::string();
        return sys;
    }
    CpuOsInfo& cpuOs = machine->cpuOs;
    // Measuring the CPU clock waits out its window; a live-only start has no use for it.
    if (!gGlobals.liveOnly) sys.cpuSpeedMhz = measuredCpuSpeedMhz(cpuOs);
    sys.cpuName = std::string(cpuOs.cpuName);
    sys.logicalCores = cpuOs.logicalCores;
    sys.cpuFamily = cpuOs.cpuFamily;
    sys.cpuModel = cpuOs.cpuModel;
    sys.cpuStepping = cpuOs.cpuStepping;
    sys.installedMemoryMb = cpuOs.installedMemoryMb;
    sys.totalMemoryKb = cpuOs.totalMemoryKb;
    sys.physicalMemoryBytes = cpuOs.physicalMemoryBytes;
    sys.systemOsDescription = std::string(cpuOs.osDescription);
    return sys;
}

// Capability tests shown as yes/no.
constexpr int kCapFbo = 20, kCapPbo = 26, kCapS3tc = 11, kCapAti3dc = 39, kCapTextureRectangle = 21,
              kCapFloatTextures = 22;

GlCapFacts capFacts(const GlCap& cap) {
    GlCapFacts c;
    c.name = cap.name;
    c.group = cap.group;
    c.valueType = cap.valueType;
    // Only the value of the entry's type means anything; the others stay 0.
    switch (cap.valueType) {
        case GlCap::kInteger: c.intValue = cap.intValue; break;
        case GlCap::kFloat: c.floatValue = cap.floatValue; break;
        case GlCap::kInteger64: c.int64Value = cap.int64Value; break;
        case GlCap::kTriple:
            for (int i = 0; i < 3; ++i) c.tripleValue[i] = cap.tripleValue[i];
            break;
        default: break;
    }
    return c;
}

// The scan's summary holds the version texts, the limits and the extension names of the primary GPU; the
// probe's state holds the rest.
OpenGlFacts readOpenGl(const HardwareCaps* machine) {
    const GpuSummary& summary = gGlobals.summary;
    const OpenGlNumbers& numbers = summary.glNumbers;
    OpenGlFacts gl;
    gl.version = summary.openGLVersion;
    gl.glslVersion = summary.glslVersion;
    gl.majorVersion = numbers.majorVersion;
    gl.minorVersion = numbers.minorVersion;
    gl.extensionCount = uint32_t(summary.extensionNames.size());
    gl.arbTextureUnits = numbers.maxTextureUnits;
    gl.vertexTextureUnits = numbers.maxVertexTextureUnits;
    gl.pixelTextureUnits = numbers.maxPixelTextureUnits;
    gl.geometryTextureUnits = numbers.maxGeometryTextureUnits;
    gl.maxTextureSize = numbers.maxTextureSize;
    gl.maxAnisotropy = numbers.maxAnisotropy;
    gl.maxPointSpriteSize = numbers.maxPointSize;
    gl.maxDynamicLights = numbers.maxLights;
    gl.maxViewportSize = numbers.maxViewportSize;
    gl.maxVertexUniformComponents = numbers.maxVertexUniformComponents;
    gl.maxFragmentUniformComponents = numbers.maxFragmentUniformComponents;
    gl.maxGeometryUniformComponents = numbers.maxGeometryUniformComponents;
    gl.maxVaryingFloats = numbers.maxVaryingFloats;
    gl.maxDrawBuffers = numbers.maxDrawBuffers;
    for (const std::string& name : summary.extensionNames)
        gl.extensions.push_back({name, textOf(extensionNote(name.c_str()))});
    gl.glExtensionCount = summary.glExtensionCount;
    gl.wglExtensionCount = summary.wglExtensionCount;
    if (!machine) return gl;
    const OpenGlState& state = machine->gl;
    gl.vendor = state.vendorText;
    gl.renderer = state.rendererText;
    gl.maxVertexBindableUniforms = state.maxVertexBindableUniforms;
    gl.maxFragmentBindableUniforms = state.maxFragmentBindableUniforms;
    gl.maxGeometryBindableUniforms = state.maxGeometryBindableUniforms;
    gl.fbo = hasCapability(*machine, kCapFbo);
    gl.pbo = hasCapability(*machine, kCapPbo);
    gl.s3tc = hasCapability(*machine, kCapS3tc);
    gl.ati3dc = hasCapability(*machine, kCapAti3dc);
    gl.textureRectangle = hasCapability(*machine, kCapTextureRectangle);
    gl.floatTextures = hasCapability(*machine, kCapFloatTextures);
    for (const MsaaMode& mode : state.msaaModes) gl.msaaSampleCounts.push_back(mode.samples);
    for (const GlCap& cap : state.caps) gl.catalogue.push_back(capFacts(cap));
    return gl;
}

// The NVIDIA driver serves a record whose handle it gave out for the record's address, and is asked only
// while the GPU may be touched; every value stays absent otherwise, and where a read fails.
NvidiaClockFacts readNvidiaClocks(GpuRecord& r, const HardwareCaps* machine) {
    NvidiaClockFacts c;
    if (!machine || r.vendorClass != kVendorClassNvidia || !r.pciAddress) return c;
    const NvmlLibrary* nvml = machine->nvidia.library();
    void* handle = nvml ? machine->nvidia.handleAt(*r.pciAddress) : nullptr;
    if (!handle || handle != r.nvPhysicalGpu || !machine->pci.mayTouch(*r.pciAddress)) return c;
    NvidiaGpu nvidia(*nvml, r);
    float gpuMhz = 0, memMhz = 0;
    if (nvidia.readClockFrequencies(1, &gpuMhz, &memMhz)) {
        c.baseClockMhz = gpuMhz;
        c.memoryClockMhz = memMhz;
    }
    gpuMhz = 0, memMhz = 0;
    if (nvidia.readClockFrequencies(2, &gpuMhz, &memMhz)) {
        c.boostClockMhz = gpuMhz;
        c.boostMemoryClockMhz = memMhz;
    }
    float percent = 0;
    if (nvidia.readPowerTarget(&percent, nullptr)) c.powerTargetPercent = percent;
    float minPercent = 0, maxPercent = 0, defaultPercent = 0;
    if (nvidia.readPowerPolicy(&minPercent, nullptr, &maxPercent, nullptr, &defaultPercent, nullptr)) {
        c.minPowerTargetPercent = minPercent;
        c.maxPowerTargetPercent = maxPercent;
        c.defaultPowerTargetPercent = defaultPercent;
    }
    ClockOffsets offsets;
    if (nvidia.readClockOffsets(&offsets.coreMhz, &offsets.memoryMhz)) c.clockOffsets = offsets;
    ClockSet p0;
    if (nvidia.readP0Clocks(&p0.gpuMhz, &p0.memoryMhz)) c.p0Clocks = p0;
    return c;
}

DriverFacts readDrivers(const HardwareCaps* machine) {
    DriverFacts d;
    if (!machine) return d;
    d.nvDriverVersionNumber = machine->nvidia.nvDriverVersion;
    d.nvDriverBranch = presentText(machine->nvidia.nvDriverBranch);
    d.amdGpuCount = machine->amd.agsGpuCount;
    d.amdCrossfireGpuCount = machine->amd.agsCrossfireGpuCount;
    d.amdAdapterCount = machine->amd.amdAdapterCount;
    d.amdUsableAdapterCount = machine->amd.amdUsableAdapterCount;
    return d;
}

// The memory's place as the record codes it; absent where the record does not know.
std::optional<std::string> memoryLocationText(uint32_t location) {
    switch (location) {
        case 1: return "GPU dedicated";
        case 2: return "Sys shared";
        case 3: return "Sys dedicated";
        default: return std::nullopt;
    }
}

// The levels the record's reader can read, each with its lowest clocks where the driver gave a range.
std::vector<PerfLevelFacts> readPerfLevels(GpuRecord& r, const HardwareCaps* machine) {
    std::vector<PerfLevelFacts> levels;
    GpuLiveReader* reader = machine ? machine->readerFor(r.vendorClass) : nullptr;
    if (!reader) return levels;
    for (uint32_t level = 0; level < r.perfLevelCount; ++level) {
        PerfLevelFacts p;
        if (!reader->readPerfLevel(r, level, &p.id, &p.gpuClockMhz, &p.memClockMhz, &p.shaderClockMhz,
                                   &p.vddcVolts))
            continue;
        if (r.perfLevels) {
            const PerfLevel& entry = r.perfLevels[level];
            if (entry.minGpuClockMhz && entry.minMemClockMhz)
                p.minGpuClockMhz = entry.minGpuClockMhz, p.minMemClockMhz = entry.minMemClockMhz;
        }
        levels.push_back(p);
    }
    return levels;
}

GpuSnapshot readGpu(GpuRecord& r, const HardwareCaps* machine) {
    GpuSnapshot g = gpuIdentity(r);
    g.name = presentText(r.name);
    g.codename = presentText(r.codename);
    g.driverVersion = presentText(r.driverVersion);
    g.busId = r.busId;
    g.catalystVersion = presentText(r.catalystVersion);
    g.isCrimson = r.isCrimson != 0;
    // A figure the driver left at 0 comes from the database, and stays in the record.
    g.shaderCores = refillFromGpuDb(r.shaderCores, r.vendorId, r.deviceId, GpuDbFigure::UnifiedShaders);
    g.vertexPipes = refillFromGpuDb(r.vertexPipes, r.vendorId, r.deviceId, GpuDbFigure::VertexPipes);
    g.pixelPipes = refillFromGpuDb(r.pixelPipes, r.vendorId, r.deviceId, GpuDbFigure::PixelPipes);
    g.tdpWatts = refillFromGpuDb(r.tdpWatts, r.vendorId, r.deviceId, GpuDbFigure::TdpWatts);
    g.textureUnits = r.tmus;
    g.ropUnits = r.rops;
    g.biosVersion = presentText(r.biosVersion);
    g.memorySizeMb = r.memorySizeMb;
    g.memoryType = presentText(r.memoryType);
    if (r.memoryBusWidth != 0) g.memoryBusWidthBits = r.memoryBusWidth;
    g.memoryLocation = memoryLocationText(r.memoryLocation);
    g.displayDeviceString = r.displayDeviceString;
    g.displayDeviceId = r.displayDeviceId;
    g.driverDate = presentText(r.driverDate);
    g.hasTemperatureSensor = r.hasTemperature;
    g.nvidia = readNvidiaClocks(r, machine);
    g.perfLevels = readPerfLevels(r, machine);
    return g;
}

// The sub ids are -1 until a display device is decoded; they read 0 then.
uint32_t decodedOrZero(int32_t id) { return id < 0 ? 0 : uint32_t(id); }

PrimaryDeviceFacts readPrimary(const HardwareCaps* machine) {
    const GpuSummary& summary = gGlobals.summary;
    const GpuRecord* first = gGlobals.gpus.at(0);
    PrimaryDeviceFacts p;
    p.driverText = presentText(summary.driverText);
    p.vendorId = summary.vendorId;
    p.deviceId = summary.deviceId;
    p.gpuName = presentText(summary.gpuName);
    p.codename = presentText(summary.codename);
    p.shaderCores = summary.unifiedShaders;
    p.videoMemoryMb = summary.videoMemoryMb;
    p.biosVersion = presentText(summary.biosVersion);
    p.textureUnits = summary.tmus;
    p.ropUnits = summary.rops;
    p.tdpWatts = summary.tdpWatts;
    p.displayDeviceString = first ? first->displayDeviceString : "";
    p.totalGpuCount = summary.totalGpuCount;
    if (!machine) return p;
    p.vendorKind = machine->primaryVendorKind;
    // The NVIDIA reader reads GPU 0's core count from the driver when it makes the record: that count wins.
    if (p.vendorKind == kPrimaryVendorNvidia && first && first->vendorClass == kVendorClassNvidia &&
        first->shaderCores != 0)
        p.shaderCores = first->shaderCores;
    p.driverVersion = presentText(machine->driver.driverVersion);
    p.driverDate = presentText(machine->driver.driverDate);
    p.subvendorId = decodedOrZero(machine->display.primary.subvendorId);
    p.subdeviceId = decodedOrZero(machine->display.primary.subdeviceId);
    p.biosString = presentText(machine->driver.biosString);
    p.revisionText = machine->display.primary.revisionText;
    p.driverDescription = presentText(machine->driver.driverDescription);
    p.deviceDescription = presentText(machine->driver.deviceDescription);
    p.openGLDriverName = presentText(machine->driver.openGLDriverName);
    return p;
}

}  // namespace

GpuSnapshot gpuIdentity(const GpuRecord& r) {
    GpuSnapshot g;
    g.vendorId = r.vendorId, g.deviceId = r.deviceId, g.subvendorId = r.subvendorId, g.subdeviceId = r.subdeviceId;
    // A device off the PCI bus (the software rasterizer) has a record with zero ids: it has none to show.
    g.hasPciIds = r.vendorId != 0;
    if (r.pciAddress) g.pciAddress = r.pciAddress->text();
    return g;
}

MachineSnapshot readMachineSnapshot(Kalidor& k) {
    MachineSnapshot m;
    HardwareCaps* machine = k.caps();
    m.system = readSystem(machine);
    m.hasDisplayDevice = gGlobals.hasDisplayDevice;
    if (!k.isLiveOnly()) {
        // One question to the display server for all four figures: each is a round trip, slow on some servers.
        const DisplayMode mode = readCurrentDisplayMode();
        m.displayMode = {int32_t(mode.width), int32_t(mode.height), int32_t(mode.refreshHz),
                         int32_t(mode.bitsPerPixel)};
    }
    m.primary = readPrimary(machine);
    m.driver = readDrivers(machine);
    m.gpus.reserve(gGlobals.gpus.size());
    for (size_t gpu = 0; gpu < gGlobals.gpus.size(); ++gpu)
        m.gpus.push_back(readGpu(*gGlobals.gpus.at(long(gpu)), machine));
    if (!gGlobals.liveOnly) m.gl = readOpenGl(machine);
    return m;
}

LiveSample readLiveSample(Kalidor& k, int gpu) {
    LiveSample live;
    if (k.isGpuSuspended(gpu)) {
        live.suspended = true;
        return live;
    }
    float core = kNotRead, board = kNotRead, memory = kNotRead, vrm = kNotRead;
    live.temperaturesRead = k.readGpuTemperatures(gpu, &core, &board, &memory, &vrm);
    live.coreTemperatureC = reading(live.temperaturesRead, core);
    live.boardTemperatureC = reading(live.temperaturesRead, board);
    live.memoryTemperatureC = reading(live.temperaturesRead, memory);
    live.vrmTemperatureC = reading(live.temperaturesRead, vrm);
    float percent = kNotRead, rpm = kNotRead;
    live.fanRead = k.readGpuFanSpeed(gpu, &percent, &rpm);
    live.fanPercent = reading(live.fanRead, percent);
    live.fanRpm = reading(live.fanRead, rpm);
    float load = kNotRead, frameBuffer = kNotRead;
    live.loadRead = k.readGpuLoad(gpu, &load, &frameBuffer);
    live.gpuLoadPercent = reading(live.loadRead, load);
    live.frameBufferLoadPercent = reading(live.loadRead, frameBuffer);
    uint32_t pstate = 0;
    float gpuMhz = kNotRead, memMhz = kNotRead, shaderMhz = kNotRead, volts = kNotRead;
    if (k.readGpuCurrentClocks(gpu, &pstate, &gpuMhz, &memMhz, &shaderMhz, &volts)) {
        live.currentPstate = pstate;
        live.currentGpuClockMhz = reading(true, gpuMhz);
        live.currentMemClockMhz = reading(true, memMhz);
        live.currentShaderClockMhz = reading(true, shaderMhz);
        live.currentVolts = reading(true, volts);
    }
    float powerPercent = 0;
    if (k.readGpuPowerUsage(gpu, &powerPercent, nullptr)) live.powerUsagePercent = powerPercent;
    int32_t limit = 0, standard = 0;
    if (k.readGpuPowerControl(gpu, &limit, &standard, nullptr, nullptr)) {
        live.powerLimitPercent = limit;
        live.defaultPowerLimitPercent = standard;
    }
    k.readGpuMoreLive(gpu, live);
    return live;
}

}  // namespace Kalidornm
