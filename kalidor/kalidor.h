#pragma once

#include <cstdint>
#include <vector>

#include "kalidor/gpu_record.h"
#include "kalidor/hardware_caps.h"
#include "kalidor/machine_snapshot.h"
#include "kalidor/platform/sources.h"

namespace Kalidornm {

// The hardware information library as the application sees it. A `gpu` argument is a position in the GPU
// list; past the end a call gives false, 0 or null unless it says otherwise. The calls that hand out static
// facts answer from the machine snapshot; the read... calls ask the driver now. Strings stay valid until
// shutdown. Out parameters may be null.
class Kalidor {
public:
    // Creates the singleton on the first call; null if it cannot be made.
    static Kalidor* getInstance();
    static void destroyInstance();

    // Where the machine is read from; takes effect at the next startup.
    static void setSources(const KalidorSources& sources);
    // The display adapters of the real machine, from a PCI scan of their own; no start-up needed.
    static std::vector<DisplaySlot> listDisplayDevices();

    // Lifecycle
    bool startup(int x, int y, int width, int height, int glMajor, int glMinor, bool debugContext);
    bool startup(int glMajor, int glMinor);
    // The start for live readings alone (the monitor, the metrics): the PCI scan, the vendor backends and
    // the machine snapshot, with no OpenGL probe, no CPU clock measurement and no question to a display
    // server. The snapshot's OpenGL facts, CPU speed and display mode stay empty.
    bool startupLiveOnly();
    bool isLiveOnly() const;
    bool shutdown();

    // The machine as plain values: read on the first call after start-up, the same object afterwards.
    // Its live samples are those of the last refreshLiveSample(), absent before the first.
    const MachineSnapshot& snapshot();
    // Reads the live sample of every GPU now, in one pass; a GPU that sleeps is marked and not asked.
    void refreshLiveSample();

    // System
    uint32_t getCpuSpeedMhz();
    bool isVista() const;
    uint32_t getPhysxVersion() const;
    const char* getCpuName() const;
    int32_t getCpuLogicalCores() const;
    const char* getOsDescription() const;
    uint32_t getInstalledMemoryMb() const;
    uint32_t getTotalMemoryKb() const;
    uint32_t getPhysicalMemoryBytes() const;
    // Read now, each call.
    uint32_t getMemoryLoadPercent() const;

    // Primary GPU summary
    bool hasDisplayDevice() const;
    const char* getPrimaryGpuName() const;
    // The database name of the primary GPU, "Unknown" without a row.
    const char* getPrimaryGpuDbName() const;
    // The company behind the primary PCI vendor id, "Unknown" when it is not listed or there is no display device.
    const char* getPrimaryVendorName() const;
    const char* getPrimaryCodename() const;
    const char* getPrimaryDriverText() const;
    uint32_t getPrimarySubdeviceId() const;
    const char* getPrimaryRevisionText() const;
    // For an NVIDIA primary, GPU 0's core count as its reader knows it, if non-zero; else the summary's.
    int32_t getPrimaryShaderCores() const;
    int32_t getPrimaryTdp() const;
    int32_t getPrimaryVendorKind() const;

    // Primary-device driver values
    const char* getPrimaryDriverVersion() const;
    const char* getPrimaryDriverDescription() const;
    const char* getPrimaryDriverDate() const;
    const char* getPrimaryDeviceDescription() const;
    const char* getPrimaryOpenGLDriverName() const;

    // Per-GPU identity and cached values
    uint32_t getGpuCount() const;
    // Each scanned GPU's PCI identity (ids, address), read from the scan itself rather than the snapshot:
    // the first snapshot waits out the CPU clock's measuring window, and start-up does work in that window.
    std::vector<GpuSnapshot> scannedGpuIdentities() const;
    bool getGpuPciIds(int gpu, uint32_t* vendor, uint32_t* device, uint32_t* subvendor, uint32_t* subdevice) const;
    const char* getGpuName(int gpu) const;
    const char* getGpuCodename(int gpu) const;
    int32_t getGpuBusId(int gpu) const;
    const char* getGpuDisplayDeviceId(int gpu) const;
    const char* getGpuDisplayDeviceString(int gpu) const;
    // A figure of 0 asks the database again with the record's ids; a value above 0 is kept in the record.
    int32_t getGpuShaderCores(int gpu) const;
    int32_t getGpuTdp(int gpu) const;
    // -1 without a record.
    int32_t getGpuTextureUnits(int gpu) const;
    int32_t getGpuRopUnits(int gpu) const;
    uint32_t getGpuMemorySizeMb(int gpu) const;
    const char* getGpuMemoryType(int gpu) const;
    // text: "GPU dedicated", "Sys shared", "Sys dedicated" or "".
    bool getGpuMemoryBusWidth(int gpu, uint32_t* bits, const char** text) const;
    const char* getGpuBiosVersion(int gpu) const;
    const char* getGpuDriverVersion(int gpu) const;
    const char* getGpuDriverDate(int gpu) const;
    const char* getGpuCatalystVersion(int gpu) const;
    bool isGpuCrimsonDriver(int gpu) const;
    bool hasGpuTemperature(int gpu) const;
    // Read now, each call: the kernel's runtime power state is "suspended". A sleeping GPU must not be asked
    // anything else, or it wakes up. False for a GPU without a PCI device.
    bool isGpuSuspended(int gpu) const;
    uint32_t getGpuPerfLevelCount(int gpu) const;
    // The lowest clocks of a level, MHz, from the table read at start-up; false where the driver gave no range
    // (the level's clocks are then all it has).
    bool getGpuPerfLevelMinClocks(int gpu, uint32_t level, float* gpuMhz, float* memMhz) const;
    bool sortGpusByBusId();

