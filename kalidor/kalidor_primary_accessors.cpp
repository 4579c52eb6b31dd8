#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"

namespace Kalidornm {

namespace {

const PrimaryDriverValues* driverOf(const Kalidor& library) {
    const HardwareCaps* machine = library.caps();
    return machine ? &machine->driver : nullptr;
}

const char* driverText(const Kalidor& library, char (PrimaryDriverValues::*field)[256]) {
    const PrimaryDriverValues* values = driverOf(library);
    return values ? values->*field : "";
}

// The sub ids are -1 until a display device is decoded; callers see 0 then.
uint32_t decodedOrZero(int32_t id) { return id < 0 ? 0 : uint32_t(id); }

}  // namespace

const char* Kalidor::getPrimaryCodename() const { return gGlobals.summary.codename; }
const char* Kalidor::getPrimaryDriverText() const { return gGlobals.summary.driverText; }
uint32_t Kalidor::getPrimaryVendorId() const { return gGlobals.summary.vendorId; }
uint32_t Kalidor::getPrimaryDeviceId() const { return gGlobals.summary.deviceId; }

uint32_t Kalidor::getPrimarySubvendorId() const {
    const HardwareCaps* machine = caps();
    return machine ? decodedOrZero(machine->display.primary.subvendorId) : 0;
}

uint32_t Kalidor::getPrimarySubdeviceId() const {
    const HardwareCaps* machine = caps();
    return machine ? decodedOrZero(machine->display.primary.subdeviceId) : 0;
}

const char* Kalidor::getPrimaryRevisionText() const {
    const HardwareCaps* machine = caps();
    return machine ? machine->display.primary.revisionText : "";
}

int32_t Kalidor::getPrimaryShaderCores() const {
    if (getPrimaryVendorKind() == kPrimaryVendorNvidia) {
        // The NVIDIA reader reads GPU 0's core count from the driver when it creates the record.
        const GpuRecord* first = record(0);
        if (first && first->vendorClass == kVendorClassNvidia && first->shaderCores != 0) return first->shaderCores;
    }
    return gGlobals.summary.unifiedShaders;
}

int32_t Kalidor::getPrimaryVertexPipes() const { return gGlobals.summary.vertexPipes; }
int32_t Kalidor::getPrimaryPixelPipes() const { return gGlobals.summary.pixelPipes; }
int32_t Kalidor::getPrimaryTmus() const { return gGlobals.summary.tmus; }
int32_t Kalidor::getPrimaryRops() const { return gGlobals.summary.rops; }
int32_t Kalidor::getPrimaryTdp() const { return gGlobals.summary.tdpWatts; }
uint32_t Kalidor::getPrimaryVideoMemoryMb() const { return gGlobals.summary.videoMemoryMb; }
const char* Kalidor::getPrimaryBiosVersion() const { return gGlobals.summary.biosVersion; }
uint32_t Kalidor::getPrimaryGpuCount() const { return gGlobals.summary.gpuCount; }
uint32_t Kalidor::getPrimaryTotalGpuCount() const { return gGlobals.summary.totalGpuCount; }
bool Kalidor::hasArrayAndBufferTextures() const { return gGlobals.summary.hasArrayAndBufferTextures; }

int32_t Kalidor::getPrimaryVendorKind() const {
    const HardwareCaps* machine = caps();
    return machine ? machine->primaryVendorKind : kPrimaryVendorNone;
}

bool Kalidor::isPrimaryAmd() const { return getPrimaryVendorKind() == kPrimaryVendorAmd; }
bool Kalidor::isPrimaryIntel() const { return getPrimaryVendorKind() == kPrimaryVendorIntel; }
bool Kalidor::isPrimaryNvidia() const { return getPrimaryVendorKind() == kPrimaryVendorNvidia; }
bool Kalidor::isPrimaryS3() const { return getPrimaryVendorKind() == kPrimaryVendorS3; }

const char* Kalidor::getPrimaryDriverVersion() const { return driverText(*this, &PrimaryDriverValues::driverVersion); }
const char* Kalidor::getPrimaryDriverDescription() const {
    return driverText(*this, &PrimaryDriverValues::driverDescription);
}
const char* Kalidor::getPrimaryDriverDate() const { return driverText(*this, &PrimaryDriverValues::driverDate); }
const char* Kalidor::getPrimaryDeviceDescription() const {
    return driverText(*this, &PrimaryDriverValues::deviceDescription);
}
const char* Kalidor::getPrimaryOpenGLDriverName() const {
    return driverText(*this, &PrimaryDriverValues::openGLDriverName);
}
const char* Kalidor::getPrimaryAdapterString() const { return driverText(*this, &PrimaryDriverValues::adapterString); }
const char* Kalidor::getPrimaryBiosString() const { return driverText(*this, &PrimaryDriverValues::biosString); }
const char* Kalidor::getPrimaryCatalystVersion() const {
    return driverText(*this, &PrimaryDriverValues::catalystVersion);
}
const char* Kalidor::getPrimaryReleaseVersion() const { return driverText(*this, &PrimaryDriverValues::releaseVersion); }

uint32_t Kalidor::getPrimaryMemorySizeBytes() const {
    const PrimaryDriverValues* values = driverOf(*this);
    return values ? values->memorySizeBytes : 0;
}

}  // namespace Kalidornm
