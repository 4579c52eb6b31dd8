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
uint32_t Kalidor::getPrimarySubdeviceId() const { return primary().subdeviceId; }

const char* Kalidor::getPrimaryRevisionText() const {
    const HardwareCaps* machine = caps();
    return machine ? machine->display.primary.revisionText : "";
}

int32_t Kalidor::getPrimaryShaderCores() const { return primary().shaderCores; }
int32_t Kalidor::getPrimaryTdp() const { return primary().tdpWatts; }

int32_t Kalidor::getPrimaryVendorKind() const { return primary().vendorKind; }

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

}  // namespace Kalidornm
