#pragma once

#include <optional>
#include <string>

#include "kalidor/kalidor.h"
#include "kalidor/machine_snapshot.h"

// Enumerating Vulkan devices makes every driver open its GPUs, which wakes one that sleeps. The loader can
// leave drivers out by their manifest's file name (VK_LOADER_DRIVERS_DISABLE); this decides which.
namespace vulkan {

inline constexpr const char* kDriverFilterVariable = "VK_LOADER_DRIVERS_DISABLE";

struct DriverFilterDecision {
    std::string sleeping;  // the manifest names of the sleeping GPUs' drivers; empty when no GPU sleeps
    // The drivers of the vendors the PCI scan found no GPU of: they have nothing to serve, and loading each
    // costs tens of milliseconds.
    std::string absent;
    std::optional<std::string> skipReason;  // set where discovery must not run at all

    std::string disable() const;  // both lists, as the loader reads them
};

// Leaves out the drivers of each sleeping GPU's vendor; skips where a sleeping GPU's vendor has no known
// driver names or an awake GPU of the same vendor would be hidden with it. Where the scan listed any GPU,
// the drivers of the known vendors it did not list are left out too.
DriverFilterDecision decideDriverFilter(const Kalidornm::MachineSnapshot& machine);

// The filter the loader is given: an existing setting of the user's kept, ours added to it.
std::string combinedFilter(const char* existing, const std::string& ours);

// The GPUs as the sleep decision needs them (vendor, address, whether each sleeps now): identity from the
// library's scan, each GPU's power state asked now. Reads no machine snapshot.
Kalidornm::MachineSnapshot sleepView(Kalidornm::Kalidor& library);

}  // namespace vulkan
