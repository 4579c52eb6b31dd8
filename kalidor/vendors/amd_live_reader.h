#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "kalidor/gpu_live_reader.h"
#include "kalidor/platform/pci_bus.h"

namespace Kalidornm {

// One hwmon input the driver labelled, under the name every output uses ("junction", "vddgfx").
struct AmdLabelledInput {
    std::string name;
    std::string path;
};

// The sysfs attributes one AMD GPU is read from, resolved once at start-up so a live read opens known files
// and never walks a directory.
struct AmdCardFiles {
    std::string hwmon;  // the hwmon directory, "" without one
    std::string temperature, pwm, fanRpm, voltage, powerCap;  // hwmon: m°C, 0..pwm1_max, RPM, mV, µW
    std::string powerAverage, powerInput;                       // hwmon: µW
    std::string pwmMaxFile, powerCapDefaultFile, powerCapMinFile, powerCapMaxFile;
    std::string busy, sclk, mclk;          // device: percent, DPM tables in MHz
    std::string vramUsed, vramTotal;       // device: bytes
    std::string gpuMetrics;                // device: the firmware's binary table
    // The attributes that never change while the card runs, read the first time the card may be touched
    // (reading them earlier could wake a sleeping card).
    bool constantsRead = false;
    std::optional<int64_t> pwmMax;
    std::optional<int64_t> powerCapDefault, powerCapMin, powerCapMax;  // µW
    std::vector<AmdLabelledInput> temperatures;  // m°C, by sensor name
    std::vector<AmdLabelledInput> voltages;      // mV, by rail
    std::string engineClockHz, memoryClockHz;    // hwmon freqN_input labelled sclk and mclk, "" without
    bool hasGpuMetrics = false;
};

// Resolves the files of a device; reads nothing.
AmdCardFiles resolveAmdCardFiles(const PciDevice& device);

// Live reads for AMD records. Only a record of vendor class 2 whose Overdrive version is 6 (it has an hwmon
// directory) and whose card the PCI layer lets be touched at the time of the read is read; every other
// answers false. A sleeping card's files are not opened: reading them would wake it.
class AmdLiveReader : public GpuLiveReader {
public:
    explicit AmdLiveReader(const PciBus& pci) : m_pci(pci) {}

    void addCard(const PciAddress& address, AmdCardFiles files) { m_cards[address] = std::move(files); }

    // The core temperature only (the first hwmon sensor); the board, memory and VRM outputs stay as given, the
    // labelled sensors go into the live sample through readMoreLive. A failed read is false and changes nothing.
    bool readTemperatures(GpuRecord& record, float* coreC, float* boardC, float* memoryC, float* vrmC) override;
    // The percent from the PWM output, the RPM where the fan has a tachometer; false when neither reads.
    bool readFanSpeed(GpuRecord& record, float* percent, float* rpm) override;
    bool readLoad(GpuRecord& record, float* gpuPercent, float* frameBufferPercent) override;
    bool readCurrentClocks(GpuRecord& record, uint32_t* pstate, float* gpuMhz, float* memMhz, float* shaderMhz,
                           float* volts) override;
    bool readPerfLevel(GpuRecord& record, uint32_t level, uint32_t* id, float* gpuMhz, float* memMhz,
                       float* shaderMhz, float* volts) override;

    // Fills the record's level table from the DPM tables, creating it on the first call. The engine levels
    // pair with the memory levels by position, the top memory level serving where there are fewer; only the
    // current level gets a voltage. `current` picks the trace's word only: the driver keeps one table.
    bool readPerfLevels(GpuRecord& record, bool current);

    // Labelled temperatures and voltages, clocks from hwmon where the DPM tables mark no level, watts, memory
    // in use, and what only the gpu_metrics table gives (VRM and APU temperatures, a fan without tachometer,
    // throttle reasons).
    void readMoreLive(GpuRecord& record, LiveSample& sample) override;

    // Power limit as percent of the board's default limit.
    bool readPowerControl(GpuRecord& record, int32_t* current, int32_t* defaultPercent, int32_t* min,
                          int32_t* max);

private:
    const AmdCardFiles* _liveFiles(const GpuRecord& record);
    const PciBus& m_pci;
    std::map<PciAddress, AmdCardFiles> m_cards;  // by the card's address, whatever the record's list position
};

}  // namespace Kalidornm
