#include "kalidor/gpu_database/gpu_naming.h"

#include <cstring>
#include <iterator>

#include "kalidor/gpu_database/gpu_database.h"

namespace Kalidornm {
namespace {

// One board of the HD 5450's device id is sold as an HD 6350; only its subdevice tells.
constexpr uint32_t Hd6350DeviceId = 0x68F9;
constexpr uint32_t Hd6350SubdeviceId = 0x2126;
constexpr const char* Hd6350Name = "ATI Radeon HD 6350";

constexpr uint32_t AnySubdevice = 0xFFFFFFFF;
constexpr int32_t RowTdp = -1;

// The AMD reader's names for shared device ids, first fitting rule wins. A null text means
// "any adapter name", a null name or codename and RowTdp mean "the row's".
struct AmdNamingRule {
    uint32_t deviceId;
    uint32_t subdeviceId;
    const char* adlNameContains;
    const char* name;
    const char* codename;
    int32_t tdpWatts;
};

constexpr AmdNamingRule AmdNamingRules[] = {
    {0x67B0, AnySubdevice, "Radeon R9 2", "AMD Radeon R9 290X", "Hawaii(GCN1.1)", 250},
    {0x67B0, AnySubdevice, nullptr, "AMD Radeon R9 390X", "Grenada(GCN1.1)", 275},
    {0x67B1, AnySubdevice, "Radeon R9 2", "AMD Radeon R9 290", "Hawaii(GCN1.1)", 250},
    {0x67B1, AnySubdevice, nullptr, "AMD Radeon R9 390", "Grenada(GCN1.1)", 275},
    {0x6798, AnySubdevice, "Radeon HD 79", "AMD Radeon HD 7970", nullptr, RowTdp},
    {0x6798, AnySubdevice, nullptr, "AMD Radeon R9 280X", nullptr, RowTdp},
    {Hd6350DeviceId, Hd6350SubdeviceId, nullptr, Hd6350Name, nullptr, RowTdp},
};
static_assert(std::size(AmdNamingRules) == 7);

constexpr const char* NoCodename = "n.a.";

bool contains(const char* text, const char* piece)
{
    return text != nullptr && std::strstr(text, piece) != nullptr;
}

const AmdNamingRule* amdNamingRuleFor(uint32_t deviceId, uint32_t subdeviceId, const char* adlAdapterName)
{
    for (const AmdNamingRule& rule : AmdNamingRules) {
        if (rule.deviceId != deviceId) continue;
        if (rule.subdeviceId != AnySubdevice && rule.subdeviceId != subdeviceId) continue;
        if (rule.adlNameContains != nullptr && !contains(adlAdapterName, rule.adlNameContains)) continue;
        return &rule;
    }
    return nullptr;
}

}  // namespace

std::optional<AmdAdapterDbFacts> amdAdapterDbFacts(uint32_t vendorId, uint32_t deviceId, uint32_t subdeviceId,
                                                   const char* adlAdapterName)
{
    const int32_t row = findGpuRow(vendorId, deviceId);
    if (row < 0) return std::nullopt;

    AmdAdapterDbFacts facts{row, gpuDbName(vendorId, row), gpuDbCodename(vendorId, row), 0, 0, 0, 0};
    if (vendorId != PciVendorAmd) return facts;

    facts.shaderCores = gpuDbClampedFigure(vendorId, row, GpuDbFigure::UnifiedShaders);
    facts.tmus = gpuDbClampedFigure(vendorId, row, GpuDbFigure::Tmus);
    facts.rops = gpuDbClampedFigure(vendorId, row, GpuDbFigure::Rops);
    facts.tdpWatts = gpuDbClampedFigure(vendorId, row, GpuDbFigure::TdpWatts);

    if (const AmdNamingRule* rule = amdNamingRuleFor(deviceId, subdeviceId, adlAdapterName)) {
        if (rule->name != nullptr) facts.name = rule->name;
        if (rule->codename != nullptr) facts.codename = rule->codename;
        if (rule->tdpWatts != RowTdp) facts.tdpWatts = rule->tdpWatts;
    }
    return facts;
}

const char* primaryGpuDbName(int32_t vendorId, int32_t deviceId, int32_t subdeviceId)
{
    const auto vendor = static_cast<uint32_t>(vendorId);
    const auto device = static_cast<uint32_t>(deviceId);
    const int32_t row = findGpuRow(vendor, device);
    if (row >= 0 && vendor == PciVendorAmd && device == Hd6350DeviceId &&
        static_cast<uint32_t>(subdeviceId) == Hd6350SubdeviceId) {
        return Hd6350Name;
    }
    return gpuDbName(vendor, row);
}

PrimaryGpuDbFacts primaryGpuDbFacts(int32_t vendorId, int32_t deviceId, int32_t subdeviceId,
                                    const char* record0DisplayString)
{
    const auto vendor = static_cast<uint32_t>(vendorId);
    const auto device = static_cast<uint32_t>(deviceId);

    PrimaryGpuDbFacts facts;
    facts.row = findGpuRow(vendor, device);

    const char* dbName = facts.row >= 0 ? primaryGpuDbName(vendorId, deviceId, subdeviceId) : "";
    if (dbName[0] != '\0') {
        facts.name = dbName;
    } else if (record0DisplayString != nullptr) {
        facts.name = record0DisplayString;
    }
    if (vendor == PciVendorAmd && device == 0x6798) {
        facts.name = contains(record0DisplayString, "Radeon HD 7900") ? "AMD Radeon HD 7970" : "AMD Radeon R9 280X";
    }

    if (facts.row < 0) {
        facts.codename = NoCodename;
        return facts;
    }
    facts.codename = gpuDbCodename(vendor, facts.row);
    facts.unifiedShaders = gpuDbFigure(vendor, facts.row, GpuDbFigure::UnifiedShaders);
    facts.vertexPipes = gpuDbFigure(vendor, facts.row, GpuDbFigure::VertexPipes);
    facts.pixelPipes = gpuDbFigure(vendor, facts.row, GpuDbFigure::PixelPipes);
    facts.tmus = gpuDbFigure(vendor, facts.row, GpuDbFigure::Tmus);
    facts.rops = gpuDbFigure(vendor, facts.row, GpuDbFigure::Rops);
    facts.tdpWatts = gpuDbFigure(vendor, facts.row, GpuDbFigure::TdpWatts);
    return facts;
}

}  // namespace Kalidornm
