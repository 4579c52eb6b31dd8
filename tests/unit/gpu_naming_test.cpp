#include "kalidor/gpu_database/gpu_database.h"
#include "kalidor/gpu_database/gpu_naming.h"

#include <gtest/gtest.h>

namespace Kalidornm {
namespace {

constexpr uint32_t AnySub = 0x0B00;

// An R9 390X and an R9 290X in one machine share 0x67B0: the records differ in name, codename
// and TDP, and both take shaders, TMUs and ROPs from the one row that can be found.
TEST(AmdAdapterNaming, R9290XAndR9390XShareOneRow)
{
    const auto hawaii = amdAdapterDbFacts(PciVendorAmd, 0x67B0, AnySub, "AMD Radeon R9 200 Series");
    const auto grenada = amdAdapterDbFacts(PciVendorAmd, 0x67B0, AnySub, "AMD Radeon R9 390 Series");
    ASSERT_TRUE(hawaii && grenada);
    EXPECT_STREQ(hawaii->name, "AMD Radeon R9 290X");
    EXPECT_STREQ(hawaii->codename, "Hawaii(GCN1.1)");
    EXPECT_EQ(hawaii->tdpWatts, 250);
    EXPECT_STREQ(grenada->name, "AMD Radeon R9 390X");
    EXPECT_STREQ(grenada->codename, "Grenada(GCN1.1)");
    EXPECT_EQ(grenada->tdpWatts, 275);
    for (const auto& f : {*hawaii, *grenada}) {
        EXPECT_EQ(f.row, findGpuRow(PciVendorAmd, 0x67B0));
        EXPECT_EQ(f.shaderCores, 2816);
        EXPECT_EQ(f.tmus, 176);
        EXPECT_EQ(f.rops, 64);
    }

    const auto r290 = amdAdapterDbFacts(PciVendorAmd, 0x67B1, AnySub, "AMD Radeon R9 290");
    const auto r390 = amdAdapterDbFacts(PciVendorAmd, 0x67B1, AnySub, nullptr);
    ASSERT_TRUE(r290 && r390);
    EXPECT_STREQ(r290->name, "AMD Radeon R9 290");
    EXPECT_STREQ(r290->codename, "Hawaii(GCN1.1)");
    EXPECT_EQ(r290->tdpWatts, 250);
    EXPECT_STREQ(r390->name, "AMD Radeon R9 390");
    EXPECT_STREQ(r390->codename, "Grenada(GCN1.1)");
    EXPECT_EQ(r390->tdpWatts, 275);
}

TEST(AmdAdapterNaming, TahitiAndCedarBoardsGetTheirOwnNames)
{
    EXPECT_STREQ(amdAdapterDbFacts(PciVendorAmd, 0x6798, AnySub, "AMD Radeon HD 7900 Series")->name,
                 "AMD Radeon HD 7970");
    // The reader tests "Radeon HD 79", so an HD 7950 adapter name is enough.
    EXPECT_STREQ(amdAdapterDbFacts(PciVendorAmd, 0x6798, AnySub, "AMD Radeon HD 7950")->name, "AMD Radeon HD 7970");
    const auto r280x = amdAdapterDbFacts(PciVendorAmd, 0x6798, AnySub, "AMD Radeon R9 200 Series");
    EXPECT_STREQ(r280x->name, "AMD Radeon R9 280X");
    EXPECT_STREQ(r280x->codename, "Tahiti(GCN1.0)");
    EXPECT_EQ(r280x->tdpWatts, 250);

    EXPECT_STREQ(amdAdapterDbFacts(PciVendorAmd, 0x68F9, 0x2126, "whatever the driver says")->name,
                 "ATI Radeon HD 6350");
    EXPECT_STREQ(amdAdapterDbFacts(PciVendorAmd, 0x68F9, 0x2127, nullptr)->name, "ATI Radeon HD 5450");
    EXPECT_STREQ(amdAdapterDbFacts(PciVendorAmd, 0x6810, AnySub, "AMD Radeon R9 370X")->name,
                 "AMD Radeon R9 270X|R9 370X");
}

TEST(AmdAdapterNaming, NoRowLeavesTheAdapterNameAndUnknownFiguresReadZero)
{
    EXPECT_FALSE(amdAdapterDbFacts(PciVendorAmd, 0x1234, AnySub, "AMD Radeon Mystery"));
    EXPECT_FALSE(amdAdapterDbFacts(0x1039, 0x6330, AnySub, "SiS"));

    const auto r300 = amdAdapterDbFacts(PciVendorAmd, 0x4E45, AnySub, nullptr);  // no figures known
    ASSERT_TRUE(r300);
    EXPECT_EQ(r300->shaderCores, 0);
    EXPECT_EQ(r300->tmus, 0);
    EXPECT_EQ(r300->rops, 0);
    EXPECT_EQ(r300->tdpWatts, 0);

    // A row of another vendor gives its name and codename but no figures.
    const auto gtx = amdAdapterDbFacts(PciVendorNvidia, 0x1401, AnySub, "AMD adapter name");
    ASSERT_TRUE(gtx);
    EXPECT_STREQ(gtx->name, "NVIDIA GeForce GTX 960");
    EXPECT_STREQ(gtx->codename, "GM206");
    EXPECT_EQ(gtx->shaderCores, 0);
}

TEST(PrimaryGpuNaming, DbNameHasOneSubdeviceException)
{
    EXPECT_STREQ(primaryGpuDbName(0x10DE, 0x1401, 0), "NVIDIA GeForce GTX 960");
    EXPECT_STREQ(primaryGpuDbName(0x1002, 0x68F9, 0x2126), "ATI Radeon HD 6350");
    EXPECT_STREQ(primaryGpuDbName(0x1002, 0x68F9, 0x0000), "ATI Radeon HD 5450");
    EXPECT_STREQ(primaryGpuDbName(0x1002, 0x67B0, 0), "AMD Radeon R9 390X");
    EXPECT_STREQ(primaryGpuDbName(0x1039, 0x6330, 0), "Unknown");
    EXPECT_STREQ(primaryGpuDbName(-1, -1, -1), "Unknown");  // no display device
}

TEST(PrimaryGpuNaming, MissingDeviceFallsBackToTheDisplayString)
{
    const PrimaryGpuDbFacts sis = primaryGpuDbFacts(0x1039, 0x6330, 0, "SiS Mirage Graphics");
    EXPECT_EQ(sis.row, -1);
    EXPECT_STREQ(sis.name, "SiS Mirage Graphics");
    EXPECT_STREQ(sis.codename, "n.a.");
    EXPECT_EQ(sis.unifiedShaders, 0);
    EXPECT_EQ(sis.tmus, 0);
    EXPECT_EQ(sis.rops, 0);
    EXPECT_EQ(sis.tdpWatts, 0);

    EXPECT_STREQ(primaryGpuDbFacts(-1, -1, -1, nullptr).name, "");  // no record: the name stays empty

    // Device 0 finds the closing row: a row, but no name to give, and its empty codename.
    const PrimaryGpuDbFacts zero = primaryGpuDbFacts(0x10DE, 0, 0, "Display adapter");
    EXPECT_GE(zero.row, 0);
    EXPECT_STREQ(zero.name, "Display adapter");
    EXPECT_STREQ(zero.codename, "");
}

TEST(PrimaryGpuNaming, SummaryKeepsRawFiguresAndItsOwnSharedIdRules)
{
    const PrimaryGpuDbFacts ivy = primaryGpuDbFacts(0x8086, 0x0162, 0, "Intel(R) HD Graphics 4000");
    EXPECT_STREQ(ivy.name, "Intel HD Graphics 4000 (D)");
    EXPECT_STREQ(ivy.codename, "IvyBridge(GT2)");
    EXPECT_EQ(ivy.rops, -1);
    EXPECT_EQ(ivy.tmus, 2);

    const PrimaryGpuDbFacts g70 = primaryGpuDbFacts(0x10DE, 0x0090, 0, "");
    EXPECT_EQ(g70.vertexPipes, 8);
    EXPECT_EQ(g70.pixelPipes, 24);

    // The summary tests "Radeon HD 7900" in the display string, not the reader's "Radeon HD 79".
    EXPECT_STREQ(primaryGpuDbFacts(0x1002, 0x6798, 0, "AMD Radeon HD 7900 Series").name, "AMD Radeon HD 7970");
    EXPECT_STREQ(primaryGpuDbFacts(0x1002, 0x6798, 0, "AMD Radeon HD 7950").name, "AMD Radeon R9 280X");
    EXPECT_STREQ(primaryGpuDbFacts(0x1002, 0x6798, 0, nullptr).name, "AMD Radeon R9 280X");

    // No summary rule for 0x67B0: the row's name and TDP, whatever the driver calls the card.
    const PrimaryGpuDbFacts hawaii = primaryGpuDbFacts(0x1002, 0x67B0, 0, "AMD Radeon R9 200 Series");
    EXPECT_STREQ(hawaii.name, "AMD Radeon R9 390X");
    EXPECT_STREQ(hawaii.codename, "Grenada(GCN1.1)");
    EXPECT_EQ(hawaii.tdpWatts, 275);

    EXPECT_STREQ(primaryGpuDbFacts(0x1002, 0x68F9, 0x2126, "ATI Radeon HD 5450").name, "ATI Radeon HD 6350");
}

}  // namespace
}  // namespace Kalidornm
