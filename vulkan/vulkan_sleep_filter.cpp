#include "vulkan/vulkan_sleep_filter.h"

#include "base/text_format.h"

namespace vulkan {
namespace {

// The manifest names of the Vulkan drivers that may serve a GPU of each vendor, as Linux distributions
// install them (radeon_icd.x86_64.json, nvidia_icd.json, intel_icd.x86_64.json, ...).
struct VendorDrivers {
    uint32_t vendorId;
    const char* manifests;
};
constexpr VendorDrivers kVendorDrivers[] = {
    {0x1002, "*radeon*,*amd*"},
    {0x10DE, "*nvidia*,*nouveau*"},
    {0x8086, "*intel*"},
    {0x1AF4, "*virtio*"},
};

const char* manifestsOf(uint32_t vendorId) {
    for (const VendorDrivers& v : kVendorDrivers)
        if (v.vendorId == vendorId) return v.manifests;
    return nullptr;
}

std::string addressOf(const Kalidornm::GpuSnapshot& gpu) { return gpu.pciAddress.value_or("(no PCI address)"); }

void append(std::string& list, const char* manifests) {
    if (list.find(manifests) != std::string::npos) return;
    if (!list.empty()) list += ',';
    list += manifests;
}

bool listsVendor(const Kalidornm::MachineSnapshot& machine, uint32_t vendorId) {
    for (const Kalidornm::GpuSnapshot& gpu : machine.gpus)
        if (gpu.vendorId == vendorId) return true;
    return false;
}

}  // namespace

DriverFilterDecision decideDriverFilter(const Kalidornm::MachineSnapshot& machine) {
    DriverFilterDecision decision;
    for (const Kalidornm::GpuSnapshot& asleep : machine.gpus) {
        if (!asleep.live.suspended) continue;
        const char* manifests = manifestsOf(asleep.vendorId);
        if (!manifests) {
            decision.skipReason = base::formatText(
                "the GPU at %s sleeps and no Vulkan driver names are known for its vendor 0x%04X",
                addressOf(asleep).c_str(), asleep.vendorId);
            return decision;
        }
        for (const Kalidornm::GpuSnapshot& awake : machine.gpus) {
            if (awake.live.suspended || awake.vendorId != asleep.vendorId) continue;
            decision.skipReason = base::formatText(
                "the GPU at %s sleeps and its Vulkan drivers also serve the awake GPU at %s",
                addressOf(asleep).c_str(), addressOf(awake).c_str());
            return decision;
        }
        append(decision.sleeping, manifests);
    }
    // A machine whose scan listed nothing may simply not have been scanned: every driver stays then.
    if (machine.gpus.empty()) return decision;
    for (const VendorDrivers& v : kVendorDrivers)
        if (!listsVendor(machine, v.vendorId)) append(decision.absent, v.manifests);
    return decision;
}

std::string DriverFilterDecision::disable() const { return combinedFilter(sleeping.c_str(), absent); }

std::string combinedFilter(const char* existing, const std::string& ours) {
    if (!existing || !*existing) return ours;
    if (ours.empty()) return existing;
    return std::string(existing) + "," + ours;
}

Kalidornm::MachineSnapshot sleepView(Kalidornm::Kalidor& library) {
    Kalidornm::MachineSnapshot view;
    view.gpus = library.scannedGpuIdentities();
    // Asked now rather than at the scan: a GPU may have gone to sleep since.
    for (size_t gpu = 0; gpu < view.gpus.size(); ++gpu)
        view.gpus[gpu].live.suspended = library.isGpuSuspended(int(gpu));
    return view;
}

}  // namespace vulkan
