#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "kalidor/gpu_live_reader.h"
#include "kalidor/platform/pci_bus.h"
#include "kalidor/vendors/counter_rate.h"
#include "kalidor/vendors/intel_card_files.h"

namespace Kalidornm {

// Live reads for the records of Intel GPUs on i915 and xe: hwmon for temperatures, fans, voltage, energy
// and power limits, the DRM card and its GTs for frequencies, idle residency and throttle reasons. Power and
// load are rates of the driver's counters, so each needs two reads. A sleeping GPU's files are not opened,
// and its files are first looked for at the first read that finds it awake.
class IntelLiveReader : public GpuLiveReader {
public:
    // `microseconds` is the monotonic clock the counters' rates are taken over; null for the system's.
    IntelLiveReader(const PciBus& pci, int64_t (*microseconds)());

    void addCard(const PciDevice& device) { m_cards[device.address].device = device; }

    // The package temperature as the core's, the VRAM's as the memory's.
    bool readTemperatures(GpuRecord& record, float* coreC, float* boardC, float* memoryC, float* vrmC) override;
    // RPM of the first fan; the driver gives no duty cycle.
    bool readFanSpeed(GpuRecord& record, float* percent, float* rpm) override;
    // The share of time the GT was not idle since the previous read; false at the first.
    bool readLoad(GpuRecord& record, float* gpuPercent, float* frameBufferPercent) override;
    // The actual GT clock and the first rail's voltage; the driver gives no memory clock.
    bool readCurrentClocks(GpuRecord& record, uint32_t* pstate, float* gpuMhz, float* memMhz, float* shaderMhz,
                           float* volts) override;
    void readMoreLive(GpuRecord& record, LiveSample& sample) override;

private:
    struct Card {
        PciDevice device;
        std::optional<IntelCardFiles> files;  // found at the first read of the awake card
        CounterRate energy, idle;
    };
    Card* _awakeCard(const GpuRecord& record);
    int64_t _now() const;

    const PciBus& m_pci;
    int64_t (*m_microseconds)();
    std::map<PciAddress, Card> m_cards;
};

}  // namespace Kalidornm
