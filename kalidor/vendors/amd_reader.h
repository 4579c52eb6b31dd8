#pragma once

#include <cstdint>
#include <vector>

#include "kalidor/vendors/amd_adapters.h"

namespace Kalidornm {

struct BackendServices;
struct GpuRecord;
class AmdLiveReader;
class GpuList;

// What the AMD reader keeps about the driver and its GPUs. The kernel driver stands in for the vendor's
// display library: it counts as loaded when at least one device is bound to amdgpu or radeon.
struct AmdState {
    bool adlLoaded = false;
    std::vector<AmdAdapterInfo> adlAdapterInfo;  // one entry per display output
    std::vector<PciAddress> seenAdapters;         // cards the adapter filter has met in this start-up
    int32_t adlAdapterCount = 0;
    uint32_t amdAdapterCount = 0;        // accepted adapters
    uint32_t amdUsableAdapterCount = 0;  // the same count, kept apart as callers ask for both
    uint32_t agsGpuCount = 0;            // devices bound to amdgpu
    uint32_t agsCrossfireGpuCount = 0;   // always 0: amdgpu has no CrossFire
};

// Builds the adapter list of the amdgpu devices, creates one record per physical AMD GPU, gives each card's
// files to the live reader and takes the first readings. False when no device is bound, the list is already
// loaded, or it lists no adapter.
bool AMD_Display_Library_Init(AmdState& amd, AmdLiveReader& live, const std::vector<const PciDevice*>& devices,
                              const BackendServices& services, GpuList& gpus);

// Name, codename and figures from the GPU database, with the naming rules for ids that several products
// share; without a row the adapter name stands and the codename stays empty.
void applyAmdDatabaseFacts(GpuRecord& record, const AmdAdapterInfo& info);

}  // namespace Kalidornm
