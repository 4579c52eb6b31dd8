#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"

namespace Kalidornm {

namespace {

const PrimaryDeviceFacts& primary() { return heldSnapshot().primary; }

}  // namespace

const char* Kalidor::getPrimaryGpuName() const { return textOrEmpty(primary().gpuName); }
const char* Kalidor::getPrimaryCodename() const { return textOrEmpty(primary().codename); }
const char* Kalidor::getPrimaryDriverText() const { return textOrEmpty(primary().driverText); }
uint32_t Kalidor::getPrimarySubdeviceId() const { return primary().subdeviceId; }

const char* Kalidor::getPrimaryRevisionText() const { return primary().revisionText.c_str(); }

int32_t Kalidor::getPrimaryShaderCores() const { return primary().shaderCores; }
int32_t Kalidor::getPrimaryTdp() const { return primary().tdpWatts; }

int32_t Kalidor::getPrimaryVendorKind() const { return primary().vendorKind; }

const char* Kalidor::getPrimaryDriverVersion() const { return textOrEmpty(primary().driverVersion); }
const char* Kalidor::getPrimaryDriverDescription() const { return textOrEmpty(primary().driverDescription); }
const char* Kalidor::getPrimaryDriverDate() const { return textOrEmpty(primary().driverDate); }
const char* Kalidor::getPrimaryDeviceDescription() const { return textOrEmpty(primary().deviceDescription); }
const char* Kalidor::getPrimaryOpenGLDriverName() const { return textOrEmpty(primary().openGLDriverName); }

}  // namespace Kalidornm
