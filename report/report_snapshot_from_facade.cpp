#include "report_snapshot_from_facade.h"

#include <cmath>
#include <limits>

#include "app/version.h"
#include "kalidor/kalidor.h"
#include "kalidor/opengl/extension_link_table.h"

namespace report {

namespace {

constexpr const char* kHomePage = "https://lumenscope.example.org/";
constexpr uint32_t kVendorIntel = 0x8086;

std::optional<std::string> optionalText(const char* text) {
    return text ? std::optional<std::string>(text) : std::nullopt;
}

// Record and summary texts are fixed arrays, so an empty one is a value the library never found.
std::optional<std::string> presentText(const char* text) {
    return text && *text ? std::optional<std::string>(text) : std::nullopt;
}

// The facade leaves an output it could not read as the caller gave it, so outputs start as NaN and an output
// still NaN afterwards is one the library did not read.
constexpr float kNotRead = std::numeric_limits<float>::quiet_NaN();

std::optional<float> reading(bool ok, float value) {
    return ok && !std::isnan(value) ? std::optional<float>(value) : std::nullopt;
}

void fillSystem(ReportSnapshot& s, Kalidornm::Kalidor& k) {
    ReportSystem& sys = s.system;
    sys.cpuSpeedMhz = int32_t(k.getCpuSpeedMhz());
    sys.physxVersion = int32_t(k.getPhysxVersion());
    sys.osIsVista = k.isVista();
    sys.cpuName = optionalText(k.getCpuName());
    sys.logicalCores = k.getCpuLogicalCores();
    sys.cpuFamily = k.getCpuFamily();
    sys.cpuModel = k.getCpuModel();
    sys.cpuStepping = k.getCpuStepping();
    sys.installedMemoryMb = k.getInstalledMemoryMb();
    sys.totalMemoryKb = k.getTotalMemoryKb();
    sys.osDescription = optionalText(k.getOsDescription());
    sys.systemOsDescription = optionalText(k.getSystemOsDescription());
}

std::string textOf(const char* text) { return text ? text : ""; }

// Capability tests the report shows as yes/no.
constexpr int kCapFbo = 20, kCapPbo = 26, kCapS3tc = 11, kCapAti3dc = 39, kCapTextureRectangle = 21,
              kCapFloatTextures = 22;

void fillOpenGl(ReportOpenGl& gl, Kalidornm::Kalidor& k) {
    gl.vendor = textOf(k.getGlVendor());
    gl.renderer = textOf(k.getGlRenderer());
    gl.version = textOf(k.getGlVersion());
    gl.glslVersion = textOf(k.getGlslVersion());
    gl.arbTextureUnits = k.getMaxTextureUnitsARB();
    gl.vertexTextureUnits = k.getMaxVertexTextureUnits();
    gl.pixelTextureUnits = k.getMaxPixelTextureUnits();
    gl.geometryTextureUnits = k.getMaxGeometryTextureUnits();
    gl.maxTextureSize = k.getMaxTextureSize();
    gl.maxAnisotropy = k.getMaxAnisotropy();
    gl.maxPointSpriteSize = k.getMaxPointSpriteSize();
    gl.maxDynamicLights = k.getMaxDynamicLights();
    gl.maxViewportSize = k.getMaxViewportSize();
    gl.maxVertexUniformComponents = k.getMaxVertexUniformComponents();
    gl.maxFragmentUniformComponents = k.getMaxFragmentUniformComponents();
    gl.maxGeometryUniformComponents = k.getMaxGeometryUniformComponents();
    gl.maxVaryingFloats = k.getMaxVaryingFloats();
    gl.maxVertexBindableUniforms = k.getMaxVertexBindableUniforms();
    gl.maxFragmentBindableUniforms = k.getMaxFragmentBindableUniforms();
    gl.maxGeometryBindableUniforms = k.getMaxGeometryBindableUniforms();
    gl.maxDrawBuffers = k.getMaxDrawBuffers();
    gl.fbo = k.hasCapability(kCapFbo);
    gl.pbo = k.hasCapability(kCapPbo);
    gl.s3tc = k.hasCapability(kCapS3tc);
    gl.ati3dc = k.hasCapability(kCapAti3dc);
    gl.textureRectangle = k.hasCapability(kCapTextureRectangle);
    gl.floatTextures = k.hasCapability(kCapFloatTextures);
    for (int i = 0; i < k.getMsaaModeCount(); ++i) gl.msaaSampleCounts.push_back(k.getMsaaMode(i));
    const uint32_t extensionCount = k.getExtensionCount();
    for (uint32_t i = 0; i < extensionCount; ++i) {
        const char* name = k.getExtensionName(int(i));
        if (!name) break;
        gl.extensions.push_back({name, textOf(Kalidornm::extensionNote(name))});
    }
    gl.glExtensionCount = k.getGlExtensionCount();
    gl.wglExtensionCount = k.getWglExtensionCount();
    for (int i = 0; i < k.capCount(); ++i) {
        ReportGlCap c;
        char name[128] = {}, group[128] = {};
        if (!k.getCap(i, name, &c.valueType, &c.intValue, c.tripleValue, &c.int64Value, &c.floatValue, group))
            continue;
        c.name = name;
        c.group = group;
        gl.catalogue.push_back(std::move(c));
    }
}

void fillLiveReadings(ReportGpu& g, Kalidornm::Kalidor& k, int index) {
    ReportLiveReadings& live = g.live;
    float core = kNotRead, board = kNotRead, memory = kNotRead, vrm = kNotRead;
    const bool temperatures = k.readGpuTemperatures(index, &core, &board, &memory, &vrm);
    live.coreTemperatureC = reading(temperatures, core);
    live.boardTemperatureC = reading(temperatures, board);
    live.memoryTemperatureC = reading(temperatures, memory);
    live.vrmTemperatureC = reading(temperatures, vrm);
    float percent = kNotRead, rpm = kNotRead;
    const bool fan = k.readGpuFanSpeed(index, &percent, &rpm);
    live.fanPercent = reading(fan, percent);
    live.fanRpm = reading(fan, rpm);
    float load = kNotRead, frameBuffer = kNotRead;
    const bool loads = k.readGpuLoad(index, &load, &frameBuffer);
    live.gpuLoadPercent = reading(loads, load);
    live.frameBufferLoadPercent = reading(loads, frameBuffer);
    uint32_t pstate = 0;
    float gpuMhz = kNotRead, memMhz = kNotRead, shaderMhz = kNotRead, volts = kNotRead;
    if (k.readGpuCurrentClocks(index, &pstate, &gpuMhz, &memMhz, &shaderMhz, &volts)) {
        live.currentPstate = pstate;
        live.currentGpuClockMhz = reading(true, gpuMhz);
        live.currentMemClockMhz = reading(true, memMhz);
        live.currentShaderClockMhz = reading(true, shaderMhz);
        live.currentVolts = reading(true, volts);
    }
}

// Boost-era values through the NVIDIA driver; every read fails for other GPUs and leaves them absent.
void fillNvidiaClocks(ReportNvidiaClocks& c, Kalidornm::Kalidor& k, int index) {
    float gpuMhz = 0, memMhz = 0;
    if (k.readGpuClockFrequencies(index, 1, &gpuMhz, &memMhz)) {
        c.baseClockMhz = gpuMhz;
        c.memoryClockMhz = memMhz;
    }
    if (k.readGpuClockFrequencies(index, 2, &gpuMhz, nullptr)) c.boostClockMhz = gpuMhz;
    float percent = 0;
    if (k.readGpuPowerTarget(index, &percent, nullptr)) c.powerTargetPercent = percent;
    float minPercent = 0, maxPercent = 0;
    if (k.readGpuPowerPolicy(index, &minPercent, nullptr, &maxPercent, nullptr, nullptr, nullptr)) {
        c.minPowerTargetPercent = minPercent;
        c.maxPowerTargetPercent = maxPercent;
    }
}

void fillGpu(ReportGpu& g, Kalidornm::Kalidor& k, int index) {
    g.name = presentText(k.getGpuName(index));
    g.codename = presentText(k.getGpuCodename(index));
    // A device off the PCI bus (the software rasterizer) has a record with zero ids: it has none to show.
    g.hasPciIds =
        k.getGpuPciIds(index, &g.vendorId, &g.deviceId, &g.subvendorId, &g.subdeviceId) && g.vendorId != 0;
    g.driverVersion = presentText(k.getGpuDriverVersion(index));
    g.busId = k.getGpuBusId(index);
    g.catalystVersion = presentText(k.getGpuCatalystVersion(index));
    g.isCrimson = k.isGpuCrimsonDriver(index);
    g.shaderCores = k.getGpuShaderCores(index);
    g.textureUnits = k.getGpuTextureUnits(index);
    g.ropUnits = k.getGpuRopUnits(index);
    g.tdpWatts = k.getGpuTdp(index);
    // An Intel GPU first in the list is the primary device, whose BIOS and video memory the summary holds.
    const bool primaryIntel = index == 0 && g.hasPciIds && g.vendorId == kVendorIntel;
    g.biosVersion = presentText(primaryIntel ? k.getPrimaryBiosVersion() : k.getGpuBiosVersion(index));
    g.memorySizeMb = primaryIntel ? k.getPrimaryVideoMemoryMb() : k.getGpuMemorySizeMb(index);
    g.memoryType = presentText(k.getGpuMemoryType(index));
    uint32_t busWidth = 0;
    const char* location = nullptr;
    // The read answers for every record; a width of 0 is one nobody knows.
    if (k.getGpuMemoryBusWidth(index, &busWidth, &location)) {
        if (busWidth != 0) g.memoryBusWidthBits = busWidth;
        if (location && *location) g.memoryLocation = location;
    }
    fillNvidiaClocks(g.nvidia, k, index);
    const uint32_t levels = k.getGpuPerfLevelCount(index);
    for (uint32_t level = 0; level < levels; ++level) {
        ReportPerfLevel p;
        if (k.readGpuPerfLevel(index, level, &p.id, &p.gpuClockMhz, &p.memClockMhz, &p.shaderClockMhz, &p.vddcVolts))
            g.perfLevels.push_back(p);
    }
    fillLiveReadings(g, k, index);
}

}  // namespace

void fillReportSnapshot(ReportSnapshot& s, Kalidornm::Kalidor& k) {
    s.programName = lumenscope::kDisplayName;
    s.versionMajor = lumenscope::kVersionMajor;
    s.versionMinor = lumenscope::kVersionMinor;
    s.versionPatch = lumenscope::kVersionPatch;
    s.versionBuild = lumenscope::kVersionBuild;
    s.homePage = kHomePage;

    fillSystem(s, k);
    s.hasDisplayDevice = k.hasDisplayDevice();
    const char* primaryString = k.getGpuDisplayDeviceString(0);
    s.primaryDisplayDeviceString = primaryString ? primaryString : "";
    s.displayMode.width = int32_t(k.getDisplayWidth());
    s.displayMode.height = int32_t(k.getDisplayHeight());
    s.displayMode.refreshHz = int32_t(k.getDisplayFrequency());
    s.displayMode.bitsPerPixel = int32_t(k.getDisplayBitsPerPixel());
    s.primaryIsNvidia = k.isPrimaryNvidia();
    s.driver.primaryDriverVersion = presentText(k.getPrimaryDriverVersion());
    s.driver.primaryDriverText = presentText(k.getPrimaryDriverText());
    s.driver.nvDriverVersionNumber = k.getDriverVersionNumber();
    s.driver.nvDriverBranch = presentText(k.getDriverBranch());

    const uint32_t count = k.getGpuCount();
    s.gpus.resize(count);
    for (uint32_t i = 0; i < count; ++i) fillGpu(s.gpus[i], k, int(i));

    fillOpenGl(s.gl, k);
    fillComputeSnapshot(s);
    // The Linux NVIDIA driver has no legacy control panel to read: the block stays absent and the Misc.
    // section leaves it out.
}

}  // namespace report
