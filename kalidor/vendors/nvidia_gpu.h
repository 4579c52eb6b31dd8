#pragma once

#include <cstdint>
#include <string>

#include "kalidor/gpu_record.h"
#include "kalidor/machine_snapshot.h"

namespace Kalidornm {

class NvmlLibrary;

// The live reads of one NVIDIA GPU: each asks the management library once or twice with the record's handle,
// stores what it learnt in the record and reports success. A failed read, or one the library has no call
// for, gives false and leaves the record and the out parameters as they were. Out parameters may be null.
class NvidiaGpu {
public:
    NvidiaGpu(const NvmlLibrary& nvml, GpuRecord& record) : m_nvml(nvml), m_record(record) {}

    // GPU temperature, and the memory temperature where the field-value query has it; °C. Sensors never read
    // (board, VRM) leave their outputs untouched.
    bool readTemperatures(float* coreC, float* boardC, float* memoryC, float* vrmC);
    // Percent of fan 0, and its RPM where the library reports it; true if either was read.
    bool readFanSpeed(float* percent, float* rpm);
    // GPU and frame-buffer load in percent; the decoder load goes to the record's video load.
    bool readLoad(float* gpuPercent, float* frameBufferPercent);
    // The current P-state (-1 when unknown, and then false) and its clocks in MHz.
    bool readCurrentClocks(uint32_t* pstate, float* gpuMhz, float* memMhz);
    // Clock type 1 the base (default application) clocks, 2 the boost (maximum) clocks, any other the current
    // clocks; MHz.
    bool readClockFrequencies(uint32_t clockType, float* gpuMhz, float* memMhz);
    // P0 runs at the maximum clocks; MHz.
    bool readP0Clocks(float* gpuMhz, float* memMhz);
    // The overclocking offsets of the graphics and memory clocks, MHz, signed.
    bool readClockOffsets(float* coreMhz, float* memMhz);
    // Drawn power as percent of the board's default limit (its TDP), which the user's power target does not
    // move.
    bool readPowerUsage(float* percent, uint32_t* milliwatts);
    // The limit range and the default limit, each as percent of the default limit and in milliwatts.
    bool readPowerPolicy(float* minPercent, uint32_t* minMw, float* maxPercent, uint32_t* maxMw,
                         float* defaultPercent, uint32_t* defaultMw);
    // The power limit in force against the default limit.
    bool readPowerTarget(float* percent, uint32_t* milliwatts);
    // Sets the power limit to `percent` of the default limit; needs root.
    bool setPowerTarget(float percent);
    // Sets the application clocks; needs root. Both clocks must be given.
    bool setApplicationClocks(float coreMhz, float memMhz);
    bool readMemoryUsage(uint32_t* totalKb, uint32_t* availableKb, float* usedPercent);
    // The sample's values beyond the reads above: temperatures by sensor (taken from the sample's own GPU and
    // memory readings), drawn power and the enforced limit in watts, the energy counter in joules, memory in
    // use and in all, and the throttle reasons. What the driver does not answer stays unknown.
    void readMoreLive(LiveSample& sample);
    // Sets limiter slot 0 (power) and 1 (temperature) from the clocks event reasons; slots 0 to 3 are
    // cleared first.
    bool readPerfLimiters();
    // The board id in the first four bytes (little endian), zeros after.
    bool readBoardInfo(uint8_t (&bytes)[16]);
    // Fills the record's active applications with the processes that hold a graphics context on the GPU,
    // names from <rootDir>/proc/<pid>/comm; returns their number.
    uint32_t queryActiveApps(const std::string& rootDir);

private:
    void* handle() const { return m_record.nvPhysicalGpu; }

    const NvmlLibrary& m_nvml;
    GpuRecord& m_record;
};

}  // namespace Kalidornm
