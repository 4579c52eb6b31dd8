#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "compute/cuda_driver_api.h"
#include "compute/cuda_records.h"

// One row per CUDA value: which driver call fills it, where the record keeps it, and how the text, XML and
// JSON reports (and anything else that lists the fields) show and name it.
namespace compute {

enum class CudaSource : uint8_t {
    Name,         // cuDeviceGetName
    TotalMemory,  // cuDeviceTotalMem
    Attribute,    // cuDeviceGetAttribute, replacing the property block's word where the driver answers
};

enum CudaOutput : uint8_t {
    kCudaTextXmlReport = 1,
    kCudaJsonReport = 2,
    kCudaEverywhere = kCudaTextXmlReport | kCudaJsonReport,
};

// A row without a label continues the line of the row before it (a block's three dimensions, the minor
// half of the compute capability): its value joins that line behind `join`, and the JSON report makes the
// values of one line an array. A continuing row without an XML name joins the attribute before it too.
struct CudaDeviceField {
    CudaSource source;
    CUdevice_attribute attribute = {};
    // Where the record keeps the value: exactly one of them.
    std::string CudaDeviceRecord::*text = nullptr;
    uint64_t CudaDeviceRecord::*bytes = nullptr;
    int32_t CudaDeviceRecord::*value = nullptr;
    int32_t (CudaDeviceRecord::*values)[3] = nullptr;
    int index = 0;  // into `values`

    const char* label = nullptr;
    const char* join = "";
    int64_t divisor = 1;  // for the lines: kHz to MHz, bytes to KB or MB; JSON keeps the stored value
    const char* unit = "";
    const char* xmlName = nullptr;
    const char* jsonName = nullptr;  // on the first row of a line
    uint8_t outputs = kCudaEverywhere;

    constexpr bool shows(CudaOutput output) const { return (outputs & output) != 0; }
    constexpr bool continuesLine() const { return label == nullptr; }
};

std::span<const CudaDeviceField> cudaDeviceFields();

// The stored number; 0 for the name.
int64_t cudaFieldNumber(const CudaDeviceField& field, const CudaDeviceRecord& device);
// Where an attribute row stores what the driver answers.
int32_t* cudaFieldSlot(const CudaDeviceField& field, CudaDeviceRecord& device);
// The value as the text report prints it (divided, without the unit).
std::string cudaFieldText(const CudaDeviceField& field, const CudaDeviceRecord& device);

}  // namespace compute
