#include "compute/cuda_device_fields.h"

#include <cinttypes>
#include <cstdio>
#include <iterator>

namespace compute {
namespace {

using R = CudaDeviceRecord;
using S = CudaSource;

constexpr CudaDeviceField kFields[] = {
    {.source = S::Name, .text = &R::name, .label = "Device name", .xmlName = "name", .jsonName = "name"},
    {.source = S::Attribute, .attribute = kCuAttributeComputeCapabilityMajor, .value = &R::computeMajor,
     .label = "Compute Capability", .xmlName = "compute_capability", .jsonName = "compute_capability"},
    {.source = S::Attribute, .attribute = kCuAttributeComputeCapabilityMinor, .value = &R::computeMinor, .join = "."},
    {.source = S::TotalMemory, .bytes = &R::totalMemory, .label = "Total Memory", .divisor = 1 << 20, .unit = " MB",
     .xmlName = "total_memory_mb", .jsonName = "total_memory_bytes"},
    {.source = S::Attribute, .attribute = kCuAttributeClockRate, .value = &R::clockRate, .label = "Shader Clock Rate",
     .divisor = 1000, .unit = " MHz", .xmlName = "shader_clock_mhz", .jsonName = "clock_rate_khz"},
    {.source = S::Attribute, .attribute = kCuAttributeMultiprocessorCount, .value = &R::multiprocessorCount,
     .label = "Multiprocessors", .xmlName = "multiprocessors", .jsonName = "multiprocessors"},
    {.source = S::Attribute, .attribute = kCuAttributeWarpSize, .value = &R::warpSize, .label = "Warp Size",
     .xmlName = "warp_size", .jsonName = "warp_size"},
    {.source = S::Attribute, .attribute = kCuAttributeMaxThreadsPerBlock, .value = &R::maxThreadsPerBlock,
     .label = "Max Threads Per Block", .xmlName = "max_threads_per_block", .jsonName = "max_threads_per_block"},
    {.source = S::Attribute, .attribute = kCuAttributeMaxBlockDimX, .values = &R::maxThreadsDim, .index = 0,
     .label = "Threads Per Block", .xmlName = "max_threads_per_block_x", .jsonName = "max_threads_dim"},
    {.source = S::Attribute, .attribute = kCuAttributeMaxBlockDimY, .values = &R::maxThreadsDim, .index = 1,
     .join = " x ", .xmlName = "max_threads_per_block_y"},
    {.source = S::Attribute, .attribute = kCuAttributeMaxBlockDimZ, .values = &R::maxThreadsDim, .index = 2,
     .join = " x ", .xmlName = "max_threads_per_block_z"},
    {.source = S::Attribute, .attribute = kCuAttributeMaxGridDimX, .values = &R::maxGridSize, .index = 0,
     .label = "Grid Size", .xmlName = "grid_size_x", .jsonName = "max_grid_size"},
    {.source = S::Attribute, .attribute = kCuAttributeMaxGridDimY, .values = &R::maxGridSize, .index = 1,
     .join = " x ", .xmlName = "grid_size_y"},
    {.source = S::Attribute, .attribute = kCuAttributeMaxGridDimZ, .values = &R::maxGridSize, .index = 2,
     .join = " x ", .xmlName = "grid_size_z"},
    {.source = S::Attribute, .attribute = kCuAttributeMaxRegistersPerBlock, .value = &R::regsPerBlock,
     .label = "Registers Per Block", .xmlName = "registers_per_block", .jsonName = "registers_per_block"},
    {.source = S::Attribute, .attribute = kCuAttributeTextureAlignment, .value = &R::textureAlign,
     .label = "Texture Alignment", .unit = " byte", .xmlName = "texture_alignment_bytes",
     .jsonName = "texture_alignment_bytes"},
    {.source = S::Attribute, .attribute = kCuAttributeTotalConstantMemory, .value = &R::totalConstantMemory,
     .label = "Total Constant Memory", .divisor = 1024, .unit = " Kb", .xmlName = "total_constant_memory_kb",
     .jsonName = "total_constant_memory_bytes"},
    {.source = S::Attribute, .attribute = kCuAttributeMaxSharedMemoryPerBlock, .value = &R::sharedMemPerBlock,
     .label = "Shared Memory Per Block", .divisor = 1024, .unit = " Kb", .jsonName = "shared_memory_per_block_bytes",
     .outputs = kCudaJsonReport},
    {.source = S::Attribute, .attribute = kCuAttributeMaxPitch, .value = &R::memPitch, .label = "Memory Pitch",
     .unit = " byte", .jsonName = "memory_pitch_bytes", .outputs = kCudaJsonReport},
};
static_assert(std::size(kFields) == 19, "every shown field of the record, one row per value");

// Exactly one storage that fits the source, a divisor to divide by, and a name for every output shown in.
constexpr bool rowIsComplete(const CudaDeviceField& f) {
    const int stores = (f.text != nullptr) + (f.bytes != nullptr) + (f.value != nullptr) + (f.values != nullptr);
    if (stores != 1 || f.divisor <= 0 || f.index < 0 || f.index > 2) return false;
    if ((f.source == CudaSource::Name) != (f.text != nullptr)) return false;
    if ((f.source == CudaSource::TotalMemory) != (f.bytes != nullptr)) return false;
    if (f.continuesLine()) return true;
    return (!f.shows(kCudaTextXmlReport) || f.xmlName) && (!f.shows(kCudaJsonReport) || f.jsonName);
}
constexpr bool allRowsComplete() {
    if (kFields[0].continuesLine()) return false;
    for (const CudaDeviceField& f : kFields)
        if (!rowIsComplete(f)) return false;
    return true;
}
static_assert(allRowsComplete());

}  // namespace

std::span<const CudaDeviceField> cudaDeviceFields() { return kFields; }

int64_t cudaFieldNumber(const CudaDeviceField& field, const CudaDeviceRecord& device) {
    if (field.bytes) return int64_t(device.*field.bytes);
    if (field.value) return device.*field.value;
    if (field.values) return (device.*field.values)[field.index];
    return 0;
}

int32_t* cudaFieldSlot(const CudaDeviceField& field, CudaDeviceRecord& device) {
    if (field.value) return &(device.*field.value);
    if (field.values) return &(device.*field.values)[field.index];
    return nullptr;
}

std::string cudaFieldText(const CudaDeviceField& field, const CudaDeviceRecord& device) {
    if (field.text) return device.*field.text;
    char text[24];
    std::snprintf(text, sizeof text, "%" PRId64, cudaFieldNumber(field, device) / field.divisor);
    return text;
}

}  // namespace compute
