#pragma once

#include <string>

#include "kalidor/platform/pci_driver_facts.h"

namespace Kalidornm {

// The user-space OpenGL driver that a kernel driver implies ("amdgpu" gives "radeonsi"); unknown drivers and a
// device without a kernel driver give "".
const char* openGlDriverForKernelDriver(const std::string& kernelDriver);

// The driver's version text: the module's own version, else (in-tree drivers) the kernel release.
std::string driverVersionOf(const SysfsDriverFacts& facts);

// The driver's date: the build date in the NVIDIA driver's version line, else the kernel's build date.
std::string driverDateOf(const SysfsDriverFacts& facts);

}  // namespace Kalidornm
