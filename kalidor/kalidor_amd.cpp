#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"
#include "kalidor/vendors/amd_live_reader.h"

namespace Kalidornm {

bool Kalidor::readGpuPowerControl(int gpu, int32_t* current, int32_t* defaultPercent, int32_t* min,
                                  int32_t* max) {
    GpuRecord* r = record(gpu);
    if (!r || r->vendorClass != kVendorClassAmd) return false;
    auto* reader = dynamic_cast<AmdLiveReader*>(readerOf(*r));
    return reader && reader->readPowerControl(*r, current, defaultPercent, min, max);
}

uint32_t Kalidor::getAmdAgsGpuCount() const { return heldSnapshot().driver.amdGpuCount; }
uint32_t Kalidor::getAmdCrossfireGpuCount() const { return heldSnapshot().driver.amdCrossfireGpuCount; }

uint32_t Kalidor::getAmdAdapterCount() const { return heldSnapshot().driver.amdAdapterCount; }
uint32_t Kalidor::getAmdUsableAdapterCount() const { return heldSnapshot().driver.amdUsableAdapterCount; }

}  // namespace Kalidornm
