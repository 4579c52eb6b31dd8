#include "demos/opencl/cl_work_sizes.h"

#include <algorithm>

#include "compute/opencl_entry_points.h"

namespace {

constexpr size_t kUnansweredGroupSize = 1024;

}  // namespace

size_t kernelWorkGroupSize(cl_kernel kernel, cl_device_id device) {
    size_t size = kUnansweredGroupSize;
    if (compute::clGetKernelWorkGroupInfo(kernel, device, CL_KERNEL_WORK_GROUP_SIZE, sizeof size, &size, nullptr) !=
        CL_SUCCESS)
        size = kUnansweredGroupSize;
    return size;
}

void splitWorkGroup(size_t groupSize, size_t* localX, size_t* localY) {
    // An answer from 2 to 31 would leave no work item along X; one keeps the group whole along Y.
    const size_t x = groupSize > 1 ? std::max<size_t>(groupSize >> 5, 1) : std::max<size_t>(groupSize, 1);
    *localX = x;
    *localY = std::max<size_t>(groupSize / x, 1);
}

size_t roundUpToMultiple(size_t value, size_t multiple) {
    if (multiple <= 1) return value;
    return (value + multiple - 1) / multiple * multiple;
}

ClRange demoRange2d(size_t width, size_t height, bool explicitSize, size_t groupSize) {
    if (!explicitSize) {
        ClRange range;
        range.dimensions = 2;
        range.global[0] = width;
        range.global[1] = height;
        return range;
    }
    size_t localX = 1, localY = 1;
    splitWorkGroup(groupSize, &localX, &localY);
    return fixedGroupRange2d(width, height, localX, localY);
}

ClRange demoRange1d(size_t count, bool explicitSize, size_t groupSize) {
    ClRange range;
    range.global[0] = count;
    if (explicitSize) {
        size_t localY = 1;
        splitWorkGroup(groupSize, &range.local[0], &localY);
        range.global[0] = roundUpToMultiple(count, range.local[0]);
        range.explicitLocal = true;
    }
    return range;
}

ClRange fixedGroupRange2d(size_t width, size_t height, size_t groupX, size_t groupY) {
    ClRange range;
    range.dimensions = 2;
    range.local[0] = std::max<size_t>(groupX, 1);
    range.local[1] = std::max<size_t>(groupY, 1);
    range.global[0] = roundUpToMultiple(width, range.local[0]);
    range.global[1] = roundUpToMultiple(height, range.local[1]);
    range.explicitLocal = true;
    return range;
}
