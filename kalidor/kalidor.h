#pragma once

#include <cstdint>

#include "gpu_record.h"
#include "hardware_caps.h"
#include "platform/sources.h"

namespace Kalidornm {

// The hardware information library as the application sees it. A `gpu` argument is a position in the GPU
// list; past the end a call gives false, 0 or null unless it says otherwise. Strings stay valid until
// shutdown. Out parameters may be null.
class Kalidor {
public:
    static constexpr uint32_t kVersionMajor = 1, kVersionMinor = 14, kVersionPatch = 0;

    // Creates the singleton on the first call; null if it cannot be made.
    static Kalidor* getInstance();
    static void destroyInstance();

    // Where the machine is read from; takes effect at the next startup.
    static void setSources(const KalidorSources& sources);

    // Lifecycle
    bool startup(int x, int y, int width, int height, int glMajor, int glMinor, bool debugContext);
    bool startup(int glMajor, int glMinor);
    bool shutdown();
    uint32_t getVersionMajor() const { return kVersionMajor; }
    uint32_t getVersionMinor() const { return kVersionMinor; }
    uint32_t getVersionPatch() const { return kVersionPatch; }

    // System
    uint32_t getCpuSpeedMhz();
    bool isVista() const;
    uint32_t getPhysxVersion() const;
    bool isPhysxOnGpu() const;
    // (more system accessors: CPU, memory, OS)

    // Display mode

    // Primary GPU summary
    bool hasDisplayDevice() const;
    const char* getPrimaryGpuName() const;
    // The database name of the primary GPU, "Unknown" without a row.
    const char* getPrimaryGpuDbName() const;
    // The company behind the primary PCI vendor id, "Unknown" when it is not listed or there is no display device.
    const char* getPrimaryVendorName() const;
    // (more summary accessors)

    // Primary-device driver values

    // Per-GPU identity and cached values
    uint32_t getGpuCount() const;
    bool getGpuPciIds(int gpu, uint32_t* vendor, uint32_t* device, uint32_t* subvendor, uint32_t* subdevice) const;
    const char* getGpuName(int gpu) const;
    const char* getGpuCodename(int gpu) const;
    int32_t getGpuBusId(int gpu) const;
    const char* getGpuDisplayDeviceId(int gpu) const;
    const char* getGpuDisplayDeviceString(int gpu) const;
    const char* getGpuDriverVersion(int gpu) const;
    bool hasGpuTemperature(int gpu) const;
    uint32_t getGpuPerfLevelCount(int gpu) const;
    uint32_t countGpusWithTemperature() const;
    bool sortGpusByBusId();

    // Per-GPU live reads: each goes to the record's vendor reader; other records read false.
    bool readGpuTemperatures(int gpu, float* coreC, float* boardC, float* memoryC, float* vrmC);
    float readGpuCoreTemperature(int gpu);
    bool readGpuFanSpeed(int gpu, float* percent, float* rpm);
    bool readGpuLoad(int gpu, float* gpuPercent, float* frameBufferPercent);
    bool readGpuCurrentClocks(int gpu, uint32_t* pstate, float* gpuMhz, float* memMhz, float* shaderMhz,
                              float* volts);
    bool readGpuPerfLevel(int gpu, uint32_t level, uint32_t* id, float* gpuMhz, float* memMhz, float* shaderMhz,
                          float* volts);
    // Tracked extremes of the last readings; no driver call.
    bool readGpuMaxTemperatures(int gpu, float* coreC, float* boardC, float* memoryC, float* vrmC);
    bool readGpuMinTemperatures(int gpu, float* coreC, float* boardC, float* memoryC, float* vrmC);

    // NVIDIA only

    // AMD only
    // Power limit as percent of the board's default (the default reads 100); false without a power limit.
    bool readGpuPowerControl(int gpu, int32_t* current, int32_t* defaultPercent, int32_t* min, int32_t* max);
    uint32_t getAmdAgsGpuCount() const;
    uint32_t getAmdCrossfireGpuCount() const;
    uint32_t getAmdAdapterCount() const;
    uint32_t getAmdUsableAdapterCount() const;

    // OpenGL

    // The main render window's machine state (null before getInstance succeeded).
    HardwareCaps* caps() const;

private:
    Kalidor();
    ~Kalidor();
    bool scanGraphicsHardware();
    GpuRecord* record(int gpu) const;
    GpuLiveReader* readerOf(GpuRecord& record) const;
};

}  // namespace Kalidornm
