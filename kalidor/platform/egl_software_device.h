#pragma once

#include <string>

namespace Kalidornm {

// True when the EGL library lists a software rendering device (EGL_EXT_device_enumeration with a device that
// offers EGL_MESA_device_software). No display is created. False when the library is missing.
bool eglOffersSoftwareDevice(const std::string& eglLibrary);

}  // namespace Kalidornm
