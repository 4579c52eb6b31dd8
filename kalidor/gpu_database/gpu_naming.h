// How a GPU gets its name from the database where one device id stands for several products.
//
// The table cannot tell an R9 290X from an R9 390X (both 0x67B0) or an HD 7970 from an R9 280X
// (0x6798): the name the driver gives settles it. The AMD reader tests the ADL adapter name,
// the primary-GPU summary tests the display device string, and the two test different texts.
#pragma once

#include <cstdint>
#include <optional>

namespace Kalidornm {

// Database facts for one AMD adapter that has a row in its vendor's table.
struct AmdAdapterDbFacts {
    int32_t row;
    const char* name;
    const char* codename;
    int32_t shaderCores;  // clamped: database values below 1 read as 0
    int32_t tmus;
    int32_t rops;
    int32_t tdpWatts;
};

// The AMD reader's rule. Without a row: nullopt, and the reader keeps the ADL adapter name
// and an empty codename. With a row of vendor 0x1002 the name follows the table of shared ids
// (adlAdapterName may be null); any other vendor takes the row's name and codename and no
// figures. Every text points into static storage.
std::optional<AmdAdapterDbFacts> amdAdapterDbFacts(uint32_t vendorId, uint32_t deviceId, uint32_t subdeviceId,
                                                   const char* adlAdapterName);

// The database name of the primary GPU: the row's name, "Unknown" without a row, and
// "ATI Radeon HD 6350" for device 0x68F9 with subdevice 0x2126. The ids are those of the
// primary display device, -1 where there is none.
const char* primaryGpuDbName(int32_t vendorId, int32_t deviceId, int32_t subdeviceId);

// What the hardware scan takes from the database for the primary GPU summary.
struct PrimaryGpuDbFacts {
    int32_t row = -1;           // gpu_db_index
    const char* name = "";      // see primaryGpuDbFacts
    const char* codename = "";  // "n.a." without a row
    int32_t unifiedShaders = 0;  // raw values: -1 reaches the summary as -1
    int32_t vertexPipes = 0;
    int32_t pixelPipes = 0;
    int32_t tmus = 0;
    int32_t rops = 0;
    int32_t tdpWatts = 0;
};

// The summary rule: with a row that gives a non-empty name, primaryGpuDbName; otherwise the
// display device string of record 0, or "" when there is no record (pass null). Then AMD 0x6798
// becomes "AMD Radeon HD 7970" if that display string contains "Radeon HD 7900", else
// "AMD Radeon R9 280X". There is no summary rule for 0x67B0 and 0x67B1, and the TDP stays the
// row's. The name may point into record0DisplayString.
PrimaryGpuDbFacts primaryGpuDbFacts(int32_t vendorId, int32_t deviceId, int32_t subdeviceId,
                                    const char* record0DisplayString);

}  // namespace Kalidornm
