#include "compute/opencl_device_fields.h"

#include <array>
#include <iterator>

namespace compute {
namespace {

using R = ClDeviceRecord;
using Q = ClQuery;
using S = ClShow;
using J = ClJson;

constexpr ClDeviceField kDeviceFields[] = {
    {.query = CL_DEVICE_NAME, .kind = Q::Text, .text = &R::name, .label = "CL_DEVICE_NAME", .show = S::Text,
     .jsonName = "name", .json = J::Text},
    {.query = CL_DEVICE_VENDOR, .kind = Q::Text, .text = &R::vendor, .label = "CL_DEVICE_VENDOR", .show = S::Text,
     .jsonName = "vendor", .json = J::Text},
    {.query = CL_DRIVER_VERSION, .kind = Q::Text, .text = &R::driverVersion, .label = "CL_DRIVER_VERSION",
     .show = S::Text, .jsonName = "driver_version", .json = J::Text},
    {.query = CL_DEVICE_PROFILE, .kind = Q::Text, .text = &R::profile, .label = "CL_DEVICE_PROFILE", .show = S::Text,
     .jsonName = "profile", .json = J::Text},
    {.query = CL_DEVICE_VERSION, .kind = Q::Text, .text = &R::version, .label = "CL_DEVICE_VERSION", .show = S::Text,
     .jsonName = "version", .json = J::Text},
    {.query = CL_DEVICE_TYPE, .kind = Q::Ulong, .number = &R::type, .label = "CL_DEVICE_TYPE", .show = S::TypeWords,
     .jsonName = "type"},
    {.query = CL_DEVICE_VENDOR_ID, .kind = Q::Uint, .number = &R::vendorId, .label = "CL_DEVICE_VENDOR_ID",
     .show = S::Hex4, .jsonName = "vendor_id"},
    {.query = CL_DEVICE_MAX_COMPUTE_UNITS, .kind = Q::Uint, .number = &R::maxComputeUnits,
     .label = "CL_DEVICE_MAX_COMPUTE_UNITS", .jsonName = "max_compute_units"},
    {.query = CL_DEVICE_MAX_CLOCK_FREQUENCY, .kind = Q::Uint, .number = &R::maxClockMhz,
     .label = "CL_DEVICE_MAX_CLOCK_FREQUENCY", .unit = "MHz", .xmlName = "CL_DEVICE_MAX_CLOCK_FREQUENCY_MHZ",
     .jsonName = "max_clock_frequency_mhz"},
    // The reports print the count last and the names after every attribute: XML holds them as child elements.
    {.query = CL_DEVICE_EXTENSIONS, .kind = Q::ExtensionList, .label = "CL_DEVICE_EXTENSIONS",
     .show = S::ExtensionCount, .jsonName = "extensions", .json = J::Extensions},
    {.query = kClNvComputeCapabilityMajor, .kind = Q::Uint, .number = &R::nvComputeCapabilityMajor,
     .label = "CL_NV_DEVICE_COMPUTE_CAPABILITY_MAJOR", .jsonName = "nv_compute_capability_major",
     .condition = ClCondition::NvAttributeQuery},
    {.query = kClNvComputeCapabilityMinor, .kind = Q::Uint, .number = &R::nvComputeCapabilityMinor,
     .label = "CL_NV_DEVICE_COMPUTE_CAPABILITY_MINOR", .jsonName = "nv_compute_capability_minor",
     .condition = ClCondition::NvAttributeQuery},
    {.query = kClNvRegistersPerBlock, .kind = Q::Uint, .number = &R::nvRegistersPerBlock,
     .label = "CL_NV_DEVICE_REGISTERS_PER_BLOCK", .jsonName = "nv_registers_per_block",
     .condition = ClCondition::NvAttributeQuery},
    {.query = kClNvWarpSize, .kind = Q::Uint, .number = &R::nvWarpSize, .label = "CL_NV_DEVICE_WARP_SIZE",
     .jsonName = "nv_warp_size", .condition = ClCondition::NvAttributeQuery},
    {.query = kClNvGpuOverlap, .kind = Q::Uint, .number = &R::nvGpuOverlap, .label = "CL_NV_DEVICE_GPU_OVERLAP",
     .jsonName = "nv_gpu_overlap", .condition = ClCondition::NvAttributeQuery},
    {.query = kClNvKernelExecTimeout, .kind = Q::Uint, .number = &R::nvKernelExecTimeout,
     .label = "CL_NV_DEVICE_KERNEL_EXEC_TIMEOUT", .jsonName = "nv_kernel_exec_timeout",
     .condition = ClCondition::NvAttributeQuery},
    {.query = kClNvIntegratedMemory, .kind = Q::Uint, .number = &R::nvIntegratedMemory,
     .label = "CL_NV_DEVICE_INTEGRATED_MEMORY", .jsonName = "nv_integrated_memory",
     .condition = ClCondition::NvAttributeQuery},
    {.query = CL_DEVICE_ADDRESS_BITS, .kind = Q::Uint, .number = &R::addressBits, .label = "CL_DEVICE_ADDRESS_BITS",
     .jsonName = "address_bits"},
    {.query = CL_DEVICE_MAX_MEM_ALLOC_SIZE, .kind = Q::Ulong, .number = &R::maxMemAllocSize,
     .label = "CL_DEVICE_MAX_MEM_ALLOC_SIZE", .shift = 10, .unit = "KB", .xmlName = "CL_DEVICE_MAX_MEM_ALLOC_SIZE_KB",
     .jsonName = "max_mem_alloc_size_bytes"},
    {.query = CL_DEVICE_GLOBAL_MEM_SIZE, .kind = Q::Ulong, .number = &R::globalMemSize,
     .label = "CL_DEVICE_GLOBAL_MEM_SIZE", .shift = 20, .unit = "MB", .xmlName = "CL_DEVICE_GLOBAL_MEM_SIZE_MB",
     .jsonName = "global_mem_size_bytes"},
    {.query = CL_DEVICE_MAX_PARAMETER_SIZE, .kind = Q::Size, .number = &R::maxParameterSize,
     .label = "CL_DEVICE_MAX_PARAMETER_SIZE", .jsonName = "max_parameter_size_bytes"},
    {.query = CL_DEVICE_GLOBAL_MEM_CACHELINE_SIZE, .kind = Q::Uint, .number = &R::globalMemCachelineSize,
     .label = "CL_DEVICE_GLOBAL_MEM_CACHELINE_SIZE", .unit = " Bytes", .jsonName = "global_mem_cacheline_size_bytes"},
    {.query = CL_DEVICE_GLOBAL_MEM_CACHE_SIZE, .kind = Q::Ulong, .number = &R::globalMemCacheSize,
     .label = "CL_DEVICE_GLOBAL_MEM_CACHE_SIZE", .shift = 10, .unit = "KB", .detailUnit = " KB",
     .jsonName = "global_mem_cache_size_bytes"},
    {.query = CL_DEVICE_ERROR_CORRECTION_SUPPORT, .kind = Q::Uint, .number = &R::errorCorrectionSupport,
     .label = "CL_DEVICE_ERROR_CORRECTION_SUPPORT", .show = S::YesNo, .jsonName = "error_correction_support",
     .json = J::Bool},
    {.query = CL_DEVICE_LOCAL_MEM_TYPE, .kind = Q::LocalMemType, .text = &R::localMemType,
     .label = "CL_DEVICE_LOCAL_MEM_TYPE", .show = S::Text, .jsonName = "local_mem_type", .json = J::Text},
    {.query = CL_DEVICE_LOCAL_MEM_SIZE, .kind = Q::Ulong, .number = &R::localMemSize,
     .label = "CL_DEVICE_LOCAL_MEM_SIZE", .shift = 10, .unit = "KB", .xmlName = "CL_DEVICE_LOCAL_MEM_SIZE_KB",
     .jsonName = "local_mem_size_bytes"},
    {.query = CL_DEVICE_MAX_CONSTANT_BUFFER_SIZE, .kind = Q::Ulong, .number = &R::maxConstantBufferSize,
     .label = "CL_DEVICE_MAX_CONSTANT_BUFFER_SIZE", .shift = 10, .unit = "KB",
     .xmlName = "CL_DEVICE_MAX_CONSTANT_BUFFER_SIZE_KB", .jsonName = "max_constant_buffer_size_bytes"},
    {.query = CL_DEVICE_MAX_WORK_ITEM_DIMENSIONS, .kind = Q::Uint, .number = &R::maxWorkItemDimensions,
     .label = "CL_DEVICE_MAX_WORK_ITEM_DIMENSIONS", .jsonName = "max_work_item_dimensions"},
    {.query = CL_DEVICE_MAX_WORK_ITEM_SIZES, .kind = Q::SizeTriple, .triple = &R::maxWorkItemSizes,
     .label = "CL_DEVICE_MAX_WORK_ITEM_SIZES", .show = S::Triple, .jsonName = "max_work_item_sizes",
     .json = J::Numbers},
    {.query = CL_DEVICE_MAX_WORK_GROUP_SIZE, .kind = Q::Size, .number = &R::maxWorkGroupSize,
     .label = "CL_DEVICE_MAX_WORK_GROUP_SIZE", .jsonName = "max_work_group_size"},
    {.query = CL_DEVICE_EXECUTION_CAPABILITIES, .kind = Q::NativeKernel, .number = &R::nativeKernels,
     .label = "CL_EXEC_NATIVE_KERNEL", .show = S::YesNo, .xmlShowsNumber = true,
     .detailLabel = "Execute native functions", .jsonName = "native_kernels", .json = J::Bool},
    {.query = CL_DEVICE_QUEUE_PROPERTIES, .kind = Q::Ulong, .number = &R::queueProperties,
     .label = "CL_DEVICE_QUEUE_PROPERTIES", .show = S::QueueFlags, .outputs = kClDetailList},
    {.query = CL_DEVICE_IMAGE_SUPPORT, .kind = Q::Uint, .number = &R::imageSupport, .label = "CL_DEVICE_IMAGE_SUPPORT",
     .show = S::YesNo, .jsonName = "image_support", .json = J::Bool},
    {.query = CL_DEVICE_MAX_READ_IMAGE_ARGS, .kind = Q::Uint, .number = &R::maxReadImageArgs,
     .label = "CL_DEVICE_MAX_READ_IMAGE_ARGS", .jsonName = "max_read_image_args"},
    {.query = CL_DEVICE_MAX_WRITE_IMAGE_ARGS, .kind = Q::Uint, .number = &R::maxWriteImageArgs,
     .label = "CL_DEVICE_MAX_WRITE_IMAGE_ARGS", .jsonName = "max_write_image_args"},
    {.query = CL_DEVICE_IMAGE2D_MAX_WIDTH, .kind = Q::Size, .number = &R::image2dMaxWidth,
     .label = "CL_DEVICE_IMAGE2D_MAX_WIDTH", .jsonName = "image2d_max_width"},
    {.query = CL_DEVICE_IMAGE2D_MAX_HEIGHT, .kind = Q::Size, .number = &R::image2dMaxHeight,
     .label = "CL_DEVICE_IMAGE2D_MAX_HEIGHT", .jsonName = "image2d_max_height"},
    {.query = CL_DEVICE_IMAGE3D_MAX_WIDTH, .kind = Q::Size, .number = &R::image3dMaxWidth,
     .label = "CL_DEVICE_IMAGE3D_MAX_WIDTH", .jsonName = "image3d_max_width"},
    {.query = CL_DEVICE_IMAGE3D_MAX_HEIGHT, .kind = Q::Size, .number = &R::image3dMaxHeight,
     .label = "CL_DEVICE_IMAGE3D_MAX_HEIGHT", .jsonName = "image3d_max_height"},
    {.query = CL_DEVICE_IMAGE3D_MAX_DEPTH, .kind = Q::Size, .number = &R::image3dMaxDepth,
     .label = "CL_DEVICE_IMAGE3D_MAX_DEPTH", .jsonName = "image3d_max_depth"},
    {.query = CL_DEVICE_MAX_SAMPLERS, .kind = Q::Uint, .number = &R::maxSamplers, .label = "CL_DEVICE_MAX_SAMPLERS",
     .jsonName = "max_samplers"},
    {.query = CL_DEVICE_PREFERRED_VECTOR_WIDTH_CHAR, .kind = Q::Uint, .number = &R::preferredVectorWidthChar,
     .label = "CL_DEVICE_PREFERRED_VECTOR_WIDTH_CHAR", .jsonName = "char", .jsonGroup = "preferred_vector_width"},
    {.query = CL_DEVICE_PREFERRED_VECTOR_WIDTH_SHORT, .kind = Q::Uint, .number = &R::preferredVectorWidthShort,
     .label = "CL_DEVICE_PREFERRED_VECTOR_WIDTH_SHORT", .jsonName = "short", .jsonGroup = "preferred_vector_width"},
    {.query = CL_DEVICE_PREFERRED_VECTOR_WIDTH_INT, .kind = Q::Uint, .number = &R::preferredVectorWidthInt,
     .label = "CL_DEVICE_PREFERRED_VECTOR_WIDTH_INT", .jsonName = "int", .jsonGroup = "preferred_vector_width"},
    {.query = CL_DEVICE_PREFERRED_VECTOR_WIDTH_LONG, .kind = Q::Uint, .number = &R::preferredVectorWidthLong,
     .label = "CL_DEVICE_PREFERRED_VECTOR_WIDTH_LONG", .jsonName = "long", .jsonGroup = "preferred_vector_width"},
    {.query = CL_DEVICE_PREFERRED_VECTOR_WIDTH_FLOAT, .kind = Q::Uint, .number = &R::preferredVectorWidthFloat,
     .label = "CL_DEVICE_PREFERRED_VECTOR_WIDTH_FLOAT", .jsonName = "float", .jsonGroup = "preferred_vector_width"},
    {.query = CL_DEVICE_PREFERRED_VECTOR_WIDTH_DOUBLE, .kind = Q::Uint, .number = &R::preferredVectorWidthDouble,
     .label = "CL_DEVICE_PREFERRED_VECTOR_WIDTH_DOUBLE", .jsonName = "double", .jsonGroup = "preferred_vector_width"},
};
static_assert(std::size(kDeviceFields) == 47, "one row per device field of the record");

// Exactly one storage per row, none for the extension list, and a name for every output the row shows in.
constexpr bool rowIsComplete(const ClDeviceField& f) {
    const int stores = (f.number != nullptr) + (f.text != nullptr) + (f.triple != nullptr);
    if (stores != (f.kind == ClQuery::ExtensionList ? 0 : 1)) return false;
    if ((f.kind == ClQuery::Text || f.kind == ClQuery::LocalMemType) != (f.text != nullptr)) return false;
    if ((f.kind == ClQuery::SizeTriple) != (f.triple != nullptr)) return false;
    return f.label && (!f.shows(kClJsonReport) || f.jsonName);
}
constexpr bool allRowsComplete() {
    for (const ClDeviceField& f : kDeviceFields)
        if (!rowIsComplete(f)) return false;
    return true;
}
static_assert(allRowsComplete());

constexpr auto kReportOrder = [] {
    std::array<const ClDeviceField*, std::size(kDeviceFields)> order{};
    size_t next = 0;
    for (const ClDeviceField& f : kDeviceFields)
        if (f.kind != ClQuery::ExtensionList) order[next++] = &f;
    for (const ClDeviceField& f : kDeviceFields)
        if (f.kind == ClQuery::ExtensionList) order[next++] = &f;
    return order;
}();

constexpr ClPlatformField kPlatformFields[] = {
    {CL_PLATFORM_NAME, Q::Text, &ClPlatformRecord::name, "CL_PLATFORM_NAME", "name"},
    {CL_PLATFORM_VENDOR, Q::Text, &ClPlatformRecord::vendor, "CL_PLATFORM_VENDOR", "vendor"},
    {CL_PLATFORM_VERSION, Q::Text, &ClPlatformRecord::version, "CL_PLATFORM_VERSION", "version"},
    {CL_PLATFORM_PROFILE, Q::Text, &ClPlatformRecord::profile, "CL_PLATFORM_PROFILE", "profile"},
    {CL_PLATFORM_EXTENSIONS, Q::ExtensionList, nullptr, "CL_PLATFORM_EXTENSIONS", "extensions", kClJsonReport},
};
static_assert(std::size(kPlatformFields) == 5, "four texts and the extension list");

}  // namespace

std::span<const ClDeviceField> clDeviceFields() { return kDeviceFields; }
std::span<const ClDeviceField* const> clReportFieldOrder() { return kReportOrder; }
std::span<const ClPlatformField> clPlatformFields() { return kPlatformFields; }

const ClDeviceField* findClDeviceField(cl_device_info query) {
    for (const ClDeviceField& f : kDeviceFields)
        if (f.query == query) return &f;
    return nullptr;
}

}  // namespace compute
