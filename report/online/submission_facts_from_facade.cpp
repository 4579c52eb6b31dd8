#include "submission_facts_from_facade.h"

#include "compute/opencl_discovery.h"
#include "kalidor/kalidor.h"

namespace online {

namespace {

std::string textOf(const char* text) { return text ? text : ""; }

void gatherNvidiaValues(SubmitGpu& g, Kalidornm::Kalidor& k, int gpu) {
    ClockPair clocks;
    if (k.readGpuClockFrequencies(gpu, 1, &clocks.gpuMhz, &clocks.memoryMhz)) g.baseClocks = clocks;
    clocks = {};
    if (k.readGpuClockFrequencies(gpu, 2, &clocks.gpuMhz, &clocks.memoryMhz)) g.boostClocks = clocks;
    float percent = 0.0f;
    if (k.readGpuPowerTarget(gpu, &percent, nullptr)) g.powerTargetPercent = percent;
    SubmitPowerPolicy policy;
    if (k.readGpuPowerPolicy(gpu, &policy.minPercent, nullptr, &policy.maxPercent, nullptr, &policy.defaultPercent,
                             nullptr))
        g.powerPolicy = policy;
    SubmitClockOffsets offsets;
    if (k.readGpuClockOffsets(gpu, &offsets.coreMhz, &offsets.memoryMhz, &offsets.volts)) g.clockOffsets = offsets;
    SubmitClocks p0;
    if (k.readGpuP0Clocks(gpu, &p0.gpuMhz, &p0.memoryMhz, nullptr, &p0.volts)) g.p0Clocks = p0;
    if (k.readGpuPowerUsage(gpu, &percent, nullptr)) g.powerUsagePercent = percent;
}

void gatherLiveValues(SubmitGpu& g, Kalidornm::Kalidor& k, int gpu) {
    const uint32_t levels = k.getGpuPerfLevelCount(gpu);
    for (uint32_t level = 0; level < levels; ++level) {
        uint32_t id = 0;
        SubmitClocks clocks;
        if (k.readGpuPerfLevel(gpu, level, &id, &clocks.gpuMhz, &clocks.memoryMhz, nullptr, &clocks.volts))
            g.perfLevels.push_back(clocks);
    }
    float core = 0.0f, board = 0.0f, memory = 0.0f, vrm = 0.0f;
    if (k.readGpuTemperatures(gpu, &core, &board, &memory, &vrm)) g.temperatures = SubmitTemperatures{core, memory, vrm};
    float percent = 0.0f, rpm = 0.0f;
    if (k.readGpuFanSpeed(gpu, &percent, &rpm)) g.fanPercent = percent, g.fanRpm = rpm;
    float load = 0.0f, memoryLoad = 0.0f;
    if (k.readGpuLoad(gpu, &load, &memoryLoad)) g.gpuLoadPercent = load, g.memoryLoadPercent = memoryLoad;
}

SubmitGpu gatherGpu(Kalidornm::Kalidor& k, int gpu) {
    SubmitGpu g;
    k.getGpuPciIds(gpu, &g.vendorId, &g.deviceId, &g.subvendorId, &g.subdeviceId);
    g.driverVersion = textOf(k.getGpuDriverVersion(gpu));
    g.catalystVersion = textOf(k.getGpuCatalystVersion(gpu));
    g.isCrimson = k.isGpuCrimsonDriver(gpu);
    g.name = textOf(k.getGpuName(gpu));
    g.codename = textOf(k.getGpuCodename(gpu));
    g.shaderCores = k.getGpuShaderCores(gpu);
    g.textureUnits = k.getGpuTextureUnits(gpu);
    g.ropUnits = k.getGpuRopUnits(gpu);
    g.tdpWatts = k.getGpuTdp(gpu);
    g.biosVersion = textOf(k.getGpuBiosVersion(gpu));
    g.memorySizeMb = k.getGpuMemorySizeMb(gpu);
    g.memoryType = textOf(k.getGpuMemoryType(gpu));
    k.getGpuMemoryBusWidth(gpu, &g.memoryBusWidthBits, nullptr);
    g.busId = k.getGpuBusId(gpu);
    gatherNvidiaValues(g, k, gpu);
    gatherLiveValues(g, k, gpu);
    return g;
}

SubmitPrimary gatherPrimary(Kalidornm::Kalidor& k) {
    SubmitPrimary p;
    p.vendorKind = k.getPrimaryVendorKind();
    p.nvDriverVersionNumber = k.getDriverVersionNumber();
    p.nvDriverBranch = textOf(k.getDriverBranch());
    p.driverVersion = textOf(k.getPrimaryDriverVersion());
    p.driverDate = textOf(k.getPrimaryDriverDate());
    p.driverText = textOf(k.getPrimaryDriverText());
    p.vendorId = int32_t(k.getPrimaryVendorId());
    p.deviceId = int32_t(k.getPrimaryDeviceId());
    p.subvendorId = int32_t(k.getPrimarySubvendorId());
    p.subdeviceId = int32_t(k.getPrimarySubdeviceId());
    p.gpuName = textOf(k.getPrimaryGpuName());
    p.codename = textOf(k.getPrimaryCodename());
    p.shaderCores = k.getPrimaryShaderCores();
    p.videoMemoryMb = k.getPrimaryVideoMemoryMb();
    p.biosVersion = textOf(k.getPrimaryBiosVersion());
    p.textureUnits = k.getPrimaryTmus();
    p.ropUnits = k.getPrimaryRops();
    p.tdpWatts = k.getPrimaryTdp();
    return p;
}

void gatherOpenGl(SubmissionFacts& f, Kalidornm::Kalidor& k) {
    f.glVendor = textOf(k.getGlVendor());
    f.glRenderer = textOf(k.getGlRenderer());
    f.glVersion = textOf(k.getGlVersion());
    for (int i = 0; i < k.capCount(); ++i) {
        SubmitGlCap cap;
        char name[128] = {};
        if (!k.getCap(i, name, &cap.valueType, &cap.intValue, cap.tripleValue, nullptr, nullptr, nullptr)) continue;
        cap.name = name;
        f.glCaps.push_back(std::move(cap));
    }
    const uint32_t count = k.getExtensionCount();
    for (uint32_t i = 0; i < count; ++i) {
        const char* name = k.getExtensionName(int(i));
        if (!name) break;
        f.glExtensions.emplace_back(name);
    }
}

}  // namespace

SubmissionFacts gatherSubmissionFacts(Kalidornm::Kalidor& k) {
    SubmissionFacts f;
    f.cpuName = textOf(k.getCpuName());
    f.cpuSpeedMhz = int32_t(k.getCpuSpeedMhz());
    f.totalMemoryKb = k.getTotalMemoryKb();
    f.osDescription = textOf(k.getOsDescription());
    const uint32_t count = k.getGpuCount();
    for (uint32_t gpu = 0; gpu < count; ++gpu) f.gpus.push_back(gatherGpu(k, int(gpu)));
    f.primary = gatherPrimary(k);
    gatherOpenGl(f, k);
    f.clPlatforms = compute::clPlatforms();
    return f;
}

}  // namespace online
