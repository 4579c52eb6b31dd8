#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "kalidor/platform/pci_address.h"

namespace Kalidornm {

// Which reader serves a record.
enum GpuVendorClass : uint32_t {
    kVendorClassNone = 0,
    kVendorClassNvidia = 1,
    kVendorClassAmd = 2,
    kVendorClassIntel = 3,
};

// One temperature sensor. Until a reading arrives `current` means nothing: a sensor never read is unknown,
// not 0 °C.
struct TempSensor {
    float current = 0.0f;  // °C, valid once `read`
    bool read = false;

    void take(float celsius) {
        current = celsius;
        read = true;
    }
};

// One performance level of a GPU.
struct PerfLevel {
    uint32_t id = 0;  // NVIDIA P-state number
    float gpuClockMhz = 0.0f;
    float memClockMhz = 0.0f;
    float shaderClockMhz = 0.0f;
    float vddcVolts = 0.0f;
    // The lowest clocks of the level, where the driver gives a range (NVIDIA P-states); the clocks above are
    // then its highest.
    std::optional<float> minGpuClockMhz, minMemClockMhz;
};

// A process using the GPU, in the driver's layout.
struct ActiveApp {
    uint32_t structVersion = 0;
    uint32_t processId = 0;
    char processName[256] = {};
};

inline constexpr size_t kActiveAppSlots = 128;
inline constexpr size_t kPerfLimiterSlots = 16;
inline constexpr uint32_t kNoDisplaySlot = 1000;

// One detected GPU. Created by the reader that finds it and owned by the library's GPU list. Text fields hold
// one character less than their size; copies are cut there.
struct GpuRecord {
    GpuRecord();

    GpuVendorClass vendorClass = kVendorClassNone;
    // Where the GPU sits; what every backend finds its own state by. None for a device off the PCI bus.
    std::optional<PciAddress> pciAddress;
    int32_t busId = -1;
    bool hasTemperature = false;
    uint32_t overdriveVersion = 0;
    int32_t adlAdapterIndex = -1;
    int32_t powerControlMin = 0;  // percent
    int32_t powerControlMax = 0;
    int32_t powerControlCurrent = 0;
    int32_t powerControlDefault = 0;
    void* nvPhysicalGpu = nullptr;
    void* nvDisplay = nullptr;
    uint8_t nvBoardInfo[16] = {};
    ActiveApp activeApps[kActiveAppSlots] = {};
    char name[128] = {};
    char codename[128] = {};
    TempSensor sensorGpu, sensorVrm, sensorBoard, sensorMemory;
    int32_t tmus = 0;
    int32_t rops = 0;
    int32_t tdpWatts = 0;
    char memoryType[128] = {};
    uint32_t memoryBusWidth = 0;  // bits
    uint32_t memoryLocation = 0;  // 1 GPU dedicated, 2 system shared, 3 system dedicated
    uint32_t physicalFrameBufferKb = 0;
    std::unique_ptr<PerfLevel[]> perfLevels;
    uint32_t perfLevelCount = 0;
    // Last live readings; -1 means never read.
    float fanPercent = -1.0f;
    float fanRpm = -1.0f;
    float gpuLoadPercent = -1.0f;
    float memoryUsedPercent = -1.0f;
    float frameBufferLoadPercent = -1.0f;
    float videoLoadPercent = -1.0f;
    uint32_t memoryTotalKb = 0;
    uint32_t memoryAvailableKb = 0;
    uint32_t vendorId = 0, deviceId = 0, subvendorId = 0, subdeviceId = 0;
    uint32_t nvDeviceId32 = 0;     // low half vendor, high half device
    uint32_t nvSubsystemId32 = 0;  // low half subvendor, high half subdevice
    uint32_t nvRevision = 0;
    uint32_t nvExtDeviceId = 0;
    uint32_t perfLimiterActive[kPerfLimiterSlots] = {};
    std::unique_ptr<char[]> perfLimiterName[kPerfLimiterSlots];  // 128 bytes each
    int32_t shaderCores = 0;
    int32_t vertexPipes = 0;
    int32_t pixelPipes = 0;
    uint32_t memorySizeMb = 0;
    char driverVersion[512] = {};
    char driverDate[256] = {};
    char releaseVersion[256] = {};
    char catalystVersion[256] = {};
    char adapterString[256] = {};
    char biosVersion[256] = {};
    uint32_t isCrimson = 0;
    char driverAdapterString[128] = {};
    char driverBranch[128] = {};
    uint32_t nvDriverVersion = 0;  // driver version x 100
    char openGLDriverName[256] = {};
    uint32_t displaySlot = kNoDisplaySlot;
    char displayDeviceId[128] = {};
    char displayDeviceName[128] = {};
    char displayDeviceString[128] = {};
    char displayDeviceKey[128] = {};

    // Creates the level array the first time the number of levels is known.
    void allocatePerfLevels(uint32_t count);
};

// Copies `source` into a fixed text field, cut at the field's size less one.
template <size_t N>
void copyText(char (&field)[N], const char* source) {
    size_t i = 0;
    if (source)
        for (; i + 1 < N && source[i]; ++i) field[i] = source[i];
    field[i] = '\0';
}

// Copies a text a driver wrote into a buffer of M bytes: the text ends at the buffer's end even where the
// driver left no terminator, and is cut at the field's size less one.
template <size_t N, size_t M>
void copyDriverText(char (&field)[N], const char (&buffer)[M]) {
    size_t i = 0;
    for (; i < M && i + 1 < N && buffer[i]; ++i) field[i] = buffer[i];
    field[i] = '\0';
}

// The GPU list: NVIDIA records first, then AMD, then every other adapter. A GPU index is a position here;
// nothing below the facade finds a GPU by it, so sorting changes no reading.
class GpuList {
public:
    size_t size() const { return m_records.size(); }
    bool empty() const { return m_records.empty(); }
    // Null past the end (and for negative indices).
    GpuRecord* at(long index) const;
    GpuRecord& append(std::unique_ptr<GpuRecord> record);
    void clear() { m_records.clear(); }
    // Reorders the list by ascending bus id; false for an empty list. Records sharing a bus id keep their
    // relative order.
    bool sortByBusId();

private:
    std::vector<std::unique_ptr<GpuRecord>> m_records;
};

}  // namespace Kalidornm
