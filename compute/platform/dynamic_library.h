#pragma once

// Compute discovery loads its driver libraries through the hardware library's one dlopen wrapper.
#include "kalidor/platform/dynamic_library.h"

namespace compute {
using DynamicLibrary = Kalidornm::DynamicLibrary;
}  // namespace compute
