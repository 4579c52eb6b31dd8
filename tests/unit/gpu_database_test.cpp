#include "kalidor/gpu_database/gpu_database.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace Kalidornm {
namespace {

constexpr uint32_t SiS = 0x1039;

using Figures = std::array<int32_t, 6>;  // shaders, vertex pipes, pixel pipes, TMUs, ROPs, TDP

Figures figuresOf(const GpuDbRow& row)
{
    return {row.unifiedShaders, row.vertexPipes, row.pixelPipes, row.tmus, row.rops, row.tdpWatts};
}

std::vector<std::string> dataLines(const char* file)
{
    std::ifstream in(std::string(GPU_DB_DIR) + "/" + file);
    EXPECT_TRUE(in.is_open()) << file;
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line[0] != '#') lines.push_back(line);
    }
    return lines;
}

struct ListedRow {
    uint32_t deviceId;
    std::string codename, name;
};

// The classic device list by vendor: "*NVIDIA table, vendor 0x10DE, 531 device ids.*" heads a section,
// then lines "codename: id name; id name." whose names keep their blanks.
std::map<uint32_t, std::vector<ListedRow>> classicList()
{
    std::map<uint32_t, std::vector<ListedRow>> list;
    uint32_t vendor = 0;
    for (const std::string& line : dataLines("classic_devices.txt")) {
        if (line.front() == '*') {
            vendor = std::stoul(line.substr(line.find("0x") + 2, 4), nullptr, 16);
            continue;
        }
        const size_t colon = line.find(": ");
        EXPECT_NE(colon, std::string::npos) << line;
        EXPECT_EQ(line.back(), '.') << line;
        const std::string codename = line.substr(0, colon);
        const std::string entries = line.substr(colon + 2, line.size() - colon - 3);
        for (size_t at = 0; at <= entries.size();) {
            size_t end = entries.find("; ", at);
            if (end == std::string::npos) end = entries.size();
            const std::string entry = entries.substr(at, end - at);
            list[vendor].push_back({uint32_t(std::stoul(entry.substr(0, 4), nullptr, 16)), codename, entry.substr(5)});
            at = end + 2;
        }
    }
    return list;
}

// The compiled classic rows against the list they are generated from: a row dropped, doubled or moved, or a
// name mangled on its way through the C string escapes, shows here.
TEST(GpuDatabase, ClassicRowsAreTheClassicListInItsOrder)
{
    const auto list = classicList();
    ASSERT_EQ(list.size(), allGpuDatabases().size());
    for (const GpuDatabase& db : allGpuDatabases()) {
        SCOPED_TRACE(testing::Message() << std::hex << db.vendorId);
        const std::vector<ListedRow>& listed = list.at(db.vendorId);
        ASSERT_EQ(db.classicRowCount, listed.size());
        for (std::size_t i = 0; i < listed.size(); ++i) {
            EXPECT_EQ(db.rows[i].deviceId, listed[i].deviceId) << i;
            EXPECT_EQ(db.rows[i].codename, listed[i].codename) << i;
            EXPECT_EQ(db.rows[i].fullName, listed[i].name) << i;
        }
    }
}

// Each line of the classic figures lands on the row of its ids, and only there: every other classic row
// keeps the unknown figures.
TEST(GpuDatabase, ClassicFiguresLandOnTheirRowsOnly)
{
    std::set<std::pair<uint32_t, int32_t>> figured;
    for (const std::string& line : dataLines("classic_figures.txt")) {
        std::istringstream in(line);
        std::string vendorText, deviceText;
        Figures figures{};
        in >> vendorText >> deviceText;
        for (int32_t& figure : figures) in >> figure;
        ASSERT_FALSE(in.fail()) << line;
        const uint32_t vendor = std::stoul(vendorText, nullptr, 16);
        const int32_t row = findGpuRow(vendor, std::stoul(deviceText, nullptr, 16));
        ASSERT_GE(row, 0) << line;
        EXPECT_EQ(figuresOf(*gpuDbRow(vendor, row)), figures) << line;
        figured.insert({vendor, row});
    }
    const Figures unknown{-1, -1, -1, -1, -1, 0};
    for (const GpuDatabase& db : allGpuDatabases()) {
        for (std::size_t i = 0; i < db.classicRowCount; ++i) {
            if (figured.count({db.vendorId, int32_t(i)})) continue;
            EXPECT_EQ(figuresOf(db.rows[i]), unknown) << std::hex << db.vendorId << ":" << db.rows[i].deviceId;
        }
    }
}

