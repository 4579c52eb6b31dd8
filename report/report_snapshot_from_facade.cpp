#include "report_snapshot_from_facade.h"

#include "app/version.h"
#include "kalidor/kalidor.h"
#include "kalidor/opengl/extension_spec_table.h"

namespace report {

namespace {

constexpr const char* kHomePage = "https://lumenscope.example.org/";

std::optional<std::string> optionalText(const char* text) {
    return text ? std::optional<std::string>(text) : std::nullopt;
}

std::optional<float> reading(bool ok, float value) { return ok ? std::optional<float>(value) : std::nullopt; }

void fillSystem(ReportSnapshot& s, Kalidornm::Kalidor& k) {
    ReportSystem& sys = s.system;
    sys.cpuSpeedMhz = int32_t(k.getCpuSpeedMhz());
    sys.physxVersion = int32_t(k.getPhysxVersion());
    sys.osIsVista = k.isVista();
    // Waiting for the CPU and OS accessors (getCpuName, getCpuLogicalCores, getCpuFamily/Model/Stepping,
    // getInstalledMemoryMb, getTotalMemoryKb, getOsDescription): until they land these stay absent.
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
    float core = 0, board = 0, memory = 0, vrm = 0;
    if (k.readGpuTemperatures(index, &core, &board, &memory, &vrm)) {
        live.coreTemperatureC = core;
        live.boardTemperatureC = board;
        live.memoryTemperatureC = memory;
        live.vrmTemperatureC = vrm;
    }
    float percent = 0, rpm = 0;
    const bool fan = k.readGpuFanSpeed(index, &percent, &rpm);
    live.fanPercent = reading(fan, percent);
    live.fanRpm = reading(fan, rpm);
    float load = 0, frameBuffer = 0;
    const bool loads = k.readGpuLoad(index, &load, &frameBuffer);
    live.gpuLoadPercent = reading(loads, load);
    live.frameBufferLoadPercent = reading(loads, frameBuffer);
    uint32_t pstate = 0;
    float gpuMhz = 0, memMhz = 0, shaderMhz = 0, volts = 0;
    if (k.readGpuCurrentClocks(index, &pstate, &gpuMhz, &memMhz, &shaderMhz, &volts)) {
        live.currentPstate = pstate;
        live.currentGpuClockMhz = gpuMhz;
        live.currentMemClockMhz = memMhz;
        live.currentShaderClockMhz = shaderMhz;
        live.currentVolts = volts;
    }
}

void fillGpu(ReportGpu& g, Kalidornm::Kalidor& k, int index) {
    g.name = optionalText(k.getGpuName(index));
    g.codename = optionalText(k.getGpuCodename(index));
    g.hasPciIds = k.getGpuPciIds(index, &g.vendorId, &g.deviceId, &g.subvendorId, &g.subdeviceId);
    g.driverVersion = optionalText(k.getGpuDriverVersion(index));
    g.busId = k.getGpuBusId(index);
    // Waiting for the per-GPU figure and driver accessors (getGpuShaderCores, getGpuTextureUnits,
    // getGpuRopUnits, getGpuTdp, getGpuBiosVersion, getGpuMemorySizeMb, getGpuMemoryType,
    // getGpuMemoryBusWidth, getGpuCatalystVersion, isGpuCrimsonDriver; for Intel at index 0 the primary BIOS
    // and video memory): until they land these stay absent.
    // Waiting for the NVIDIA base/boost clocks and power policy reads: until they land the GPU shows its
    // performance levels.
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
    // Waiting for the display-mode accessors (getDisplayWidth/Height/Frequency/BitsPerPixel), the primary
    // vendor kind and the primary driver values (getPrimaryDriverVersion, getPrimaryDriverText,
    // getDriverVersionNumber, getDriverBranch): until they land these stay empty.

    const uint32_t count = k.getGpuCount();
    s.gpus.resize(count);
    for (uint32_t i = 0; i < count; ++i) fillGpu(s.gpus[i], k, int(i));

    fillOpenGl(s.gl, k);
    fillComputeSnapshot(s);
    // Waiting for the legacy NVIDIA control panel reads: until they land that block stays absent.
}

}  // namespace report
