#include <cctype>
#include <cstdio>
#include <cstdlib>

#include "kalidor/vendors/nvidia_gpu.h"
#include "kalidor/vendors/nvidia_reader.h"

namespace Kalidornm {

namespace {

// The major and minor numbers of "550.54.15"; false without a major number or with one of more than four
// digits (a garbage text, which must not overflow the version number).
bool parseDriverVersion(const char* text, uint32_t& major, uint32_t& minor) {
    if (!text) return false;
    major = 0;
    minor = 0;
    size_t digits = 0;
    for (; std::isdigit(static_cast<unsigned char>(text[digits])); ++digits) {
        if (digits == 4) return false;
        major = major * 10 + uint32_t(text[digits] - '0');
    }
    if (digits == 0) return false;
    const char* end = text + digits;
    if (*end == '.')
        for (int place = 0; place < 2 && std::isdigit(static_cast<unsigned char>(end[1 + place])); ++place)
            minor = minor * 10 + uint32_t(end[1 + place] - '0');
    return true;
}

class NvidiaLiveReader final : public GpuLiveReader {
public:
    NvidiaLiveReader(const NvidiaState& state, const PciBus& pci) : m_state(state), m_pci(pci) {}

    bool readTemperatures(GpuRecord& r, float* coreC, float* boardC, float* memoryC, float* vrmC) override {
        const NvmlLibrary* nvml = readable(r);
        return nvml && NvidiaGpu(*nvml, r).readTemperatures(coreC, boardC, memoryC, vrmC);
    }
    bool readFanSpeed(GpuRecord& r, float* percent, float* rpm) override {
        const NvmlLibrary* nvml = readable(r);
        return nvml && NvidiaGpu(*nvml, r).readFanSpeed(percent, rpm);
    }
    bool readLoad(GpuRecord& r, float* gpuPercent, float* frameBufferPercent) override {
        const NvmlLibrary* nvml = readable(r);
        return nvml && NvidiaGpu(*nvml, r).readLoad(gpuPercent, frameBufferPercent);
    }
    // The library reports no shader clock and no voltage: those outputs keep what the caller gave.
    bool readCurrentClocks(GpuRecord& r, uint32_t* pstate, float* gpuMhz, float* memMhz, float*,
                           float*) override {
        const NvmlLibrary* nvml = readable(r);
        return nvml && NvidiaGpu(*nvml, r).readCurrentClocks(pstate, gpuMhz, memMhz);
    }
    void readMoreLive(GpuRecord& r, LiveSample& sample) override {
        if (const NvmlLibrary* nvml = readable(r)) NvidiaGpu(*nvml, r).readMoreLive(sample);
    }
    // Served from the table built at start-up: the library has no P-state table of its own to ask again.
    bool readPerfLevel(GpuRecord& r, uint32_t level, uint32_t* id, float* gpuMhz, float* memMhz, float*,
                       float* volts) override {
        if (level >= r.perfLevelCount || !r.perfLevels) return false;
        const PerfLevel& entry = r.perfLevels[level];
        if (id) *id = entry.id;
        if (gpuMhz) *gpuMhz = entry.gpuClockMhz;
        if (memMhz) *memMhz = entry.memClockMhz;
        if (volts) *volts = entry.vddcVolts;
        return true;
    }

private:
    // The library, if the record has a handle of the driver's and the PCI layer lets the GPU be touched now.
    const NvmlLibrary* readable(const GpuRecord& r) const {
        const NvmlLibrary* nvml = m_state.library();
        if (!nvml || !r.nvPhysicalGpu || !r.pciAddress || m_state.handleAt(*r.pciAddress) != r.nvPhysicalGpu ||
            !m_pci.mayTouch(*r.pciAddress))
            return nullptr;
        return nvml;
    }

    const NvidiaState& m_state;
    const PciBus& m_pci;
};

}  // namespace

uint32_t nvidiaDriverVersionNumber(const char* versionText) {
    uint32_t major = 0, minor = 0;
    return parseDriverVersion(versionText, major, minor) ? major * 100 + minor : 0;
}

void formatNvidiaDriverVersion(uint32_t number, char (&text)[512]) {
    std::snprintf(text, sizeof text, "R%.2f", double(float(number) / 100.0f));
}

void formatNvidiaDriverBranch(const char* versionText, char (&branch)[128]) {
    uint32_t major = 0, minor = 0;
    branch[0] = '\0';
    if (parseDriverVersion(versionText, major, minor)) std::snprintf(branch, sizeof branch, "r%u", major);
}

std::unique_ptr<GpuLiveReader> makeNvidiaLiveReader(const NvidiaState& state, const PciBus& pci) {
    return std::make_unique<NvidiaLiveReader>(state, pci);
}

}  // namespace Kalidornm
