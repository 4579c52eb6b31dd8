#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "compute/cuda_discovery.h"
#include "compute/opencl_records.h"

// The machine-wide lines of the GPU panel (PhysX, multi-GPU, OpenCL, CUDA), as rules over plain facts so that
// every branch can be tried without the machine it describes.
namespace panels {

struct SummaryLine {
    std::string text;
    bool enabled = true;  // false: the field and its label are greyed
};

// `physxGpuName` is the first NVIDIA GPU with 32 or more shader cores, "" when it has no name, null when there
// is no such GPU.
SummaryLine physxLine(int32_t physxVersion, const char* physxGpuName);

struct MultiGpuFacts {
    int32_t primaryVendorKind = 0;
    uint32_t gpuCount = 0;     // every record
    uint32_t nvidiaGpus = 0;   // records of vendor 0x10DE
    uint32_t amdGpus = 0;      // records of vendor 0x1002
    uint32_t logicalGpuCount = 0;  // what the primary vendor's driver counts as GPUs
    uint32_t amdGpuCount = 0;
    uint32_t crossfireGpuCount = 0;
};
SummaryLine multiGpuLine(const MultiGpuFacts& facts);

// The device the OpenCL line describes: a GPU device of the platform matching `gpu0Vendor` (when
// `matchVendor`), else the first GPU device of any platform, else the first CPU device. Types count only when
// exact.
SummaryLine openClLine(const std::vector<compute::ClPlatformRecord>& platforms, uint32_t gpu0Vendor,
                       bool matchVendor);

SummaryLine cudaLine(const std::vector<compute::CudaDeviceRecord>& devices);

}  // namespace panels