// A product's figures reach every later row of that product, with no separate pipelines.
TEST(GpuDatabase, LaterFiguresReachEveryRowOfTheirProduct)
{
    const std::map<uint32_t, std::string> prefixes = {
        {PciVendorNvidia, "NVIDIA "}, {PciVendorAmd, "AMD "}, {PciVendorIntel, "Intel "}};
    const auto trim = [](std::string text) {
        text.erase(0, text.find_first_not_of(' '));
        text.erase(text.find_last_not_of(' ') + 1);
        return text;
    };
    for (const std::string& line : dataLines("modern_figures.txt")) {
        const size_t bar = line.find('|'), secondBar = line.find('|', bar + 1);
        ASSERT_NE(secondBar, std::string::npos) << line;
        const uint32_t vendor = std::stoul(trim(line.substr(0, bar)), nullptr, 16);
        const std::string product = trim(line.substr(bar + 1, secondBar - bar - 1));
        const std::string& prefix = prefixes.at(vendor);
        const std::string name = product.rfind(prefix, 0) == 0 ? product : prefix + product;
        std::istringstream in(line.substr(secondBar + 1));
        int32_t shaders = 0, tmus = 0, rops = 0, tdp = 0;
        in >> shaders >> tmus >> rops >> tdp;
        ASSERT_FALSE(in.fail()) << line;

        const GpuDatabase& db = *gpuDatabaseFor(vendor);
        int rows = 0;
        for (std::size_t i = db.classicRowCount; i + 1 < db.rows.size(); ++i) {
            if (db.rows[i].fullName != name) continue;
            ++rows;
            EXPECT_EQ(figuresOf(db.rows[i]), (Figures{shaders, 0, 0, tmus, rops, tdp})) << line;
        }
        EXPECT_GT(rows, 0) << line;
    }
}

// Only the first row of an id can ever be found; the placeholder bridge row of Intel 0x010A
// therefore names the GPU, with zero shaders rather than unknown.
TEST(GpuDatabase, FirstRowWinsForSharedIds)
{
    EXPECT_STREQ(gpuDbName(PciVendorNvidia, findGpuRow(PciVendorNvidia, 0x0FFF)), "NVIDIA Quadro 410");
    EXPECT_STREQ(gpuDbName(PciVendorAmd, findGpuRow(PciVendorAmd, 0x68F9)), "ATI Radeon HD 5450");
    const int32_t bridge = findGpuRow(PciVendorIntel, 0x010A);
    EXPECT_STREQ(gpuDbName(PciVendorIntel, bridge), "Intel PCI_CHIP_SANDYBRIDGE_BRIDGE_S");
    EXPECT_EQ(gpuDbFigure(PciVendorIntel, bridge, GpuDbFigure::UnifiedShaders), 0);
}

// Every row is the first of its id, so no later row repeats a classic id (it would be dead) and no
// id occurs twice; the classic rows therefore answer exactly as before the later rows came.
TEST(GpuDatabase, EveryRowIsReachableAndNoLaterRowShadowsAClassicRow)
{
    for (const GpuDatabase& db : allGpuDatabases()) {
        std::set<uint32_t> classicIds;
        for (std::size_t i = 0; i < db.rows.size(); ++i) {
            const GpuDbRow& row = db.rows[i];
            SCOPED_TRACE(testing::Message() << std::hex << db.vendorId << ":" << row.deviceId);
            EXPECT_EQ(findGpuRow(db.vendorId, row.deviceId), static_cast<int32_t>(i));
            if (i < db.classicRowCount) {
                classicIds.insert(row.deviceId);
            } else {
                EXPECT_EQ(classicIds.count(row.deviceId), 0u);
            }
            if (i + 1 < db.rows.size()) {
                EXPECT_NE(row.fullName[0], '\0');
                if (i >= db.classicRowCount) {
                    // Later GPUs are all unified-shader designs.
                    EXPECT_EQ(row.vertexPipes, 0);
                    EXPECT_EQ(row.pixelPipes, 0);
                }
            }
        }
    }
}

// Ids the system PCI id list of 2023 lacks come from the newer extract in tools/gpu_db.
TEST(GpuDatabase, GpusNewerThanTheSystemListAreNamed)
{
    EXPECT_STREQ(gpuDbName(PciVendorNvidia, findGpuRow(PciVendorNvidia, 0x2B85)), "NVIDIA GeForce RTX 5090");
    // The list names the MI350 series after the MI300 chip; the architecture tag follows the product.
    EXPECT_STREQ(gpuDbCodename(PciVendorAmd, findGpuRow(PciVendorAmd, 0x75A3)), "Aqua Vanjaram(CDNA4)");

    // Where both lists know an id, the system list's spelling stays.
    EXPECT_STREQ(gpuDbName(PciVendorAmd, findGpuRow(PciVendorAmd, 0x744C)), "AMD Radeon RX 7900 XT/7900 XTX");

    // Functions beside the GPU and placeholder ids of the newer list make no rows.
    EXPECT_EQ(findGpuRow(PciVendorNvidia, 0x22E8), -1);  // GB202 audio controller
    EXPECT_EQ(findGpuRow(PciVendorNvidia, 0x2900), -1);  // GB100 reserved id
    EXPECT_EQ(findGpuRow(PciVendorAmd, 0x7446), -1);     // Navi 31 USB
}

