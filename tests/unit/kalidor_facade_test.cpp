#include <gtest/gtest.h>

#include "kalidor/hardware_caps.h"
#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"

namespace {

using namespace Kalidornm;

TEST(PrimaryVendorKind, FollowsThePciVendorOfTheFirstDisplayDevice) {
    EXPECT_EQ(primaryVendorKindOf(-1), kPrimaryVendorNone);
    EXPECT_EQ(primaryVendorKindOf(0x10DE), kPrimaryVendorNvidia);
    EXPECT_EQ(primaryVendorKindOf(0x1002), kPrimaryVendorAmd);
    EXPECT_EQ(primaryVendorKindOf(0x5333), kPrimaryVendorS3);
    EXPECT_EQ(primaryVendorKindOf(0x8086), kPrimaryVendorIntel);
    EXPECT_EQ(primaryVendorKindOf(0x1039), kPrimaryVendorOther);
    EXPECT_EQ(primaryVendorKindOf(0), kPrimaryVendorOther);
}

// A record without a vendor reader answers every live read with false and keeps its never-read values.
TEST(KalidorFacade, RecordsOfOtherVendorsReadNothingLive) {
    Kalidor* library = Kalidor::getInstance();
    ASSERT_NE(library, nullptr);
    auto record = std::make_unique<GpuRecord>();
    record->vendorId = 0x8086;
    gGlobals.gpus.append(std::move(record));
    gGlobals.snapshot.reset();  // the facade reads its static facts from the record made here

    float percent = 7.0f, rpm = 7.0f;
    EXPECT_FALSE(library->readGpuFanSpeed(0, &percent, &rpm));
    EXPECT_FLOAT_EQ(percent, 7.0f);
    EXPECT_FLOAT_EQ(gGlobals.gpus.at(0)->fanPercent, -1.0f);
    EXPECT_FLOAT_EQ(library->readGpuCoreTemperature(0), 0.0f);
    EXPECT_FALSE(library->readGpuPerfLevel(0, 0, nullptr, nullptr, nullptr, nullptr, nullptr));

    EXPECT_EQ(library->getGpuBusId(5), -1);
    EXPECT_EQ(library->getGpuName(5), nullptr);
    EXPECT_FALSE(library->getGpuPciIds(5, nullptr, nullptr, nullptr, nullptr));
    EXPECT_TRUE(library->getGpuPciIds(0, nullptr, nullptr, nullptr, nullptr));
    gGlobals.gpus.clear();
    gGlobals.snapshot.reset();
}

TEST(KalidorFacade, ShutdownBeforeAStartedScanReportsFalse) {
    Kalidor* library = Kalidor::getInstance();
    ASSERT_NE(library, nullptr);
    ASSERT_FALSE(gGlobals.started);
    EXPECT_FALSE(library->shutdown());
}

}  // namespace
