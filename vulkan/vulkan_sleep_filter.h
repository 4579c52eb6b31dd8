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
    std::string disable;                   // the manifest names to leave out; empty when no GPU sleeps
    std::optional<std::string> skipReason;  // set where discovery must not run at all
};

// Leaves out the drivers of each sleeping GPU's vendor; skips where a sleeping GPU's vendor has no known
// driver names or an awake GPU of the same vendor would be hidden with it.
DriverFilterDecision decideDriverFilter(const Kalidornm::MachineSnapshot& machine);

// The filter the loader is given: an existing setting of the user's kept, ours added to it.
std::string combinedFilter(const char* existing, const std::string& ours);

// The GPUs as the sleep decision needs them (vendor, address, whether each sleeps now), read from the
// library's records without asking any GPU more than its power state.
Kalidornm::MachineSnapshot sleepView(Kalidornm::Kalidor& library);

}  // namespace vulkan
