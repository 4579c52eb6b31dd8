#include "kalidor/kalidor.h"
#include "kalidor/gpu_database/gpu_database.h"
#include "kalidor/gpu_database/gpu_naming.h"
#include "kalidor/gpu_database/pci_vendor_table.h"
#include "kalidor/library_globals.h"

namespace Kalidornm {

GpuRecord* Kalidor::record(int gpu) const { return gGlobals.gpus.at(gpu); }

GpuLiveReader* Kalidor::readerOf(GpuRecord& r) const {
    HardwareCaps* machine = caps();
    return machine ? machine->readerFor(r.vendorClass) : nullptr;
}

bool Kalidor::hasDisplayDevice() const { return gGlobals.hasDisplayDevice; }
const char* Kalidor::getPrimaryGpuName() const { return gGlobals.summary.gpuName; }

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
bool Kalidor::isPhysxOnGpu() const { return gGlobals.physxOnGpu; }

uint32_t Kalidor::getGpuCount() const { return uint32_t(gGlobals.gpus.size()); }

bool Kalidor::getGpuPciIds(int gpu, uint32_t* vendor, uint32_t* device, uint32_t* subvendor,
                           uint32_t* subdevice) const {
    const GpuRecord* r = record(gpu);
    if (!r) return false;
    if (vendor) *vendor = r->vendorId;
    if (device) *device = r->deviceId;
    if (subvendor) *subvendor = r->subvendorId;
    if (subdevice) *subdevice = r->subdeviceId;
    return true;
}

const char* Kalidor::getGpuName(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->name : nullptr;
}

const char* Kalidor::getGpuCodename(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->codename : nullptr;
}

int32_t Kalidor::getGpuBusId(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->busId : -1;
}

std::string Kalidor::getGpuPciAddress(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r && r->pciAddress ? r->pciAddress->text() : std::string();
}

const char* Kalidor::getGpuDisplayDeviceId(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->displayDeviceId : nullptr;
}

const char* Kalidor::getGpuDisplayDeviceString(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->displayDeviceString : nullptr;
}

int32_t Kalidor::getGpuShaderCores(int gpu) const {
    GpuRecord* r = record(gpu);
    return r ? refillFromGpuDb(r->shaderCores, r->vendorId, r->deviceId, GpuDbFigure::UnifiedShaders) : 0;
}

int32_t Kalidor::getGpuVertexPipes(int gpu) const {
    GpuRecord* r = record(gpu);
    return r ? refillFromGpuDb(r->vertexPipes, r->vendorId, r->deviceId, GpuDbFigure::VertexPipes) : 0;
}

int32_t Kalidor::getGpuPixelPipes(int gpu) const {
    GpuRecord* r = record(gpu);
    return r ? refillFromGpuDb(r->pixelPipes, r->vendorId, r->deviceId, GpuDbFigure::PixelPipes) : 0;
}

int32_t Kalidor::getGpuTdp(int gpu) const {
    GpuRecord* r = record(gpu);
    return r ? refillFromGpuDb(r->tdpWatts, r->vendorId, r->deviceId, GpuDbFigure::TdpWatts) : 0;
}

int32_t Kalidor::getGpuTextureUnits(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->tmus : -1;
}

int32_t Kalidor::getGpuRopUnits(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->rops : -1;
}

uint32_t Kalidor::getGpuMemorySizeMb(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->memorySizeMb : 0;
}

const char* Kalidor::getGpuMemoryType(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->memoryType : nullptr;
}

bool Kalidor::getGpuMemoryBusWidth(int gpu, uint32_t* bits, const char** text) const {
    const GpuRecord* r = record(gpu);
    if (!r) return false;
    if (bits) *bits = r->memoryBusWidth;
    if (text) {
        switch (r->memoryLocation) {
            case 1: *text = "GPU dedicated"; break;
            case 2: *text = "Sys shared"; break;
            case 3: *text = "Sys dedicated"; break;
            default: *text = ""; break;
        }
    }
    return true;
}

const char* Kalidor::getGpuBiosVersion(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->biosVersion : nullptr;
}

const char* Kalidor::getGpuDriverVersion(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->driverVersion : nullptr;
}

const char* Kalidor::getGpuDriverDate(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->driverDate : nullptr;
}

const char* Kalidor::getGpuCatalystVersion(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->catalystVersion : nullptr;
}

const char* Kalidor::getGpuReleaseVersion(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->releaseVersion : nullptr;
}

bool Kalidor::isGpuCrimsonDriver(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r && r->isCrimson;
}

bool Kalidor::hasGpuTemperature(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r && r->hasTemperature;
}

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

uint32_t Kalidor::countGpusWithTemperature() const {
    uint32_t count = 0;
    for (size_t i = 0; i < gGlobals.gpus.size(); ++i)
        if (gGlobals.gpus.at(long(i))->hasTemperature) ++count;
    return count;
}

bool Kalidor::sortGpusByBusId() { return gGlobals.gpus.sortByBusId(); }

}  // namespace Kalidornm
