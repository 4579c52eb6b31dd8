#include <cstring>

#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"
#include "kalidor/vendors/nvidia_gpu.h"
#include "kalidor/vendors/nvml_library.h"

namespace Kalidornm {

namespace {

const NvidiaState* nvidiaState(const Kalidor& library) {
    const HardwareCaps* machine = library.caps();
    return machine ? &machine->nvidia : nullptr;
}

}  // namespace

// The driver's state of a GPU is found by the record's PCI address, so the list's order (sorted or not) does
// not matter; a record the driver handed no handle for is refused even if it claims the NVIDIA class.
GpuRecord* Kalidor::nvidiaRecord(int gpu) const {
    GpuRecord* r = record(gpu);
    const NvidiaState* state = nvidiaState(*this);
    if (!r || !state || !state->library() || r->vendorClass != kVendorClassNvidia || !r->pciAddress) return nullptr;
    void* handle = state->handleAt(*r->pciAddress);
    return handle && handle == r->nvPhysicalGpu ? r : nullptr;
}

GpuRecord* Kalidor::nvidiaRecordToRead(int gpu) const {
    GpuRecord* r = nvidiaRecord(gpu);
    const HardwareCaps* machine = caps();
    return r && machine && machine->pci.mayTouch(*r->pciAddress) ? r : nullptr;
}

// Every read below asks the driver, so the GPU must be one the PCI layer lets be touched now.
#define KALIDOR_NVIDIA_GPU(gpu)                                    \
    GpuRecord* r = nvidiaRecordToRead(gpu);                        \
    if (!r) return false;                                          \
    NvidiaGpu nvidia(*nvidiaState(*this)->library(), *r)

bool Kalidor::readGpuClockFrequencies(int gpu, uint32_t clockType, float* gpuMhz, float* memMhz) {
    KALIDOR_NVIDIA_GPU(gpu);
    return nvidia.readClockFrequencies(clockType, gpuMhz, memMhz);
}

// The library reports the offsets but no voltage offset; `volts` keeps what the caller gave.
bool Kalidor::readGpuClockOffsets(int gpu, float* coreMhz, float* memMhz, float*) {
    KALIDOR_NVIDIA_GPU(gpu);
    return nvidia.readClockOffsets(coreMhz, memMhz);
}

bool Kalidor::readGpuPowerUsage(int gpu, float* percent, uint32_t* milliwatts) {
    KALIDOR_NVIDIA_GPU(gpu);
    return nvidia.readPowerUsage(percent, milliwatts);
}

bool Kalidor::readGpuPowerPolicy(int gpu, float* minPercent, uint32_t* minMw, float* maxPercent, uint32_t* maxMw,
                                 float* defaultPercent, uint32_t* defaultMw) {
    KALIDOR_NVIDIA_GPU(gpu);
    return nvidia.readPowerPolicy(minPercent, minMw, maxPercent, maxMw, defaultPercent, defaultMw);
}

bool Kalidor::readGpuPowerTarget(int gpu, float* percent, uint32_t* milliwatts) {
    KALIDOR_NVIDIA_GPU(gpu);
    return nvidia.readPowerTarget(percent, milliwatts);
}

bool Kalidor::setGpuPowerTarget(int gpu, float percent) {
    KALIDOR_NVIDIA_GPU(gpu);
    return nvidia.setPowerTarget(percent);
}

bool Kalidor::readGpuMemoryUsage(int gpu, uint32_t* totalKb, uint32_t* availableKb, float* usedPercent) {
    KALIDOR_NVIDIA_GPU(gpu);
    return nvidia.readMemoryUsage(totalKb, availableKb, usedPercent);
}

bool Kalidor::readGpuPerfLimiters(int gpu) {
    KALIDOR_NVIDIA_GPU(gpu);
    return nvidia.readPerfLimiters();
}

bool Kalidor::getGpuPerfLimiter(int gpu, uint32_t slot, bool* active, const char** name) const {
    const GpuRecord* r = nvidiaRecord(gpu);
    if (!r || slot >= 4) return false;
    if (active) *active = r->perfLimiterActive[slot] != 0;
    if (name) *name = r->perfLimiterName[slot].get();
    return true;
}

bool Kalidor::readGpuBoardInfo(int gpu, uint8_t (&bytes)[16]) {
    KALIDOR_NVIDIA_GPU(gpu);
    return nvidia.readBoardInfo(bytes);
}

uint32_t Kalidor::queryActive3DApps(int gpu) {
    GpuRecord* r = nvidiaRecordToRead(gpu);
    if (!r) return 0;
    return NvidiaGpu(*nvidiaState(*this)->library(), *r).queryActiveApps(caps()->sources.rootDir);
}

uint32_t Kalidor::getActiveAppPid(int gpu, uint32_t i) const {
    const GpuRecord* r = nvidiaRecord(gpu);
    return r && i < kActiveAppSlots ? r->activeApps[i].processId : 0;
}

const char* Kalidor::getActiveAppName(int gpu, uint32_t i) const {
    const GpuRecord* r = nvidiaRecord(gpu);
    return r && i < kActiveAppSlots ? r->activeApps[i].processName : nullptr;
}

const char* Kalidor::getDriverBranch() const { return textOrEmpty(heldSnapshot().driver.nvDriverBranch); }
uint32_t Kalidor::getDriverVersionNumber() const { return heldSnapshot().driver.nvDriverVersionNumber; }

#undef KALIDOR_NVIDIA_GPU

}  // namespace Kalidornm