    // Per-GPU live reads: each goes to the record's vendor reader; other records read false. A failed read
    // leaves every output as given; so does a value the driver never reported (a board sensor NVIDIA's
    // library lacks, AMD's frame-buffer load): unknown is not 0.
    bool readGpuTemperatures(int gpu, float* coreC, float* boardC, float* memoryC, float* vrmC);
    float readGpuCoreTemperature(int gpu);
    bool readGpuFanSpeed(int gpu, float* percent, float* rpm);
    bool readGpuLoad(int gpu, float* gpuPercent, float* frameBufferPercent);
    bool readGpuCurrentClocks(int gpu, uint32_t* pstate, float* gpuMhz, float* memMhz, float* shaderMhz,
                              float* volts);
    bool readGpuPerfLevel(int gpu, uint32_t level, uint32_t* id, float* gpuMhz, float* memMhz, float* shaderMhz,
                          float* volts);
    // The values a backend reads beyond the calls above, into the GPU's live sample; nothing for a record
    // without a reader.
    void readGpuMoreLive(int gpu, LiveSample& sample);

    // NVIDIA only
    // Each reads GPU `gpu` through the NVIDIA driver; false, 0 or null for any other record and past the end.
    // Clocks in MHz, power in milliwatts and percent. Reads the driver has no call for fail and change nothing.
    // clockType: 0 current, 1 base, 2 boost; other values read the current clocks.
    bool readGpuClockFrequencies(int gpu, uint32_t clockType, float* gpuMhz, float* memMhz);
    bool readGpuClockOffsets(int gpu, float* coreMhz, float* memMhz, float* volts);
    bool readGpuPowerUsage(int gpu, float* percent, uint32_t* milliwatts);
    bool readGpuPowerPolicy(int gpu, float* minPercent, uint32_t* minMw, float* maxPercent, uint32_t* maxMw,
                            float* defaultPercent, uint32_t* defaultMw);
    bool readGpuPowerTarget(int gpu, float* percent, uint32_t* milliwatts);
    bool setGpuPowerTarget(int gpu, float percent);
    bool readGpuMemoryUsage(int gpu, uint32_t* totalKb, uint32_t* availableKb, float* usedPercent);
    bool readGpuPerfLimiters(int gpu);
    // Slots 0 to 3: whether the limit is in force and its name.
    bool getGpuPerfLimiter(int gpu, uint32_t slot, bool* active, const char** name) const;
    bool readGpuBoardInfo(int gpu, uint8_t (&bytes)[16]);
    // The number of processes using the GPU; entries then read by getActiveAppPid/getActiveAppName, i < 128.
    uint32_t queryActive3DApps(int gpu);
    uint32_t getActiveAppPid(int gpu, uint32_t i) const;
    const char* getActiveAppName(int gpu, uint32_t i) const;
    const char* getDriverBranch() const;
    uint32_t getDriverVersionNumber() const;

    // AMD only
    // Power limit as percent of the board's default (the default reads 100); false without a power limit.
    bool readGpuPowerControl(int gpu, int32_t* current, int32_t* defaultPercent, int32_t* min, int32_t* max);
    uint32_t getAmdAgsGpuCount() const;
    uint32_t getAmdCrossfireGpuCount() const;
    uint32_t getAmdAdapterCount() const;
    uint32_t getAmdUsableAdapterCount() const;

    // OpenGL
    bool hasCapability(int index) const;
    bool isExtensionSupported(const char* name) const;
    bool isGlVersionAtLeast(int major, int minor) const;
    const char* getGlRenderer() const;
    const char* getGlVersion() const;
    const char* getGlslVersion() const;
    uint32_t getExtensionCount() const;
    const char* getExtensionName(int index) const;
    uint32_t getGlExtensionCount() const;
    uint32_t getWglExtensionCount() const;  // names the EGL display adds
    // The capability catalogue; a null group selects the separator's empty group.
    int32_t capCount() const;
    int32_t capCountInGroup(const char* group, int32_t* firstIndex) const;
    bool findCapByName(const char* name, int32_t* index) const;
    // One entry of the catalogue; absent past the end.
    std::optional<GlCapFacts> getCap(int index) const;
    // GPU memory through OpenGL, in KB, read now.
    bool readGlNvxMemory(int32_t* totalKb, int32_t* freeKb);
    int32_t readGlAtiTotalMemoryKb();
    int32_t readGlAtiUsedMemoryKb();
    int32_t getGlMajorVersion() const;
    int32_t getGlMinorVersion() const;
    int32_t getMaxVertexTextureUnits() const;
    int32_t getMaxVertexUniformComponents() const;
    int32_t getMaxDrawBuffers() const;

    // The main render window's machine state (null before getInstance succeeded).
    HardwareCaps* caps() const;

private:
    Kalidor();
    ~Kalidor();
    bool scanGraphicsHardware();
    GpuRecord* record(int gpu) const;
    GpuLiveReader* readerOf(GpuRecord& record) const;
    // The NVIDIA record at `gpu` whose address the driver knows, or null.
    GpuRecord* nvidiaRecord(int gpu) const;
    // The same, and only while the GPU may be asked: it does not sleep.
    GpuRecord* nvidiaRecordToRead(int gpu) const;
};

}  // namespace Kalidornm
