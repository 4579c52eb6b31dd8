#include "compute/cuda_discovery.h"
#include "compute/opencl_discovery.h"
#include "report_snapshot_from_facade.h"

namespace report {

namespace {

ReportClDevice deviceOf(const compute::ClDeviceRecord& r) {
    ReportClDevice d;
    d.name = r.name, d.vendor = r.vendor, d.driverVersion = r.driverVersion, d.profile = r.profile,
    d.version = r.version;
    d.type = r.type;
    d.vendorId = r.vendorId;
    d.maxComputeUnits = r.maxComputeUnits;
    d.maxClockMhz = r.maxClockMhz;
    d.nvComputeCapabilityMajor = r.nvComputeCapabilityMajor;
    d.nvComputeCapabilityMinor = r.nvComputeCapabilityMinor;
    d.nvRegistersPerBlock = r.nvRegistersPerBlock;
    d.nvWarpSize = r.nvWarpSize;
    d.nvGpuOverlap = r.nvGpuOverlap;
    d.nvKernelExecTimeout = r.nvKernelExecTimeout;
    d.nvIntegratedMemory = r.nvIntegratedMemory;
    d.addressBits = r.addressBits;
    d.maxMemAllocSize = r.maxMemAllocSize;
    d.globalMemSize = r.globalMemSize;
    d.maxParameterSize = r.maxParameterSize;
    d.globalMemCachelineSize = r.globalMemCachelineSize;
    d.globalMemCacheSize = r.globalMemCacheSize;
    d.errorCorrectionSupport = r.errorCorrectionSupport;
    d.localMemType = r.localMemType;
    d.localMemSize = r.localMemSize;
    d.maxConstantBufferSize = r.maxConstantBufferSize;
    d.maxWorkItemDimensions = r.maxWorkItemDimensions;
    for (int i = 0; i < 3; ++i) d.maxWorkItemSizes[i] = r.maxWorkItemSizes[i];
    d.maxWorkGroupSize = r.maxWorkGroupSize;
    d.nativeKernels = r.nativeKernels;
    d.imageSupport = r.imageSupport;
    d.maxReadImageArgs = r.maxReadImageArgs;
    d.maxWriteImageArgs = r.maxWriteImageArgs;
    d.image2dMaxWidth = r.image2dMaxWidth;
    d.image2dMaxHeight = r.image2dMaxHeight;
    d.image3dMaxWidth = r.image3dMaxWidth;
    d.image3dMaxHeight = r.image3dMaxHeight;
    d.image3dMaxDepth = r.image3dMaxDepth;
    d.maxSamplers = r.maxSamplers;
    d.preferredVectorWidthChar = r.preferredVectorWidthChar;
    d.preferredVectorWidthShort = r.preferredVectorWidthShort;
    d.preferredVectorWidthInt = r.preferredVectorWidthInt;
    d.preferredVectorWidthLong = r.preferredVectorWidthLong;
    d.preferredVectorWidthFloat = r.preferredVectorWidthFloat;
    d.preferredVectorWidthDouble = r.preferredVectorWidthDouble;
    d.extensions = r.extensions;
    return d;
}

ReportCudaDevice cudaOf(const compute::CudaDeviceRecord& r) {
    ReportCudaDevice d;
    d.name = r.name;
    d.computeMajor = r.computeMajor, d.computeMinor = r.computeMinor;
    d.totalMemoryBytes = r.totalMemory;
    d.clockRateKhz = r.clockRate;
    d.multiprocessorCount = r.multiprocessorCount;
    d.warpSize = r.warpSize;
    d.maxThreadsPerBlock = r.maxThreadsPerBlock;
    for (int i = 0; i < 3; ++i) d.maxThreadsDim[i] = r.maxThreadsDim[i], d.maxGridSize[i] = r.maxGridSize[i];
    d.registersPerBlock = r.regsPerBlock;
    d.textureAlignBytes = r.textureAlign;
    d.totalConstantMemoryBytes = r.totalConstantMemory;
    d.sharedMemPerBlockBytes = r.sharedMemPerBlock;
    d.memPitch = r.memPitch;
    return d;
}

}  // namespace

void fillComputeSnapshot(ReportSnapshot& s) {
    s.clPlatforms.clear();
    for (const compute::ClPlatformRecord& p : compute::clPlatforms()) {
        ReportClPlatform platform;
        platform.name = p.name, platform.vendor = p.vendor, platform.version = p.version, platform.profile = p.profile;
        platform.extensions = p.extensions;
        for (const compute::ClDeviceRecord& d : p.devices) platform.devices.push_back(deviceOf(d));
        s.clPlatforms.push_back(std::move(platform));
    }
    s.cudaDevices.clear();
    const int32_t cudaCount = compute::getCudaDeviceCount();
    const std::vector<compute::CudaDeviceRecord>& records = compute::cudaDevices();
    for (int32_t i = 0; i < cudaCount && size_t(i) < records.size(); ++i) s.cudaDevices.push_back(cudaOf(records[i]));
}

}  // namespace report
