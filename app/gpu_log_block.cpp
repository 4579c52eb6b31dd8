#include "app/gpu_log_block.h"

#include "app/app_log.h"
#include "kalidor/kalidor.h"

namespace {

constexpr uint32_t kNvidiaVendorId = 0x10DE;

// Base clock and memory clock from the default clocks, boost clock from the maximum ones; the power target
// and its limits as percent of the board's default power.
void logNvidiaClocksAndPower(Kalidornm::Kalidor& library, int gpu) {
    AppLog& log = appLog();
    float baseMhz = 0, baseMemMhz = 0, boostMhz = 0;
    library.readGpuClockFrequencies(gpu, 1, &baseMhz, &baseMemMhz);
    library.readGpuClockFrequencies(gpu, 2, &boostMhz, nullptr);
    if (baseMhz > 0.0f && boostMhz > 0.0f)
        log.write("----> GPU base clock: %d MHz, boost clock: %d MHz, memory: %d Mhz", int(baseMhz), int(boostMhz),
                  int(baseMemMhz));

    float targetPercent = 0, minPercent = 0, maxPercent = 0;
    library.readGpuPowerTarget(gpu, &targetPercent, nullptr);
    if (targetPercent > 0.0f) {
        library.readGpuPowerPolicy(gpu, &minPercent, nullptr, &maxPercent, nullptr, nullptr, nullptr);
        log.write("----> GPU power target: %d %% TDP, min: %d %% TDP, max: %d %% TDP", int(targetPercent),
                  int(minPercent), int(maxPercent));
    }
}

void logOneGpu(Kalidornm::Kalidor& library, int gpu) {
    AppLog& log = appLog();
    const char* name = library.getGpuName(gpu);
    log.write("- GPU %d: %s", gpu + 1, name ? name : "");

    uint32_t vendor = 0, device = 0, subvendor = 0, subdevice = 0;
    library.getGpuPciIds(gpu, &vendor, &device, &subvendor, &subdevice);
    log.write("----> Device ID: %4X-%4X - Subdevice ID: %4X-%4X", vendor, device, subvendor, subdevice);
    log.write("----> Config: cores:%d, TMUs:%d, ROPs:%d - TDP:%dW", library.getGpuShaderCores(gpu),
              library.getGpuTextureUnits(gpu), library.getGpuRopUnits(gpu), library.getGpuTdp(gpu));

    const float temperature = library.readGpuCoreTemperature(gpu);
    if (temperature > 0.0f) log.write("----> GPU temperature: %.3f\u00B0C", double(temperature));

    const char* driver = library.getGpuDriverVersion(gpu);
    if (driver && *driver) log.write("----> Graphics driver: %s", driver);

    if (vendor == kNvidiaVendorId) logNvidiaClocksAndPower(library, gpu);

    for (uint32_t level = 0; level < library.getGpuPerfLevelCount(gpu); ++level) {
        uint32_t id = 0;
        float gpuMhz = 0, memMhz = 0, shaderMhz = 0, volts = 0;
        if (!library.readGpuPerfLevel(gpu, level, &id, &gpuMhz, &memMhz, &shaderMhz, &volts)) continue;
        log.write("----> PState %d, GPU clock %d MHz, memory clock: %d MHz, VDDC: %.3fV:", int(id), int(gpuMhz),
                  int(memMhz), double(volts));
    }

    float fanPercent = 0, fanRpm = 0;
    if (library.readGpuFanSpeed(gpu, &fanPercent, &fanRpm))
        log.write("----> Fan speed: %d%% / %d RPM", int(fanPercent), int(fanRpm));
}

}  // namespace

void logDetectedGpus(Kalidornm::Kalidor& library, unsigned gpuCount) {
    if (gpuCount == 0) return;
    appLog().write("Detected graphics cards and GPUs:");
    for (unsigned gpu = 0; gpu < gpuCount; ++gpu) logOneGpu(library, int(gpu));
}
