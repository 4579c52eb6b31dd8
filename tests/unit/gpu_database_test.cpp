#include "gpu_database/gpu_database.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <string>

namespace Kalidornm {
namespace {

constexpr uint32_t SiS = 0x1039;

struct ExpectedRow {
    uint32_t vendorId;
    uint32_t deviceId;
    const char* codename;
    const char* name;
    int32_t shaders, vertex, pixel, tmus, rops, tdp;
};

void expectRow(const ExpectedRow& e, int32_t expectedRowNumber = -1)
{
    SCOPED_TRACE(testing::Message() << std::hex << e.vendorId << ":" << e.deviceId);
    const int32_t row = findGpuRow(e.vendorId, e.deviceId);
    ASSERT_GE(row, 0);
    if (expectedRowNumber >= 0) {
        EXPECT_EQ(row, expectedRowNumber);
    }
    EXPECT_STREQ(gpuDbCodename(e.vendorId, row), e.codename);
    EXPECT_STREQ(gpuDbName(e.vendorId, row), e.name);
    EXPECT_EQ(gpuDbFigure(e.vendorId, row, GpuDbFigure::UnifiedShaders), e.shaders);
    EXPECT_EQ(gpuDbFigure(e.vendorId, row, GpuDbFigure::VertexPipes), e.vertex);
    EXPECT_EQ(gpuDbFigure(e.vendorId, row, GpuDbFigure::PixelPipes), e.pixel);
    EXPECT_EQ(gpuDbFigure(e.vendorId, row, GpuDbFigure::Tmus), e.tmus);
    EXPECT_EQ(gpuDbFigure(e.vendorId, row, GpuDbFigure::Rops), e.rops);
    EXPECT_EQ(gpuDbFigure(e.vendorId, row, GpuDbFigure::TdpWatts), e.tdp);
}

TEST(GpuDatabase, EachVendorTableIsSeedRowsThenLaterRowsThenOneClosingRow)
{
    const auto dbs = allGpuDatabases();
    ASSERT_EQ(dbs.size(), 4u);
    const uint32_t vendors[] = {PciVendorNvidia, PciVendorAmd, PciVendorIntel, PciVendorS3};
    const std::size_t seedRows[] = {531, 282, 71, 4};
    std::size_t laterRows = 0;
    for (std::size_t i = 0; i < dbs.size(); ++i) {
        EXPECT_EQ(dbs[i].vendorId, vendors[i]);
        EXPECT_EQ(gpuDatabaseFor(vendors[i]), &dbs[i]);
        EXPECT_EQ(dbs[i].seedRowCount, seedRows[i]);
        ASSERT_GT(dbs[i].rows.size(), dbs[i].seedRowCount);
        laterRows += dbs[i].rows.size() - dbs[i].seedRowCount - 1;
    }
    EXPECT_GE(laterRows, 300u);
    EXPECT_EQ(gpuDatabaseFor(SiS), nullptr);
}

// One lookup at the first, middle and last seed row of every table: a row dropped, doubled or
// moved by the generator shifts these numbers.
TEST(GpuDatabase, SeedRowsKeepTheirOrder)
{
    expectRow({PciVendorNvidia, 0x0090, "G70", "NVIDIA GeForce 7800 GTX", 0, 8, 24, 24, 16, 81}, 0);
    expectRow({PciVendorNvidia, 0x1299, "GK208M", "NVIDIA GeForce GT 920M", -1, -1, -1, -1, -1, 0}, 265);
    expectRow({PciVendorNvidia, 0x0218, "NV48", "NVIDIA GeForce 6800 XT", -1, -1, -1, -1, -1, 0}, 530);
    expectRow({PciVendorAmd, 0x4E45, "R300", "ATI RADEON 9500 PRO", -1, -1, -1, -1, -1, 0}, 0);
    expectRow({PciVendorAmd, 0x689D, "Hemlock", "ATI Radeon HD 5950", -1, -1, -1, -1, -1, 0}, 141);
    expectRow({PciVendorAmd, 0x958C, "RV630GL", "ATI FireGL V5600", -1, -1, -1, -1, -1, 0}, 281);
    expectRow({PciVendorIntel, 0x041A, "Haswell", "Intel HD Graphics P4600/P4700 (D)", 20, 0, 0, -1, -1, 0}, 0);
    expectRow({PciVendorIntel, 0x2E33, "GMA X4500", "Intel GMA X4500", 10, 0, 0, -1, -1, 0}, 35);
    expectRow({PciVendorIntel, 0x2782, "GMA 900", "Intel GMA 900", 0, 0, 4, -1, -1, 0}, 70);
    expectRow({PciVendorS3, 0x9042, "Chrome 440/430", "S3 Graphics Chrome 430/440 Series", 64, 0, 0, 16, 4, 0}, 0);
    expectRow({PciVendorS3, 0x9044, "Chrome 440/430", "S3 Graphics Chrome 430/440 Series", 64, 0, 0, 16, 4, 0}, 2);
    expectRow({PciVendorS3, 0x9045, "Chrome 440/430", "S3 Graphics Chrome 430/440 Series", 64, 0, 0, 16, 4, 0}, 3);

    // Texts are kept exactly, blanks at either end included.
    expectRow({PciVendorNvidia, 0x017C, "NV17", "NVIDIA Quadro4 500 GoGL ", -1, -1, -1, -1, -1, 0});
    expectRow({PciVendorAmd, 0x6938, " Antigua(GCN1.2)", "AMD Radeon R9 380X", 2048, 0, 0, 128, 32, 190});
    expectRow({PciVendorAmd, 0x6798, "Tahiti(GCN1.0)", "AMD Radeon|HD 7970|R9 280X|FirePro D700", 2048, 0, 0, 128, 32,
               250});
}

TEST(GpuDatabase, TellingRowsCarryExactlyTheirFigures)
{
    const ExpectedRow rows[] = {
        {PciVendorNvidia, 0x0090, "G70", "NVIDIA GeForce 7800 GTX", 0, 8, 24, 24, 16, 81},
        {PciVendorNvidia, 0x0110, "NV11", "NVIDIA GeForce2 MX/MX 400", -1, -1, -1, -1, -1, 0},
        {PciVendorNvidia, 0x0193, "G80", "NVIDIA GeForce 8800 GTS", 96, 0, 0, 64, 16, 135},
        {PciVendorNvidia, 0x0611, "G92", "NVIDIA GeForce 8800 GT", 112, 0, 0, 56, 16, 105},
        {PciVendorNvidia, 0x05E2, "GT200", "NVIDIA GeForce GTX 260", 192, 0, 0, 64, 28, 182},
        {PciVendorNvidia, 0x06C0, "GF100", "NVIDIA GeForce GTX 480", 480, 0, 0, 60, 48, 250},
        {PciVendorNvidia, 0x1080, "GF110", "NVIDIA GeForce GTX 580", 512, 0, 0, 64, 48, 244},
        {PciVendorNvidia, 0x1180, "GK104", "NVIDIA GeForce GTX 680", 1536, 0, 0, 128, 32, 195},
        {PciVendorNvidia, 0x100C, "GK110", "NVIDIA GeForce GTX Titan Black", 2880, 0, 0, 240, 48, 250},
        {PciVendorNvidia, 0x1401, "GM206", "NVIDIA GeForce GTX 960", 1024, 0, 0, 64, 32, 120},
        {PciVendorNvidia, 0x17C2, "GM200", "NVIDIA GeForce GTX TITAN X", 3072, 0, 0, 192, 96, 250},
        {PciVendorAmd, 0x7249, "R580", "ATI Radeon X1900", 0, 8, 48, 16, 16, 0},
        {PciVendorAmd, 0x9440, "RV770", "ATI Radeon HD 4870", 800, 0, 0, 40, 16, 157},
        {PciVendorAmd, 0x6898, "Cypress", "ATI Radeon HD 5870", 1600, 0, 0, 80, 32, 188},
        {PciVendorAmd, 0x6718, "Cayman XT", "AMD Radeon HD 6970", 1536, 0, 0, 96, 32, 250},
        {PciVendorAmd, 0x67B0, "Grenada(GCN1.1)", "AMD Radeon R9 390X", 2816, 0, 0, 176, 64, 275},
        {PciVendorAmd, 0x7300, "Fiji (GCN1.2)", "AMD Radeon R9 Fury X", 4096, 0, 0, 256, 64, 275},
        {PciVendorIntel, 0x0D22, "Haswell(GT3)", "Intel Iris Pro Graphics 5200 (D)", 40, 0, 0, 8, 4, 84},
        {PciVendorIntel, 0x0162, "IvyBridge(GT2)", "Intel HD Graphics 4000 (D)", 16, 0, 0, 2, -1, 77},
        {PciVendorIntel, 0x2792, "GMA 900", "Intel GMA 900", 0, 0, 4, -1, -1, 0},
        {PciVendorS3, 0x9042, "Chrome 440/430", "S3 Graphics Chrome 430/440 Series", 64, 0, 0, 16, 4, 0},
    };
    for (const ExpectedRow& row : rows) expectRow(row);
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

// Every row is the first of its id, so no later row repeats a seed id (it would be dead) and no
// id occurs twice; the seed rows therefore answer exactly as before the later rows came.
TEST(GpuDatabase, EveryRowIsReachableAndNoLaterRowShadowsASeedRow)
{
    for (const GpuDatabase& db : allGpuDatabases()) {
        std::set<uint32_t> seedIds;
        for (std::size_t i = 0; i < db.rows.size(); ++i) {
            const GpuDbRow& row = db.rows[i];
            SCOPED_TRACE(testing::Message() << std::hex << db.vendorId << ":" << row.deviceId);
            EXPECT_EQ(findGpuRow(db.vendorId, row.deviceId), static_cast<int32_t>(i));
            if (i < db.seedRowCount) {
                seedIds.insert(row.deviceId);
            } else {
                EXPECT_EQ(seedIds.count(row.deviceId), 0u);
            }
            if (i + 1 < db.rows.size()) {
                EXPECT_NE(row.fullName[0], '\0');
                if (i >= db.seedRowCount) {
                    // Later GPUs are all unified-shader designs.
                    EXPECT_EQ(row.vertexPipes, 0);
                    EXPECT_EQ(row.pixelPipes, 0);
                }
            }
        }
    }
}

TEST(GpuDatabase, LaterRowsCoverRecentGpusWithPublicIds)
{
    expectRow({PciVendorNvidia, 0x1B80, "GP104", "NVIDIA GeForce GTX 1080", 2560, 0, 0, 160, 64, 180});
    expectRow({PciVendorNvidia, 0x1EB8, "TU104GL", "NVIDIA Tesla T4", 2560, 0, 0, 160, 64, 70});
    expectRow({PciVendorNvidia, 0x20B0, "GA100", "NVIDIA A100 SXM4 40GB", 6912, 0, 0, 432, -1, 400});
    expectRow({PciVendorNvidia, 0x2684, "AD102", "NVIDIA GeForce RTX 4090", 16384, 0, 0, 512, 176, 450});
    expectRow({PciVendorNvidia, 0x2330, "GH100", "NVIDIA H100 SXM5 80GB", 16896, 0, 0, 528, -1, 700});
    expectRow({PciVendorAmd, 0x73AF, "Navi 21(RDNA2)", "AMD Radeon RX 6900 XT", 5120, 0, 0, 320, 128, 300});
    expectRow({PciVendorAmd, 0x67DF, "Ellesmere(GCN4)", "AMD Radeon RX 470/480/570/570X/580/580X/590", -1, 0, 0, -1,
               -1, 0});
    expectRow({PciVendorAmd, 0x163F, "VanGogh(RDNA2)", "AMD Custom GPU 0405", -1, 0, 0, -1, -1, 0});
    expectRow({PciVendorIntel, 0x56A0, "DG2", "Intel Arc A770", 512, 0, 0, 256, 128, 225});
    expectRow({PciVendorIntel, 0x3E92, "CoffeeLake-S GT2", "Intel UHD Graphics 630", 24, 0, 0, -1, -1, 0});
}

// Ids the system PCI id list of 2023 lacks come from the newer extract in tools/gpu_db.
TEST(GpuDatabase, GpusNewerThanTheSystemListAreNamed)
{
    expectRow({PciVendorNvidia, 0x2335, "GH100", "NVIDIA H200 SXM 141GB", 16896, 0, 0, 528, -1, 700});
    expectRow({PciVendorNvidia, 0x2B85, "GB202", "NVIDIA GeForce RTX 5090", 21760, 0, 0, 680, 176, 575});
    expectRow({PciVendorNvidia, 0x2901, "GB100", "NVIDIA B200", -1, 0, 0, -1, -1, 0});
    expectRow({PciVendorNvidia, 0x26B9, "AD102GL", "NVIDIA L40S", 18176, 0, 0, 568, 192, 350});
    expectRow({PciVendorAmd, 0x7550, "Navi 48(RDNA4)", "AMD Radeon RX 9070/9070 XT/9070 GRE", -1, 0, 0, -1, -1, 0});
    expectRow({PciVendorAmd, 0x74A1, "Aqua Vanjaram(CDNA3)", "AMD Instinct MI300X", 19456, 0, 0, 1216, -1, 750});
    // The list names the MI350 series after the MI300 chip; the architecture tag follows the product.
    expectRow({PciVendorAmd, 0x75A3, "Aqua Vanjaram(CDNA4)", "AMD Instinct MI355X", 16384, 0, 0, 1024, -1, 1400});
    expectRow({PciVendorAmd, 0x150E, "Strix(RDNA3.5)", "AMD Radeon 880M / 890M", -1, 0, 0, -1, -1, 0});
    expectRow({PciVendorIntel, 0xE20B, "Battlemage G21", "Intel Arc B580", 160, 0, 0, 160, 80, 190});
    expectRow({PciVendorIntel, 0x64A0, "Lunar Lake", "Intel Arc Graphics 130V / 140V", -1, 0, 0, -1, -1, 0});
    expectRow({PciVendorIntel, 0x7D55, "Meteor Lake-P", "Intel Arc Graphics", -1, 0, 0, -1, -1, 0});

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
