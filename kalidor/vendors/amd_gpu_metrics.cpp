#include "kalidor/vendors/amd_gpu_metrics.h"

#include <algorithm>
#include <iterator>

namespace Kalidornm {

namespace {

enum class MetricsField : uint8_t { Edge, Hotspot, Memory, VrGfx, VrSoc, VrMem, Gfx, Soc, SocketPower, Fan, Throttle };

// The unit a field holds in the table, and so what turns it into the sample's unit.
enum class MetricsUnit : uint8_t { Celsius, CentiCelsius, Watts, MilliWatts, Rpm, Bits };

// Where a field sits in one layout: the kernel's gpu_metrics_v<format>_<content> structures, natural alignment,
// little-endian. Fields this reader does not use are not listed.
struct MetricsFieldRow {
    uint8_t format, content;
    MetricsField field;
    uint16_t offset;
    uint8_t bytes;  // 2, 4 or 8
    MetricsUnit unit;
};

using F = MetricsField;
using U = MetricsUnit;

// clang-format off
constexpr MetricsFieldRow kMetricsFields[] = {
    // v1_0: the driver's timestamp comes first, the temperatures after it.
    {1, 0, F::Edge,        16, 2, U::Celsius},
    {1, 0, F::Hotspot,     18, 2, U::Celsius},
    {1, 0, F::Memory,      20, 2, U::Celsius},
    {1, 0, F::VrGfx,       22, 2, U::Celsius},
    {1, 0, F::VrSoc,       24, 2, U::Celsius},
    {1, 0, F::VrMem,       26, 2, U::Celsius},
    {1, 0, F::SocketPower, 34, 2, U::Watts},
    {1, 0, F::Fan,         72, 2, U::Rpm},
    // v1_1 to v1_3 share their first 96 bytes; v1_3 adds the chip-independent throttle bits.
    {1, 1, F::Edge,         4, 2, U::Celsius},
    {1, 1, F::Hotspot,      6, 2, U::Celsius},
    {1, 1, F::Memory,       8, 2, U::Celsius},
    {1, 1, F::VrGfx,       10, 2, U::Celsius},
    {1, 1, F::VrSoc,       12, 2, U::Celsius},
    {1, 1, F::VrMem,       14, 2, U::Celsius},
    {1, 1, F::SocketPower, 22, 2, U::Watts},
    {1, 1, F::Fan,         72, 2, U::Rpm},
    {1, 2, F::Edge,         4, 2, U::Celsius},
    {1, 2, F::Hotspot,      6, 2, U::Celsius},
    {1, 2, F::Memory,       8, 2, U::Celsius},
    {1, 2, F::VrGfx,       10, 2, U::Celsius},
    {1, 2, F::VrSoc,       12, 2, U::Celsius},
    {1, 2, F::VrMem,       14, 2, U::Celsius},
    {1, 2, F::SocketPower, 22, 2, U::Watts},
    {1, 2, F::Fan,         72, 2, U::Rpm},
    {1, 3, F::Edge,         4, 2, U::Celsius},
    {1, 3, F::Hotspot,      6, 2, U::Celsius},
    {1, 3, F::Memory,       8, 2, U::Celsius},
    {1, 3, F::VrGfx,       10, 2, U::Celsius},
    {1, 3, F::VrSoc,       12, 2, U::Celsius},
    {1, 3, F::VrMem,       14, 2, U::Celsius},
    {1, 3, F::SocketPower, 22, 2, U::Watts},
    {1, 3, F::Fan,         72, 2, U::Rpm},
    {1, 3, F::Throttle,   112, 8, U::Bits},
    // v2_0 to v2_4 (APUs): temperatures in hundredths of a degree, power in milliwatts.
    {2, 0, F::Gfx,         16, 2, U::CentiCelsius},
    {2, 0, F::Soc,         18, 2, U::CentiCelsius},
    {2, 0, F::SocketPower, 44, 2, U::MilliWatts},
    {2, 1, F::Gfx,         16, 2, U::CentiCelsius},
    {2, 1, F::Soc,         18, 2, U::CentiCelsius},
    {2, 1, F::SocketPower, 44, 2, U::MilliWatts},
    {2, 2, F::Gfx,         16, 2, U::CentiCelsius},
    {2, 2, F::Soc,         18, 2, U::CentiCelsius},
    {2, 2, F::SocketPower, 44, 2, U::MilliWatts},
    {2, 2, F::Throttle,   120, 8, U::Bits},
    {2, 3, F::Gfx,         16, 2, U::CentiCelsius},
    {2, 3, F::Soc,         18, 2, U::CentiCelsius},
    {2, 3, F::SocketPower, 44, 2, U::MilliWatts},
    {2, 4, F::Gfx,         16, 2, U::CentiCelsius},
    {2, 4, F::Soc,         18, 2, U::CentiCelsius},
    {2, 4, F::SocketPower, 44, 2, U::MilliWatts},
    // v3_0 (APUs): the temperatures first, a 32-bit socket power after the activity and bandwidth fields.
    {3, 0, F::Gfx,          4, 2, U::CentiCelsius},
    {3, 0, F::Soc,          6, 2, U::CentiCelsius},
    {3, 0, F::SocketPower, 112, 4, U::MilliWatts},
};
// clang-format on
static_assert(std::size(kMetricsFields) == 52, "one row per field of each known layout");

struct ThrottleBitName {
    uint8_t bit;
    const char* name;
};

// The driver's chip-independent throttle bits (power limits, currents, temperatures, others).
constexpr ThrottleBitName kThrottleBits[] = {
    {0, "ppt0"},           {1, "ppt1"},          {2, "ppt2"},           {3, "ppt3"},
    {4, "spl"},            {5, "fppt"},          {6, "sppt"},           {7, "sppt_apu"},
    {16, "tdc_gfx"},       {17, "tdc_soc"},      {18, "tdc_mem"},       {19, "tdc_vdd"},
    {20, "tdc_cvip"},      {21, "edc_cpu"},      {22, "edc_gfx"},       {23, "apcc"},
    {32, "temp_gpu"},      {33, "temp_core"},    {34, "temp_mem"},      {35, "temp_edge"},
    {36, "temp_hotspot"},  {37, "temp_soc"},     {38, "temp_vr_gfx"},   {39, "temp_vr_soc"},
    {40, "temp_vr_mem0"},  {41, "temp_vr_mem1"}, {42, "temp_liquid0"},  {43, "temp_liquid1"},
    {44, "vrhot0"},        {45, "vrhot1"},       {46, "prochot_cpu"},   {47, "prochot_gfx"},
    {56, "ppm"},           {57, "fit"},
};
static_assert(std::size(kThrottleBits) == 34, "one row per named throttle bit");

constexpr size_t kHeaderBytes = 4;

uint64_t littleEndian(const uint8_t* bytes, size_t count) {
    uint64_t value = 0;
    for (size_t i = count; i-- > 0;) value = (value << 8) | bytes[i];
    return value;
}

bool layoutKnown(uint8_t format, uint8_t content) {
    return std::any_of(std::begin(kMetricsFields), std::end(kMetricsFields),
                       [&](const MetricsFieldRow& row) { return row.format == format && row.content == content; });
}

std::optional<float>* floatSlot(AmdGpuMetrics& m, MetricsField field) {
    switch (field) {
        case F::Edge: return &m.edgeC;
        case F::Hotspot: return &m.hotspotC;
        case F::Memory: return &m.memoryC;
        case F::VrGfx: return &m.vrGfxC;
        case F::VrSoc: return &m.vrSocC;
        case F::VrMem: return &m.vrMemC;
        case F::Gfx: return &m.gfxC;
        case F::Soc: return &m.socC;
        case F::SocketPower: return &m.socketPowerWatts;
        case F::Fan: return &m.fanRpm;
        case F::Throttle: return nullptr;
    }
    return nullptr;
}

float inSampleUnit(uint64_t raw, MetricsUnit unit) {
    switch (unit) {
        case U::CentiCelsius: return float(raw) / 100.0f;
        case U::MilliWatts: return float(raw) / 1000.0f;
        default: return float(raw);
    }
}

}  // namespace

std::optional<AmdGpuMetrics> parseAmdGpuMetrics(const uint8_t* data, size_t size) {
    if (!data || size < kHeaderBytes) return std::nullopt;
    const size_t structureSize = size_t(littleEndian(data, 2));
    AmdGpuMetrics metrics;
    metrics.formatRevision = data[2];
    metrics.contentRevision = data[3];
    if (structureSize < kHeaderBytes || !layoutKnown(metrics.formatRevision, metrics.contentRevision))
        return std::nullopt;
    // The table ends where the header says or where the bytes do, whichever comes first.
    const size_t end = std::min(size, structureSize);
    for (const MetricsFieldRow& row : kMetricsFields) {
        if (row.format != metrics.formatRevision || row.content != metrics.contentRevision) continue;
        if (size_t(row.offset) + row.bytes > end) continue;
        const uint64_t raw = littleEndian(data + row.offset, row.bytes);
        const uint64_t notGiven = row.bytes == 8 ? ~uint64_t(0) : (uint64_t(1) << (8 * row.bytes)) - 1;
        if (raw == notGiven) continue;
        if (row.field == F::Throttle)
            metrics.throttleStatus = raw;
        else if (std::optional<float>* slot = floatSlot(metrics, row.field))
            *slot = inSampleUnit(raw, row.unit);
    }
    return metrics;
}

std::vector<std::string> amdThrottleReasonNames(uint64_t status) {
    std::vector<std::string> names;
    for (const ThrottleBitName& bit : kThrottleBits)
        if (status & (uint64_t(1) << bit.bit)) names.emplace_back(bit.name);
    return names;
}

}  // namespace Kalidornm
