#pragma once

#include <cstddef>

#include "compute/opencl_api.h"

// How an OpenCL demo enqueues a kernel: the global range, rounded up to whole work groups when the demo
// gives the group size itself (the kernels return early beyond the problem size), or the problem size as it
// is when the driver chooses the groups.
struct ClRange {
    cl_uint dimensions = 1;
    size_t global[2] = {0, 1};
    size_t local[2] = {1, 1};
    bool explicitLocal = false;

    // What clEnqueueNDRangeKernel takes: null when the driver chooses.
    const size_t* localSizes() const { return explicitLocal ? local : nullptr; }
};

// A kernel's work-group size as the driver answers it (CL_KERNEL_WORK_GROUP_SIZE); 1024 when it does not.
size_t kernelWorkGroupSize(cl_kernel kernel, cl_device_id device);

// Groups of a 32nd of `groupSize` along X (one when that is less than one) and the rest along Y.
void splitWorkGroup(size_t groupSize, size_t* localX, size_t* localY);

size_t roundUpToMultiple(size_t value, size_t multiple);

// A width x height range; with `explicitSize` its groups come from splitWorkGroup(groupSize).
ClRange demoRange2d(size_t width, size_t height, bool explicitSize, size_t groupSize);
// A range of `count` items; with `explicitSize` its groups are the X part of splitWorkGroup(groupSize).
ClRange demoRange1d(size_t count, bool explicitSize, size_t groupSize);
// A width x height range in groups of groupX x groupY, whatever the driver would choose.
ClRange fixedGroupRange2d(size_t width, size_t height, size_t groupX, size_t groupY);
