// GPU identification database: PCI vendor and device id to marketing name, chip codename and
// the hardware figures that no driver interface reports for every GPU.
//
// One table per vendor (NVIDIA, AMD, Intel, S3), compiled in and never changed, so a row number
// stays valid for the life of the process. Lookups scan from row 0 and the first match wins;
// each table ends with an all-zero row that device id 0 finds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace Kalidornm {

inline constexpr uint32_t PciVendorNvidia = 0x10DE;
inline constexpr uint32_t PciVendorAmd = 0x1002;
inline constexpr uint32_t PciVendorIntel = 0x8086;
inline constexpr uint32_t PciVendorS3 = 0x5333;

// What the name and codename getters give when there is no row.
inline constexpr const char* UnknownGpuName = "Unknown";

struct GpuDbRow {
    uint32_t deviceId;
    const char* codename;  // may be empty; generation tags belong to it: "Hawaii(GCN1.1)"
    const char* fullName;  // several products sharing an id are split by '|' and shown as they stand
    int32_t unifiedShaders;  // 0 for a GPU with separate pipelines, -1 unknown
    int32_t vertexPipes;     // 0 for a unified GPU, -1 unknown
    int32_t pixelPipes;      // 0 for a unified GPU, -1 unknown
    int32_t tmus;            // 0 or -1 unknown
    int32_t rops;            // 0 or -1 unknown
    int32_t tdpWatts;        // watts, 0 unknown
};

// The device table of one vendor: the classic rows (GPUs up to 2015), then rows for later GPUs, then
// the closing all-zero row. Later rows never repeat an id of the classic rows.
struct GpuDatabase {
    uint32_t vendorId;
    std::span<const GpuDbRow> rows;
    std::size_t classicRowCount;
};

// The four tables, in the order NVIDIA, AMD, Intel, S3.
std::span<const GpuDatabase> allGpuDatabases();

// The vendor's table, or null for a vendor without one.
const GpuDatabase* gpuDatabaseFor(uint32_t vendorId);

// Row of the first entry with this device id in the vendor's table; -1 without a table or match.
int32_t findGpuRow(uint32_t vendorId, uint32_t deviceId);

// The row itself, or null for -1 and for any number outside the vendor's table.
const GpuDbRow* gpuDbRow(uint32_t vendorId, int32_t row);

// Texts of a row; UnknownGpuName for row -1. The closing row gives "".
const char* gpuDbName(uint32_t vendorId, int32_t row);
const char* gpuDbCodename(uint32_t vendorId, int32_t row);

enum class GpuDbFigure { UnifiedShaders, VertexPipes, PixelPipes, Tmus, Rops, TdpWatts };

// The stored value, -1 included, and 0 for row -1. This is what the primary-GPU summary shows,
// so a summary figure can be -1.
int32_t gpuDbFigure(uint32_t vendorId, int32_t row, GpuDbFigure figure);

// Like gpuDbFigure, but anything below 1 reads 0. This is what a per-GPU record holds.
int32_t gpuDbClampedFigure(uint32_t vendorId, int32_t row, GpuDbFigure figure);

// The lazy refill behind the per-GPU shader, vertex, pixel and TDP getters: a record field of 0
// asks the database again with the record's ids, and a value above 0 is stored in the field.
// Returns the field. A field that stays 0 asks again on the next call.
int32_t refillFromGpuDb(int32_t& field, uint32_t vendorId, uint32_t deviceId, GpuDbFigure figure);

}  // namespace Kalidornm
