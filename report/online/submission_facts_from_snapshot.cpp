#include "report/online/submission_facts_from_snapshot.h"

#include <algorithm>

#include "compute/opencl_discovery.h"
#include "kalidor/kalidor.h"

namespace online {

namespace {

std::string textOf(const std::optional<std::string>& text) { return text.value_or(""); }

SubmitGpu submitGpuFrom(const Kalidornm::GpuSnapshot& s) {
    SubmitGpu g;
    g.vendorId = s.vendorId, g.deviceId = s.deviceId, g.subvendorId = s.subvendorId, g.subdeviceId = s.subdeviceId;
    g.driverVersion = textOf(s.driverVersion);
    g.catalystVersion = textOf(s.catalystVersion);
    g.isCrimson = s.isCrimson;
    g.name = textOf(s.name);
    g.codename = textOf(s.codename);
    g.shaderCores = s.shaderCores, g.textureUnits = s.textureUnits, g.ropUnits = s.ropUnits, g.tdpWatts = s.tdpWatts;
    g.biosVersion = textOf(s.biosVersion);
    g.memorySizeMb = s.memorySizeMb;
    g.memoryType = textOf(s.memoryType);
    g.memoryBusWidthBits = s.memoryBusWidthBits.value_or(0);
    g.busId = s.busId;

    const Kalidornm::NvidiaClockFacts& nv = s.nvidia;
    if (nv.baseClockMhz) g.baseClocks = ClockPair{*nv.baseClockMhz, nv.memoryClockMhz.value_or(0.0f)};
    if (nv.boostClockMhz) g.boostClocks = ClockPair{*nv.boostClockMhz, nv.boostMemoryClockMhz.value_or(0.0f)};
    g.powerTargetPercent = nv.powerTargetPercent;
    if (nv.minPowerTargetPercent)
        g.powerPolicy = SubmitPowerPolicy{*nv.minPowerTargetPercent, nv.maxPowerTargetPercent.value_or(0.0f),
                                          nv.defaultPowerTargetPercent.value_or(0.0f)};
    if (nv.clockOffsets) g.clockOffsets = SubmitClockOffsets{nv.clockOffsets->coreMhz, nv.clockOffsets->memoryMhz,
                                                             nv.clockOffsets->volts};
    if (nv.p0Clocks) g.p0Clocks = SubmitClocks{nv.p0Clocks->gpuMhz, nv.p0Clocks->memoryMhz, nv.p0Clocks->volts};

    for (const Kalidornm::PerfLevelFacts& level : s.perfLevels)
        g.perfLevels.push_back(SubmitClocks{level.gpuClockMhz, level.memClockMhz, level.vddcVolts});

    // What a read answered goes out; what it left unknown goes out as 0.
    const Kalidornm::LiveSample& live = s.live;
    if (live.temperaturesRead)
        g.temperatures = SubmitTemperatures{live.coreTemperatureC.value_or(0.0f),
                                            live.memoryTemperatureC.value_or(0.0f), live.vrmTemperatureC.value_or(0.0f)};
    g.powerUsagePercent = live.powerUsagePercent;
    if (live.fanRead) g.fanPercent = live.fanPercent.value_or(0.0f), g.fanRpm = live.fanRpm.value_or(0.0f);
    if (live.loadRead)
        g.gpuLoadPercent = live.gpuLoadPercent.value_or(0.0f),
        g.memoryLoadPercent = live.frameBufferLoadPercent.value_or(0.0f);
    return g;
}

SubmitPrimary submitPrimaryFrom(const Kalidornm::MachineSnapshot& m) {
    const Kalidornm::PrimaryDeviceFacts& p = m.primary;
    SubmitPrimary s;
    s.vendorKind = p.vendorKind;
    s.nvDriverVersionNumber = m.driver.nvDriverVersionNumber;
    s.nvDriverBranch = textOf(m.driver.nvDriverBranch);
    s.driverVersion = textOf(p.driverVersion);
    s.driverDate = textOf(p.driverDate);
    s.driverText = textOf(p.driverText);
    s.vendorId = int32_t(p.vendorId), s.deviceId = int32_t(p.deviceId);
    s.subvendorId = int32_t(p.subvendorId), s.subdeviceId = int32_t(p.subdeviceId);
    s.gpuName = textOf(p.gpuName);
    s.codename = textOf(p.codename);
    s.shaderCores = p.shaderCores;
    s.videoMemoryMb = p.videoMemoryMb;
    s.biosVersion = textOf(p.biosVersion);
    s.textureUnits = p.textureUnits, s.ropUnits = p.ropUnits, s.tdpWatts = p.tdpWatts;
    return s;
}

}  // namespace

SubmissionFacts submissionFactsFrom(const Kalidornm::MachineSnapshot& m,
                                    const std::vector<compute::ClPlatformRecord>& clPlatforms) {
    SubmissionFacts f;
    f.cpuName = textOf(m.system.cpuName);
    f.cpuSpeedMhz = m.system.cpuSpeedMhz;
    f.totalMemoryKb = m.system.totalMemoryKb;
    f.osDescription = textOf(m.system.osDescription);
    for (const Kalidornm::GpuSnapshot& gpu : m.gpus) f.gpus.push_back(submitGpuFrom(gpu));
    f.primary = submitPrimaryFrom(m);
    f.glVendor = m.gl.vendor;
    f.glRenderer = m.gl.renderer;
    f.glVersion = m.gl.version;
    for (const Kalidornm::GlCapFacts& c : m.gl.catalogue) {
        SubmitGlCap cap;
        cap.name = c.name;
        cap.valueType = c.valueType;
        cap.intValue = c.intValue;
        std::copy(std::begin(c.tripleValue), std::end(c.tripleValue), cap.tripleValue);
        f.glCaps.push_back(std::move(cap));
    }
    for (const Kalidornm::GlExtensionFacts& extension : m.gl.extensions) f.glExtensions.push_back(extension.name);
    f.clPlatforms = clPlatforms;
    return f;
}

SubmissionFacts gatherSubmissionFacts(Kalidornm::Kalidor& library) {
    library.refreshLiveSample();
    return submissionFactsFrom(library.snapshot(), compute::clPlatforms());
}

}  // namespace online
