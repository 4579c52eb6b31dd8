#pragma once

#include <cstdint>
#include <vector>

#include "compute/opencl_records.h"

// The records discovery fills; private to the OpenCL files of this folder.
namespace compute {

struct OpenClState {
    std::vector<ClPlatformRecord> platforms;
    uint32_t platformCount = 0;
};

OpenClState& openClState();

}  // namespace compute
