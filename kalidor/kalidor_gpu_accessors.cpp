#include "kalidor/kalidor.h"
#include "kalidor/gpu_database/gpu_database.h"
#include "kalidor/gpu_database/gpu_naming.h"
#include "kalidor/gpu_database/pci_vendor_table.h"
#include "kalidor/library_globals.h"
#include "kalidor/machine_snapshot_reader.h"

namespace Kalidornm {

GpuRecord* Kalidor::record(int gpu) const { return gGlobals.gpus.at(gpu); }

GpuLiveReader* Kalidor::readerOf(GpuRecord& r) const {
    HardwareCaps* machine = caps();
    return machine ? machine->readerFor(r.vendorClass) : nullptr;
}

bool Kalidor::hasDisplayDevice() const { return gGlobals.hasDisplayDevice; }

// Looked up from the primary ids rather than read at gpu_db_index: the scan sets that index from the same
// ids, and before any scan the ids are -1, which finds no row either.
const char* Kalidor::getPrimaryGpuDbName() const {
    const HardwareCaps* machine = caps();
    if (!machine) return UnknownGpuName;
    const PrimaryDisplay& primary = machine->display.primary;
    return primaryGpuDbName(primary.vendorId, primary.deviceId, primary.subdeviceId);
}

const char* Kalidor::getPrimaryVendorName() const {
    const HardwareCaps* machine = caps();
    return pciVendorName(machine ? machine->display.primary.vendorId : -1);
}
bool Kalidor::isVista() const { return heldSnapshot().system.osIsVista; }
uint32_t Kalidor::getPhysxVersion() const { return uint32_t(heldSnapshot().system.physxVersion); }

namespace {

// The GPU's static facts as the snapshot holds them; null past the end.
const GpuSnapshot* gpuAt(int gpu) {
    const std::vector<GpuSnapshot>& gpus = heldSnapshot().gpus;
    return gpu >= 0 && size_t(gpu) < gpus.size() ? &gpus[size_t(gpu)] : nullptr;
}

}  // namespace

uint32_t Kalidor::getGpuCount() const { return uint32_t(heldSnapshot().gpus.size()); }

std::vector<GpuSnapshot> Kalidor::scannedGpuIdentities() const {
    std::vector<GpuSnapshot> gpus;
    gpus.reserve(gGlobals.gpus.size());
    for (size_t gpu = 0; gpu < gGlobals.gpus.size(); ++gpu) gpus.push_back(gpuIdentity(*gGlobals.gpus.at(long(gpu))));
    return gpus;
}

bool Kalidor::getGpuPciIds(int gpu, uint32_t* vendor, uint32_t* device, uint32_t* subvendor,
                           uint32_t* subdevice) const {
    const GpuSnapshot* g = gpuAt(gpu);
    if (!g) return false;
    if (vendor) *vendor = g->vendorId;
    if (device) *device = g->deviceId;
    if (subvendor) *subvendor = g->subvendorId;
    if (subdevice) *subdevice = g->subdeviceId;
    return true;
}

const char* Kalidor::getGpuName(int gpu) const {
    const GpuSnapshot* g = gpuAt(gpu);
    return g ? textOrEmpty(g->name) : nullptr;
}

const char* Kalidor::getGpuCodename(int gpu) const {
    const GpuSnapshot* g = gpuAt(gpu);
    return g ? textOrEmpty(g->codename) : nullptr;
}

int32_t Kalidor::getGpuBusId(int gpu) const {
    const GpuSnapshot* g = gpuAt(gpu);
    return g ? g->busId : -1;
}

const char* Kalidor::getGpuDisplayDeviceId(int gpu) const {
    const GpuSnapshot* g = gpuAt(gpu);
    return g ? g->displayDeviceId.c_str() : nullptr;
}

const char* Kalidor::getGpuDisplayDeviceString(int gpu) const {
    const GpuSnapshot* g = gpuAt(gpu);
    return g ? g->displayDeviceString.c_str() : nullptr;
}

int32_t Kalidor::getGpuShaderCores(int gpu) const { return gpuAt(gpu) ? gpuAt(gpu)->shaderCores : 0; }
int32_t Kalidor::getGpuTdp(int gpu) const { return gpuAt(gpu) ? gpuAt(gpu)->tdpWatts : 0; }
int32_t Kalidor::getGpuTextureUnits(int gpu) const { return gpuAt(gpu) ? gpuAt(gpu)->textureUnits : -1; }
int32_t Kalidor::getGpuRopUnits(int gpu) const { return gpuAt(gpu) ? gpuAt(gpu)->ropUnits : -1; }
uint32_t Kalidor::getGpuMemorySizeMb(int gpu) const { return gpuAt(gpu) ? gpuAt(gpu)->memorySizeMb : 0; }

const char* Kalidor::getGpuMemoryType(int gpu) const {
    const GpuSnapshot* g = gpuAt(gpu);
    return g ? textOrEmpty(g->memoryType) : nullptr;
}

bool Kalidor::getGpuMemoryBusWidth(int gpu, uint32_t* bits, const char** text) const {
    const GpuSnapshot* g = gpuAt(gpu);
    if (!g) return false;
    if (bits) *bits = g->memoryBusWidthBits.value_or(0);
    if (text) *text = textOrEmpty(g->memoryLocation);
    return true;
}

const char* Kalidor::getGpuBiosVersion(int gpu) const {
    const GpuSnapshot* g = gpuAt(gpu);
    return g ? textOrEmpty(g->biosVersion) : nullptr;
}

const char* Kalidor::getGpuDriverVersion(int gpu) const {
    const GpuSnapshot* g = gpuAt(gpu);
    return g ? textOrEmpty(g->driverVersion) : nullptr;
}

const char* Kalidor::getGpuDriverDate(int gpu) const {
    const GpuSnapshot* g = gpuAt(gpu);
    return g ? textOrEmpty(g->driverDate) : nullptr;
}

const char* Kalidor::getGpuCatalystVersion(int gpu) const {
    const GpuSnapshot* g = gpuAt(gpu);
    return g ? textOrEmpty(g->catalystVersion) : nullptr;
}

bool Kalidor::isGpuCrimsonDriver(int gpu) const { return gpuAt(gpu) && gpuAt(gpu)->isCrimson; }
bool Kalidor::hasGpuTemperature(int gpu) const { return gpuAt(gpu) && gpuAt(gpu)->hasTemperatureSensor; }

uint32_t Kalidor::getGpuPerfLevelCount(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->perfLevelCount : 0;
}

bool Kalidor::getGpuPerfLevelMinClocks(int gpu, uint32_t level, float* gpuMhz, float* memMhz) const {
    const GpuRecord* r = record(gpu);
    if (!r || !r->perfLevels || level >= r->perfLevelCount) return false;
    const PerfLevel& entry = r->perfLevels[level];
    if (!entry.minGpuClockMhz || !entry.minMemClockMhz) return false;
    if (gpuMhz) *gpuMhz = *entry.minGpuClockMhz;
    if (memMhz) *memMhz = *entry.minMemClockMhz;
    return true;
}

// The snapshot lists the GPUs in the library's order: it is read again after a sort.
bool Kalidor::sortGpusByBusId() {
    gGlobals.snapshot.reset();
    return gGlobals.gpus.sortByBusId();
}

}  // namespace Kalidornm
