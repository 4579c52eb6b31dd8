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

const PrimaryDeviceFacts& primary() { return heldSnapshot().primary; }

}  // namespace

const char* Kalidor::getPrimaryGpuName() const { return textOrEmpty(primary().gpuName); }
const char* Kalidor::getPrimaryCodename() const { return textOrEmpty(primary().codename); }
const char* Kalidor::getPrimaryDriverText() const { return textOrEmpty(primary().driverText); }
uint32_t Kalidor::getPrimaryVendorId() const { return primary().vendorId; }
uint32_t Kalidor::getPrimaryDeviceId() const { return primary().deviceId; }
uint32_t Kalidor::getPrimarySubvendorId() const { return primary().subvendorId; }
uint32_t Kalidor::getPrimarySubdeviceId() const { return primary().subdeviceId; }

const char* Kalidor::getPrimaryRevisionText() const {
    const HardwareCaps* machine = caps();
    return machine ? machine->display.primary.revisionText : "";
}

int32_t Kalidor::getPrimaryShaderCores() const { return primary().shaderCores; }
int32_t Kalidor::getPrimaryVertexPipes() const { return gGlobals.summary.vertexPipes; }
int32_t Kalidor::getPrimaryPixelPipes() const { return gGlobals.summary.pixelPipes; }
int32_t Kalidor::getPrimaryTmus() const { return primary().textureUnits; }
int32_t Kalidor::getPrimaryRops() const { return primary().ropUnits; }
int32_t Kalidor::getPrimaryTdp() const { return primary().tdpWatts; }
uint32_t Kalidor::getPrimaryVideoMemoryMb() const { return primary().videoMemoryMb; }
const char* Kalidor::getPrimaryBiosVersion() const { return textOrEmpty(primary().biosVersion); }
uint32_t Kalidor::getPrimaryGpuCount() const { return gGlobals.summary.gpuCount; }
uint32_t Kalidor::getPrimaryTotalGpuCount() const { return primary().totalGpuCount; }
bool Kalidor::hasArrayAndBufferTextures() const { return gGlobals.summary.hasArrayAndBufferTextures; }

int32_t Kalidor::getPrimaryVendorKind() const { return primary().vendorKind; }

bool Kalidor::isPrimaryAmd() const { return getPrimaryVendorKind() == kPrimaryVendorAmd; }
bool Kalidor::isPrimaryIntel() const { return getPrimaryVendorKind() == kPrimaryVendorIntel; }
bool Kalidor::isPrimaryNvidia() const { return getPrimaryVendorKind() == kPrimaryVendorNvidia; }
bool Kalidor::isPrimaryS3() const { return getPrimaryVendorKind() == kPrimaryVendorS3; }

const char* Kalidor::getPrimaryDriverVersion() const { return textOrEmpty(primary().driverVersion); }
const char* Kalidor::getPrimaryDriverDescription() const {
    return driverText(*this, &PrimaryDriverValues::driverDescription);
}
const char* Kalidor::getPrimaryDriverDate() const { return textOrEmpty(primary().driverDate); }
const char* Kalidor::getPrimaryDeviceDescription() const {
    return driverText(*this, &PrimaryDriverValues::deviceDescription);
}
const char* Kalidor::getPrimaryOpenGLDriverName() const {
    return driverText(*this, &PrimaryDriverValues::openGLDriverName);
}
const char* Kalidor::getPrimaryAdapterString() const { return driverText(*this, &PrimaryDriverValues::adapterString); }
const char* Kalidor::getPrimaryBiosString() const { return textOrEmpty(primary().biosString); }
const char* Kalidor::getPrimaryCatalystVersion() const {
    return driverText(*this, &PrimaryDriverValues::catalystVersion);
}
const char* Kalidor::getPrimaryReleaseVersion() const { return driverText(*this, &PrimaryDriverValues::releaseVersion); }

uint32_t Kalidor::getPrimaryMemorySizeBytes() const {
    const PrimaryDriverValues* values = driverOf(*this);
    return values ? values->memorySizeBytes : 0;
}

}  // namespace Kalidornm