TEST(GpuDatabase, NoRowGivesUnknownTextsAndZeroFigures)
{
    const int32_t cases[][2] = {
        {static_cast<int32_t>(SiS), 0x0090}, {static_cast<int32_t>(SiS), 0x6330}, {-1, -1}, {0x10DE, 0xFFFF}, {0x10DE, -1}};
    for (const auto& c : cases) {
        const auto vendor = static_cast<uint32_t>(c[0]);
        const int32_t row = findGpuRow(vendor, static_cast<uint32_t>(c[1]));
        EXPECT_EQ(row, -1);
        EXPECT_STREQ(gpuDbName(vendor, row), "Unknown");
        EXPECT_STREQ(gpuDbCodename(vendor, row), "Unknown");
        EXPECT_EQ(gpuDbFigure(vendor, row, GpuDbFigure::Tmus), 0);
        EXPECT_EQ(gpuDbClampedFigure(vendor, row, GpuDbFigure::TdpWatts), 0);
    }
    // Row numbers from another table or past the end are no rows either.
    const int32_t pastEnd = static_cast<int32_t>(gpuDatabaseFor(PciVendorS3)->rows.size());
    EXPECT_EQ(gpuDbRow(PciVendorS3, pastEnd), nullptr);
    EXPECT_STREQ(gpuDbName(PciVendorS3, pastEnd), "Unknown");
    EXPECT_EQ(gpuDbFigure(PciVendorS3, pastEnd, GpuDbFigure::UnifiedShaders), 0);
    EXPECT_STREQ(gpuDbName(SiS, 0), "Unknown");
    EXPECT_EQ(gpuDatabaseFor(SiS), nullptr);
}

TEST(GpuDatabase, DeviceZeroFindsTheClosingRow)
{
    for (const GpuDatabase& db : allGpuDatabases()) {
        const int32_t row = findGpuRow(db.vendorId, 0);
        EXPECT_EQ(row, static_cast<int32_t>(db.rows.size()) - 1);
        EXPECT_STREQ(gpuDbName(db.vendorId, row), "");
        EXPECT_STREQ(gpuDbCodename(db.vendorId, row), "");
        EXPECT_EQ(gpuDbFigure(db.vendorId, row, GpuDbFigure::UnifiedShaders), 0);
        EXPECT_EQ(gpuDbFigure(db.vendorId, row, GpuDbFigure::Rops), 0);
    }
}

// -1 in a row reaches the primary summary as -1 (raw) and a GPU record as 0 (clamped).
TEST(GpuDatabase, RawFiguresKeepUnknownsAndClampedFiguresReadThemAsZero)
{
    const int32_t ivy = findGpuRow(PciVendorIntel, 0x0162);
    EXPECT_EQ(gpuDbFigure(PciVendorIntel, ivy, GpuDbFigure::Rops), -1);
    EXPECT_EQ(gpuDbClampedFigure(PciVendorIntel, ivy, GpuDbFigure::Rops), 0);
    EXPECT_EQ(gpuDbClampedFigure(PciVendorIntel, ivy, GpuDbFigure::Tmus), 2);
    EXPECT_EQ(gpuDbClampedFigure(PciVendorIntel, ivy, GpuDbFigure::TdpWatts), 77);

    const int32_t gma = findGpuRow(PciVendorIntel, 0x2792);
    EXPECT_EQ(gpuDbFigure(PciVendorIntel, gma, GpuDbFigure::Tmus), -1);
    EXPECT_EQ(gpuDbClampedFigure(PciVendorIntel, gma, GpuDbFigure::Tmus), 0);
    EXPECT_EQ(gpuDbClampedFigure(PciVendorIntel, gma, GpuDbFigure::PixelPipes), 4);
}

TEST(GpuDatabase, RefillStoresOnlyValuesAboveZeroAndAsksAgainNextTime)
{
    int32_t shaders = 0;
    EXPECT_EQ(refillFromGpuDb(shaders, PciVendorNvidia, 0x1401, GpuDbFigure::UnifiedShaders), 1024);
    EXPECT_EQ(shaders, 1024);

    int32_t fromDriver = 999;  // a value the reader already had is never replaced
    EXPECT_EQ(refillFromGpuDb(fromDriver, PciVendorNvidia, 0x1401, GpuDbFigure::UnifiedShaders), 999);

    int32_t tdp = 0;  // the row's TDP is 0: nothing stored, 0 again next time
    EXPECT_EQ(refillFromGpuDb(tdp, PciVendorNvidia, 0x0110, GpuDbFigure::TdpWatts), 0);
    EXPECT_EQ(refillFromGpuDb(tdp, PciVendorNvidia, 0x0110, GpuDbFigure::TdpWatts), 0);
    EXPECT_EQ(tdp, 0);

    int32_t vertex = 0;  // -1 in the row is not a value for a record
    EXPECT_EQ(refillFromGpuDb(vertex, PciVendorNvidia, 0x0110, GpuDbFigure::VertexPipes), 0);

    int32_t pixel = 0;  // pre-unified GPUs show their pipelines through the refill alone
    EXPECT_EQ(refillFromGpuDb(pixel, PciVendorAmd, 0x7249, GpuDbFigure::PixelPipes), 48);

    int32_t other = 0;
    EXPECT_EQ(refillFromGpuDb(other, SiS, 0x6330, GpuDbFigure::UnifiedShaders), 0);
}

}  // namespace
}  // namespace Kalidornm
