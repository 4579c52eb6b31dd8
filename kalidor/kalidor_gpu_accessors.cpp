#include "kalidor.h"
#include "library_globals.h"

namespace Kalidornm {

GpuRecord* Kalidor::record(int gpu) const { return gGlobals.gpus.at(gpu); }

GpuLiveReader* Kalidor::readerOf(GpuRecord& r) const {
    HardwareCaps* machine = caps();
    return machine ? machine->readerFor(r.vendorClass) : nullptr;
}

bool Kalidor::hasDisplayDevice() const { return gGlobals.hasDisplayDevice; }
const char* Kalidor::getPrimaryGpuName() const { return gGlobals.summary.gpuName; }
bool Kalidor::isVista() const { return gGlobals.isVista; }
uint32_t Kalidor::getPhysxVersion() const { return gGlobals.physxVersion; }
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

const char* Kalidor::getGpuDisplayDeviceId(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->displayDeviceId : nullptr;
}

const char* Kalidor::getGpuDisplayDeviceString(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->displayDeviceString : nullptr;
}

const char* Kalidor::getGpuDriverVersion(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->driverVersion : nullptr;
}

bool Kalidor::hasGpuTemperature(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r && r->hasTemperature;
}

uint32_t Kalidor::getGpuPerfLevelCount(int gpu) const {
    const GpuRecord* r = record(gpu);
    return r ? r->perfLevelCount : 0;
}

uint32_t Kalidor::countGpusWithTemperature() const {
    uint32_t count = 0;
    for (size_t i = 0; i < gGlobals.gpus.size(); ++i)
        if (gGlobals.gpus.at(long(i))->hasTemperature) ++count;
    return count;
}

bool Kalidor::sortGpusByBusId() { return gGlobals.gpus.sortByBusId(); }

}  // namespace Kalidornm
