#include <gtest/gtest.h>

#include "kalidor/hardware_caps.h"
#include "kalidor/kalidor.h"

namespace {

using namespace Kalidornm;

struct PrimaryIds {
    int32_t vendor, device, subdevice;
};

void setPrimary(Kalidor& library, PrimaryIds ids) {
    PrimaryDisplay& primary = library.caps()->display.primary;
    primary.vendorId = ids.vendor;
    primary.deviceId = ids.device;
    primary.subdeviceId = ids.subdevice;
}

TEST(KalidorPrimaryNames, VendorAndDatabaseNameFollowThePrimaryIds) {
    Kalidor* library = Kalidor::getInstance();
    ASSERT_NE(library, nullptr);
    ASSERT_NE(library->caps(), nullptr);
    const PrimaryDisplay saved = library->caps()->display.primary;

    // No display device: the ids stay -1.
    EXPECT_STREQ(library->getPrimaryVendorName(), "Unknown");
    EXPECT_STREQ(library->getPrimaryGpuDbName(), "Unknown");

    setPrimary(*library, {0x10DE, 0x1401, 0x1234});
    EXPECT_STREQ(library->getPrimaryVendorName(), "NVIDIA");
    EXPECT_STREQ(library->getPrimaryGpuDbName(), "NVIDIA GeForce GTX 960");

    setPrimary(*library, {0x1002, 0x68F9, 0x2126});
    EXPECT_STREQ(library->getPrimaryVendorName(), "AMD/ATI");
    EXPECT_STREQ(library->getPrimaryGpuDbName(), "ATI Radeon HD 6350");

    setPrimary(*library, {0x1039, 0x6330, 0});
    EXPECT_STREQ(library->getPrimaryVendorName(), "Silicon Integrated Systems");
    EXPECT_STREQ(library->getPrimaryGpuDbName(), "Unknown");

    library->caps()->display.primary = saved;
}

}  // namespace
