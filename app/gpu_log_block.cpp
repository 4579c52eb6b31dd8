#include "gpu_log_block.h"

#include "app_log.h"
#include "kalidor/kalidor.h"

namespace {

constexpr uint32_t kNvidiaVendorId = 0x10DE;

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
    if (temperature > 0.0f) log.write("----> GPU temperature: %.3f\xB0" "C", double(temperature));

    const char* driver = library.getGpuDriverVersion(gpu);
    if (driver && *driver) log.write("----> Graphics driver: %s", driver);

    if (vendor == kNvidiaVendorId) {
        // NVIDIA-ONLY LINES: the base and boost clocks ("----> GPU base clock: %d MHz, boost clock: %d MHz,
        // memory: %d Mhz") and the power target ("----> GPU power target: %d %% TDP, min: %d %% TDP, max: %d %%
        // TDP") go here once the facade offers the NVIDIA reader's clock and power reads.
    }

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
