#include <gtest/gtest.h>

#include "kalidor/gpu_record.h"
#include "kalidor/vendors/amd_adapters.h"
#include "kalidor/vendors/amd_reader.h"

namespace {

using namespace Kalidornm;

GpuRecord namedRecord(uint32_t device, uint32_t subvendor, uint32_t subdevice, const char* name) {
    AmdAdapterInfo info;
    copyText(info.strAdapterName, name);
    info.iVendorID = 1002;
    GpuRecord record;
    record.vendorId = 0x1002, record.deviceId = device, record.subvendorId = subvendor, record.subdeviceId = subdevice;
    applyAmdDatabaseFacts(record, info);
    return record;
}

TEST(AmdAdapterVendor, TheHexDigitsReadAsDecimal) {
    // The adapter vendor is the hex text read as decimal, so only AMD's id passes the 1002 test.
    EXPECT_EQ(decimalDigitsOfHex(0x1002), 1002);
    EXPECT_EQ(decimalDigitsOfHex(0x8086), 8086);
    EXPECT_EQ(decimalDigitsOfHex(0x10DE), -1);
}

TEST(AmdAdapterFilter, OneAdapterPerCardWhateverItsOutputs) {
    std::vector<PciAddress> seen;
    AmdAdapterInfo output;
    output.address = *parsePciAddress("0000:03:00.0"), output.iExist = 1, output.iPresent = 1;
    EXPECT_TRUE(amdAdapterIsNew(output, seen));
    EXPECT_FALSE(amdAdapterIsNew(output, seen));  // the card's second output

    // The same bus on another PCI domain is another card.
    AmdAdapterInfo otherDomain = output;
    otherDomain.address.domain = 1;
    EXPECT_TRUE(amdAdapterIsNew(otherDomain, seen));

    // Regression: a card without a DRM card node was refused, and with it every later entry of its bus.
    AmdAdapterInfo withoutCardNode;
    withoutCardNode.address = *parsePciAddress("0000:07:00.0"), withoutCardNode.iExist = 0;
    withoutCardNode.iPresent = 1;
    EXPECT_TRUE(amdAdapterIsNew(withoutCardNode, seen));
    EXPECT_FALSE(amdAdapterIsNew(withoutCardNode, seen));
}

TEST(AmdAdapterList, OneEntryPerOutputAndOneForACardWithout) {
    PciDevice fourOutputs;
    fourOutputs.ids.vendor = 0x1002, fourOutputs.address.bus = 3, fourOutputs.drmCard = "card0";
    fourOutputs.connectors = {"card0-DP-1", "card0-DP-2", "card0-DP-3", "card0-HDMI-A-1"};
    PciDevice headless;
    headless.ids.vendor = 0x1002, headless.address.bus = 1;
    const auto list = buildAmdAdapterList({&fourOutputs, &headless}, {"first", "second"});
    ASSERT_EQ(list.size(), 5u);
    EXPECT_EQ(list[3].iAdapterIndex, 3);
    EXPECT_EQ(list[3].iBusNumber, 3);
    EXPECT_STREQ(list[4].strAdapterName, "second");
    EXPECT_EQ(list[4].device, 1u);
    EXPECT_EQ(list[4].iExist, 0);  // no card node
}

// 0x67B0 and 0x6798 stand for several products; the adapter name picks the one.
TEST(AmdNaming, SharedDeviceIdsAreToldApartByTheAdapterName) {
    const GpuRecord r290x = namedRecord(0x67B0, 0x1458, 0x227C, "AMD Radeon R9 200 Series");
    const GpuRecord r390x = namedRecord(0x67B0, 0x1028, 0x0B00, "AMD Radeon R9 390X");
    EXPECT_STREQ(r290x.name, "AMD Radeon R9 290X");
    EXPECT_STREQ(r290x.codename, "Hawaii(GCN1.1)");
    EXPECT_EQ(r290x.tdpWatts, 250);
    EXPECT_STREQ(r390x.name, "AMD Radeon R9 390X");
    EXPECT_STREQ(r390x.codename, "Grenada(GCN1.1)");
    EXPECT_EQ(r390x.tdpWatts, 275);
    EXPECT_EQ(r290x.shaderCores, 2816);
    EXPECT_EQ(r290x.shaderCores, r390x.shaderCores);
    EXPECT_EQ(r290x.tmus, r390x.tmus);
    EXPECT_EQ(r290x.rops, r390x.rops);

    EXPECT_STREQ(namedRecord(0x6798, 0x1002, 0x3000, "AMD Radeon HD 7900 Series").name,
                 "AMD Radeon HD 7970");
    EXPECT_STREQ(namedRecord(0x6798, 0x1002, 0x3001, "AMD Radeon R9 200 Series").name,
                 "AMD Radeon R9 280X");

    EXPECT_STREQ(namedRecord(0x68F9, 0x1028, 0x2126, "AMD Radeon HD 5000").name, "ATI Radeon HD 6350");
    EXPECT_STREQ(namedRecord(0x68F9, 0x1028, 0x2127, "AMD Radeon HD 5000").name, "ATI Radeon HD 5450");

    // RDNA rows carry unknown figures (-1): a record holds 0.
    const GpuRecord navi = namedRecord(0x73BF, 0x1002, 0x0E3A, "Navi 21");
    EXPECT_EQ(navi.shaderCores, 0);
    EXPECT_EQ(navi.tmus, 0);

    const GpuRecord unknown = namedRecord(0x1234, 0x1002, 0x0001, "Some Future Radeon");
    EXPECT_STREQ(unknown.name, "Some Future Radeon");
    EXPECT_STREQ(unknown.codename, "");
    EXPECT_EQ(unknown.tdpWatts, 0);
}

}  // namespace
