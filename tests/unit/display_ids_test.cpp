#include <gtest/gtest.h>

#include "kalidor/platform/pci_names.h"
#include "kalidor/driver_values.h"
#include "kalidor/hardware_caps.h"

namespace {

using namespace Kalidornm;

TEST(DeviceIdString, FieldsSitAtFixedPositionsWithTheSubdeviceFirst) {
    EXPECT_EQ(pciDeviceIdString({0x10DE, 0x2330, 0x10DE, 0x16C1, 0xA1}), "PCI\\VEN_10DE&DEV_2330&SUBSYS_16C110DE&REV_A1");
    EXPECT_EQ(pciDeviceIdString({0x8086, 0x9a49, 0x1043, 0x1e02, 1}), "PCI\\VEN_8086&DEV_9A49&SUBSYS_1E021043&REV_01");
}

HardwareCaps capsWithSlots(std::initializer_list<PciIds> slots) {
    HardwareCaps caps;
    int i = 0;
    for (const PciIds& ids : slots) {
        caps.display.slots[i].ids = ids;
        copyText(caps.display.slots[i++].deviceId, pciDeviceIdString(ids).c_str());
    }
    return caps;
}

TEST(FindDisplaySlot, MatchesVendorAndDeviceAndTreatsZeroSubIdsAsWildcards) {
    const HardwareCaps caps = capsWithSlots({
        {0x8086, 0x9A49, 0x1043, 0x1E02, 0x01},
        {0x1002, 0x73FF, 0x1043, 0x1E02, 0xC3},
        {0x1002, 0x73FF, 0, 0, 0xC3},
    });
    EXPECT_EQ(caps.findDisplaySlot(0x1002, 0x73FF, 0x1043, 0x1E02, kNoDisplaySlot), 1u);
    EXPECT_EQ(caps.findDisplaySlot(0x1002, 0x73FF, 0, 0, kNoDisplaySlot), 1u);
    // The second of two cards skips the slot the first took; a zero sub id in the slot fits any.
    EXPECT_EQ(caps.findDisplaySlot(0x1002, 0x73FF, 0x1043, 0x1E02, 1), 2u);
    EXPECT_EQ(caps.findDisplaySlot(0x1002, 0x73FF, 0x1458, 0x1E02, kNoDisplaySlot), 2u);
    EXPECT_EQ(caps.findDisplaySlot(0x10DE, 0x2204, 0, 0, kNoDisplaySlot), kNoDisplaySlot);
    // Vendor 0 and device 0 do not match the empty slots past the used part of the table.
    EXPECT_EQ(caps.findDisplaySlot(0, 0, 0, 0, kNoDisplaySlot), kNoDisplaySlot);
}

TEST(DriverValues, GlDriverFollowsTheKernelDriver) {
    EXPECT_STREQ(openGlDriverForKernelDriver("amdgpu"), "radeonsi");
    EXPECT_STREQ(openGlDriverForKernelDriver("i915"), "iris");
    EXPECT_STREQ(openGlDriverForKernelDriver("xe"), "iris");
    EXPECT_STREQ(openGlDriverForKernelDriver("nouveau"), "nouveau");
    EXPECT_STREQ(openGlDriverForKernelDriver("nvidia"), "nvidia");
    EXPECT_STREQ(openGlDriverForKernelDriver("virtio_gpu"), "virgl");
    EXPECT_STREQ(openGlDriverForKernelDriver("ast"), "llvmpipe");  // a real driver that draws nothing itself
    // Regression: no driver at all read as the software rasterizer.
    EXPECT_STREQ(openGlDriverForKernelDriver(""), "");
    EXPECT_STREQ(openGlDriverForKernelDriver("vfio-pci"), "");
}

TEST(DriverValues, VersionAndDateComeFromTheModuleOrTheKernel) {
    SysfsDriverFacts facts;
    facts.kernelRelease = "6.1.0-18-amd64";
    facts.kernelVersion = "#1 SMP PREEMPT_DYNAMIC Debian 6.1.76-1 (2024-02-01)";
    EXPECT_EQ(driverVersionOf(facts), "6.1.0-18-amd64");
    EXPECT_EQ(driverDateOf(facts), "2024-02-01");

    facts.kernelVersion = "#1 SMP PREEMPT_DYNAMIC Mon Nov 20 18:15:30 UTC 2023";
    EXPECT_EQ(driverDateOf(facts), "Mon Nov 20 18:15:30 UTC 2023");
    facts.kernelVersion = "#1 SMP PREEMPT_DYNAMIC @0";
    EXPECT_EQ(driverDateOf(facts), "@0");
    facts.kernelVersion = "#1 SMP";
    EXPECT_EQ(driverDateOf(facts), "");

    // The kernel keeps 64 bytes of its version text: Ubuntu's long prefix cuts the year to "2", which is left
    // out. A whole year that ends at the limit stays.
    facts.kernelVersion = "#14~22.04.1-Ubuntu SMP PREEMPT_DYNAMIC Mon Nov 20 18:15:30 UTC 2";
    EXPECT_EQ(driverDateOf(facts), "Mon Nov 20 18:15:30 UTC");
    facts.kernelVersion = "#1 SMP PREEMPT_DYNAMIC " + std::string(12, 'x') + " Mon Nov 20 18:15:30 UTC 2023";
    ASSERT_EQ(facts.kernelVersion.size(), 64u);
    EXPECT_EQ(driverDateOf(facts), "Mon Nov 20 18:15:30 UTC 2023");

    facts.moduleVersion = "535.104.05";
    facts.nvidiaVersionLine =
        "NVRM version: NVIDIA UNIX Open Kernel Module for x86_64  535.104.05  Release Build  "
        "(dvs-builder@U16-T02-35-3)  Sat Aug 19 01:02:37 UTC 2023";
    EXPECT_EQ(driverVersionOf(facts), "535.104.05");
    EXPECT_EQ(driverDateOf(facts), "Sat Aug 19 01:02:37 UTC 2023");
}

}  // namespace

// libpci calls its message hooks when a name list is missing or lacks an id; those hooks are unset until
// pci_init, so a lookup against a fixture list without the device used to crash the start-up.
TEST(PciDeviceNames, MissingListsAndUnknownIdsGiveNumericNamesNotACrash) {
    const std::string fixtureList = std::string(SYSFS_FIXTURES) + "/pci.ids";
    EXPECT_FALSE(Kalidornm::pciDeviceName(fixtureList, 0x1002, 0x73BF).empty());
    EXPECT_FALSE(Kalidornm::pciDeviceName(fixtureList, 0xABCD, 0x1234).empty());
    EXPECT_FALSE(Kalidornm::pciDeviceName("/nonexistent/pci.ids", 0x10DE, 0x2330).empty());
}
