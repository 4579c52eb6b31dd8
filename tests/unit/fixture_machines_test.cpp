#include <gtest/gtest.h>

#include <string>

#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"
#include "kalidor/platform/display_device_source.h"
#include "support/fixture_library.h"

namespace {

using namespace Kalidornm;

// Machines replayed from tests/fixtures/sysfs/<machine>/, looked at through the facade for what their
// golden reports (tests/golden/machines) do not show: display slots, summary figures, driver values.
const DisplaySlot& slot(Kalidor& library, int i) { return library.caps()->display.slots[i]; }

// Regression: without NVIDIA's management library the card had no record at all and the report said "no
// GPU" for a machine whose log listed it.
TEST(FixtureMachine, DesktopWithOneNvidiaCardAndNoDriverLibrary) {
    FixtureLibrary started({"nvidia-desktop", ""});
    Kalidor& library = started.library();
    EXPECT_STREQ(slot(library, 0).deviceId, "PCI\\VEN_10DE&DEV_2204&SUBSYS_403B1458&REV_A1");
    EXPECT_STREQ(slot(library, 0).deviceString, "NVIDIA Corporation GA102 [GeForce RTX 3090]");
    EXPECT_STREQ(slot(library, 0).deviceName, "/dev/dri/card0");
    EXPECT_STREQ(slot(library, 0).deviceKey, "/sys/bus/pci/devices/0000:01:00.0");
    EXPECT_STREQ(slot(library, 1).deviceId, "");  // the host bridge is no display device

    ASSERT_EQ(library.getGpuCount(), 1u);
    EXPECT_STREQ(library.getGpuName(0), "NVIDIA GeForce RTX 3090");
    EXPECT_STREQ(library.getGpuDriverVersion(0), "535.104.05 nvidia");
    EXPECT_STREQ(library.getGpuDriverDate(0), "Sat Aug 19 01:15:15 UTC 2023");
    EXPECT_FALSE(library.readGpuFanSpeed(0, nullptr, nullptr));
    EXPECT_STREQ(library.getPrimaryRevisionText(), "A1");
    EXPECT_EQ(library.getPrimarySubdeviceId(), 0x403Bu);
    EXPECT_EQ(library.getPrimaryShaderCores(), 10496);
    EXPECT_EQ(library.getPrimaryTdp(), 350);

    // The memory block comes from the machine's /proc and /sys.
    EXPECT_EQ(library.getPhysicalMemoryBytes(), 0xFFFFFFFFu);  // saturates at the 32-bit limit
    EXPECT_EQ(library.getInstalledMemoryMb(), 3u * 128u);      // three online blocks of 128 MB
    EXPECT_EQ(library.getMemoryLoadPercent(), 75u);

    // The primary block the OpenGL probe asks for.
    ASSERT_TRUE(library.caps()->initGraphicsControllerData());
    gGlobals.snapshot.reset();  // the facade's static facts are read again, with the block just filled
    EXPECT_STREQ(library.getPrimaryDriverVersion(), "535.104.05");
    EXPECT_STREQ(library.getPrimaryDriverDescription(), "nvidia");
    EXPECT_STREQ(library.getPrimaryOpenGLDriverName(), "nvidia");
    EXPECT_STREQ(library.getPrimaryDeviceDescription(), "NVIDIA Corporation GA102 [GeForce RTX 3090]");
}

// Identical neighbours make one display slot, as the operating system's own list does; each card is a GPU
// with a record of its own all the same.
TEST(FixtureMachine, TwoIdenticalCardsShareOneSlot) {
    FixtureLibrary started({"two-identical", ""});
    Kalidor& library = started.library();
    EXPECT_STREQ(slot(library, 0).deviceId, "PCI\\VEN_8086&DEV_56A0&SUBSYS_10208086&REV_08");
    EXPECT_STREQ(slot(library, 1).deviceId, "");
    ASSERT_EQ(library.getGpuCount(), 2u);
    EXPECT_EQ(library.getGpuBusId(1), 4);
    EXPECT_STREQ(library.getGpuDisplayDeviceString(1), "");  // the slot went to the first card
    EXPECT_STREQ(library.getGpuName(1), library.getGpuName(0));
    EXPECT_STREQ(library.getGpuDriverVersion(1), library.getGpuDriverVersion(0));
    EXPECT_EQ(library.getGpuShaderCores(0), 512);  // asked from the database on first use
    EXPECT_EQ(gGlobals.gpus.at(0)->shaderCores, 512);
}

TEST(FixtureMachine, ServerBootsOnTheBmcAndListsTheDatacenterGpuFirst) {
    FixtureLibrary started({"server-aspeed", ""});
    Kalidor& library = started.library();
    // The ASPEED device sits later on the bus but is the boot VGA device, so it is the primary.
    EXPECT_STREQ(slot(library, 0).deviceString, "ASPEED Technology, Inc. ASPEED Graphics Family");
    EXPECT_STREQ(slot(library, 1).deviceName, "0000:01:00.0");  // no DRM node: the PCI address
    EXPECT_EQ(library.getPrimaryVendorKind(), int32_t(kPrimaryVendorOther));

    // The H100 has its NVIDIA record even without the driver library; NVIDIA records come first.
    ASSERT_EQ(library.getGpuCount(), 2u);
    EXPECT_EQ(library.getGpuBusId(0), 1);
    EXPECT_STREQ(library.getGpuDriverVersion(1), "5.14.0-362.8.1.el9_3.x86_64 llvmpipe");
    EXPECT_STREQ(library.getGpuDriverDate(1), "Tue Oct 3 11:12:36 EDT 2023");
    // No database row for the primary: the name falls back to record 0's display string.
    EXPECT_EQ(gGlobals.gpu_db_index, -1);
    EXPECT_STREQ(library.getPrimaryGpuName(), "NVIDIA Corporation GH100 [H100 SXM5 80GB]");
    EXPECT_STREQ(library.getPrimaryCodename(), "n.a.");
}

TEST(FixtureMachine, SoftwareRasterizerStandsInWhenNoPciDisplayDeviceExists) {
    FixtureLibrary started({"software-only", "", true});
    Kalidor& library = started.library();
    EXPECT_STREQ(slot(library, 0).deviceId, "SWR\\VEN_0000&DEV_0000&SUBSYS_00000000&REV_00");
    ASSERT_EQ(library.getGpuCount(), 1u);
    EXPECT_STREQ(library.getGpuName(0), "Mesa software rasterizer");
    EXPECT_EQ(library.getGpuBusId(0), -1);  // not on a PCI bus
    EXPECT_STREQ(library.getGpuDriverVersion(0), "");
    EXPECT_FALSE(library.caps()->initGraphicsControllerData());
    EXPECT_EQ(library.getPrimaryVendorKind(), int32_t(kPrimaryVendorOther));

    // The same tree with an EGL library that offers no software device has no display device at all.
    EXPECT_TRUE(listDisplayDevices(FixtureLibrary::sourcesFor({"software-only", ""})).empty());
}

TEST(FixtureMachine, MachineWithNothingStartsWithoutADisplayDevice) {
    FixtureLibrary started({"nothing", ""});
    ASSERT_TRUE(started.started());  // every check below would also hold for a library that never started
    Kalidor& library = started.library();
    EXPECT_FALSE(library.hasDisplayDevice());
    EXPECT_FALSE(gGlobals.started);
    EXPECT_EQ(library.getGpuDisplayDeviceId(0), nullptr);
    // The OS text reaches the summary only through the scan, which did not run.
    EXPECT_STREQ(library.getOsDescription(), "");
}

}  // namespace
