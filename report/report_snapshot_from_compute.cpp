#include <algorithm>

#include "compute/cuda_discovery.h"
#include "compute/opencl_discovery.h"
#include "report/report_snapshot_from_facade.h"
#include "vulkan/vulkan_discovery.h"

namespace report {

void fillComputeSnapshot(ReportSnapshot& s) {
    s.clPlatforms = compute::clPlatforms();
    s.vulkan = vulkan::vulkanInfo();
    const std::vector<compute::CudaDeviceRecord>& records = compute::cudaDevices();
    const size_t cudaCount = size_t(std::max(compute::getCudaDeviceCount(), 0));
    s.cudaDevices.assign(records.begin(), records.begin() + std::min(cudaCount, records.size()));
}

}  // namespace report
