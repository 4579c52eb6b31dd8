#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "kalidor/gpu_live_reader.h"
#include "kalidor/gpu_record.h"
#include "kalidor/platform/pci_bus.h"

namespace Kalidornm {

class NvmlLibrary;

inline constexpr uint32_t kMaxNvidiaGpus = 64;

// What the driver tells about one physical GPU at start-up.
struct NvGpuInfo {
    void* handle = nullptr;
    std::optional<PciAddress> address;  // where the driver says the GPU sits
    uint32_t physicalFrameBufferKb = 0;
    uint32_t gpuType = 0;  // 1 integrated, 2 discrete; the management library does not say, so it stays 0
    char fullName[128] = {};
};

// What the NVIDIA backend keeps about the driver and its GPUs. The management library stays loaded and
// started from start-up to shutdown so that live reads cost one or two calls. A GPU's state is found by its
// PCI address, never by its place in the GPU list.
struct NvidiaState {
    NvidiaState();
    ~NvidiaState();
    NvidiaState(NvidiaState&&) noexcept;
    NvidiaState& operator=(NvidiaState&&) noexcept;

    // Stops the library and clears the block.
    void reset();
    // The started library, or null without an NVIDIA driver.
    const NvmlLibrary* library() const { return nvml.get(); }
    // The handle of the GPU at this address; null when the driver did not hand one out.
    void* handleAt(const PciAddress& address) const;

    std::unique_ptr<NvmlLibrary> nvml;
    // Displays are not reachable through the management library; the count stays 0. Without SLI groups the
    // logical count is the physical one.
    uint32_t nvDisplayCount = 0;
    uint32_t nvPhysicalGpuCount = 0;
    uint32_t nvLogicalGpuCount = 0;
    void* nvPhysicalGpus[kMaxNvidiaGpus] = {};
    NvGpuInfo nvGpuInfo[kMaxNvidiaGpus];
    char nvDriverAdapterString[128] = {};
    char nvDriverBranch[128] = {};  // "r550"
    uint32_t nvDriverVersion = 0;   // driver version x 100: 55054 for "550.54.15"
};

// Driver version text rules: "550.54.15" gives 55054 (a minor version above 99 keeps its first two digits,
// since the number has room for two), 0 for a text without a major version; 55054 gives "R550.54"; the
// branch is the major version as "r550", empty without one.
uint32_t nvidiaDriverVersionNumber(const char* versionText);
void formatNvidiaDriverVersion(uint32_t number, char (&text)[512]);
void formatNvidiaDriverBranch(const char* versionText, char (&branch)[128]);

// The live reads of the records the NVIDIA backend made; each asks the PCI layer first whether the GPU may be
// touched, so a GPU that fell asleep after start-up is not woken either.
std::unique_ptr<GpuLiveReader> makeNvidiaLiveReader(const NvidiaState& state, const PciBus& pci);

}  // namespace Kalidornm
