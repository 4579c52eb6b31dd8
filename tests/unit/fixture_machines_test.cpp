#include <gtest/gtest.h>

#include <string>

#include "kalidor/kalidor.h"
#include "kalidor/library_globals.h"
#include "kalidor/platform/display_device_source.h"

namespace {

using namespace Kalidornm;

// Each test starts the library on a machine replayed from tests/fixtures/sysfs/<machine>/, without an OpenGL
// context and without vendor libraries, and looks at it through the facade.
class FixtureMachine : public ::testing::Test {
protected:
    static KalidorSources sourcesFor(const char* machine, bool softwareEgl = false) {
        KalidorSources sources;
        sources.rootDir = std::string(SYSFS_FIXTURES) + "/" + machine;
        sources.pciIdsFile = std::string(SYSFS_FIXTURES) + "/pci.ids";
        sources.eglLibrary = softwareEgl ? FAKE_EGL_SOFTWARE : "";
        return sources;
    }

    Kalidor& start(const char* machine, bool softwareEgl = false) {
        Kalidor::setSources(sourcesFor(machine, softwareEgl));
        m_library = Kalidor::getInstance();
        EXPECT_NE(m_library, nullptr);
        EXPECT_TRUE(m_library->startup(0, 0, 64, 64, 0, 0, true));
        return *m_library;
    }

    const DisplaySlot& slot(int i) const { return m_library->caps()->display.slots[i]; }

    // A record made the way a vendor reader makes one: matched to its display slot, then given driver values.
    GpuRecord vendorRecord(uint32_t vendor, uint32_t device) {
        HardwareCaps& caps = *m_library->caps();
        GpuRecord record;
        record.vendorId = vendor;
        record.deviceId = device;
        record.displaySlot = caps.findDisplaySlot(vendor, device, 0, 0, kNoDisplaySlot);
        if (record.displaySlot != kNoDisplaySlot) {
            copyText(record.displayDeviceKey, caps.display.slots[record.displaySlot].deviceKey);
            record.pciAddress = caps.display.slots[record.displaySlot].address;
        }
        return record;
    }

    void TearDown() override {
        if (m_library && !m_library->shutdown()) {
            gGlobals.gpus.clear();
            gGlobals.windows.clear();
            gGlobals.mainWindow = nullptr;
            Kalidor::destroyInstance();
        }
        gGlobals.summary = GpuSummary{};
        gGlobals.gpu_db_index = -1;
        gGlobals.hasDisplayDevice = false;
        Kalidor::setSources(KalidorSources{});
    }

    Kalidor* m_library = nullptr;
};

// Regression: without NVIDIA's management library the card had no record at all and the report said "no
// GPU" for a machine whose log listed it.
TEST_F(FixtureMachine, DesktopWithOneNvidiaCardAndNoDriverLibrary) {
    Kalidor& library = start("nvidia-desktop");
    EXPECT_STREQ(slot(0).deviceId, "PCI\\VEN_10DE&DEV_2204&SUBSYS_403B1458&REV_A1");
    EXPECT_STREQ(slot(0).deviceString, "NVIDIA Corporation GA102 [GeForce RTX 3090]");
    EXPECT_STREQ(slot(0).deviceName, "/dev/dri/card0");
    EXPECT_STREQ(slot(0).deviceKey, "/sys/bus/pci/devices/0000:01:00.0");
    EXPECT_STREQ(slot(1).deviceId, "");  // the host bridge is no display device

    // Without the vendor's library the card's record comes from the PCI layer and the GPU database, with the
    // kernel driver's values and no live reading.
    EXPECT_TRUE(library.hasDisplayDevice());
    ASSERT_EQ(library.getGpuCount(), 1u);
    EXPECT_STREQ(library.getGpuName(0), "NVIDIA GeForce RTX 3090");
    EXPECT_STREQ(library.getGpuCodename(0), "GA102");
    EXPECT_EQ(library.getGpuBusId(0), 1);
    EXPECT_EQ(library.getGpuRopUnits(0), 112);
    EXPECT_STREQ(library.getGpuDriverVersion(0), "535.104.05 nvidia");
    EXPECT_STREQ(library.getGpuDisplayDeviceString(0), "NVIDIA Corporation GA102 [GeForce RTX 3090]");
    float percent = -2;
    EXPECT_FALSE(library.readGpuFanSpeed(0, &percent, nullptr));
    EXPECT_FLOAT_EQ(percent, -2.0f);
    EXPECT_FALSE(library.readGpuPowerUsage(0, nullptr, nullptr));
    EXPECT_TRUE(library.isPrimaryNvidia());
    EXPECT_EQ(library.getPrimaryVendorId(), 0x10DEu);
    EXPECT_EQ(library.getPrimaryDeviceId(), 0x2204u);
    EXPECT_EQ(library.getPrimarySubvendorId(), 0x1458u);
    EXPECT_EQ(library.getPrimarySubdeviceId(), 0x403Bu);
    EXPECT_STREQ(library.getPrimaryRevisionText(), "A1");
    EXPECT_STREQ(library.getPrimaryGpuName(), "NVIDIA GeForce RTX 3090");
    EXPECT_STREQ(library.getPrimaryCodename(), "GA102");
    EXPECT_EQ(library.getPrimaryShaderCores(), 10496);
    EXPECT_EQ(library.getPrimaryTmus(), 328);
    EXPECT_EQ(library.getPrimaryTdp(), 350);
    EXPECT_EQ(library.getPrimaryGpuCount(), 1u);
    EXPECT_STREQ(library.getPrimaryBiosVersion(), "n.a.");

    // The CPU, memory and OS block comes from the machine's /proc, /sys and /etc.
    EXPECT_STREQ(library.getCpuName(), "Intel(R) Core(TM) i7-9700K CPU @ 3.60GHz");
    EXPECT_EQ(library.getCpuLogicalCores(), 8);
    EXPECT_EQ(library.getTotalMemoryKb(), 32768000u);
    EXPECT_EQ(library.getPhysicalMemoryBytes(), 0xFFFFFFFFu);  // saturates at the 32-bit limit
    EXPECT_EQ(library.getInstalledMemoryMb(), 3u * 128u);      // three online blocks of 128 MB
    EXPECT_EQ(library.getMemoryLoadPercent(), 75u);
    EXPECT_STREQ(library.getOsDescription(), "Debian GNU/Linux 12 (bookworm) 64-bit - kernel 6.1.0-18-amd64");
    EXPECT_STREQ(library.getOsShortName(), "Linux 64-bit");
    EXPECT_FALSE(library.isVista());

    // The driver values a vendor reader's record gets, and the primary block the OpenGL probe asks for.
    GpuRecord record = vendorRecord(0x10DE, 0x2204);
    ASSERT_TRUE(m_library->caps()->readGpuDriverRegistry(record));
    EXPECT_STREQ(record.driverVersion, "535.104.05 nvidia");
    EXPECT_STREQ(record.driverDate, "Sat Aug 19 01:15:15 UTC 2023");
    EXPECT_STREQ(record.openGLDriverName, "nvidia");
    EXPECT_STREQ(record.catalystVersion, "");
    ASSERT_TRUE(m_library->caps()->initGraphicsControllerData());
    EXPECT_STREQ(library.getPrimaryDriverVersion(), "535.104.05");
    EXPECT_STREQ(library.getPrimaryDriverDescription(), "nvidia");
    EXPECT_STREQ(library.getPrimaryDriverDate(), "Sat Aug 19 01:15:15 UTC 2023");
    EXPECT_STREQ(library.getPrimaryOpenGLDriverName(), "nvidia");
    EXPECT_STREQ(library.getPrimaryDeviceDescription(), "NVIDIA Corporation GA102 [GeForce RTX 3090]");
}

TEST_F(FixtureMachine, HybridLaptopListsTheSuspendedDgpuWithoutWakingIt) {
    Kalidor& library = start("hybrid-laptop");
    EXPECT_STREQ(slot(0).deviceString, "Intel Corporation TigerLake-LP GT2 [Iris Xe Graphics]");
    EXPECT_STREQ(slot(0).deviceName, "/dev/dri/card1");
    EXPECT_STREQ(slot(1).deviceId, "PCI\\VEN_1002&DEV_73FF&SUBSYS_1E021043&REV_C3");
    EXPECT_STREQ(slot(1).deviceString, "Advanced Micro Devices, Inc. [AMD/ATI] Navi 23 [Radeon RX 6600/6600 XT/6600M]");

    // The AMD reader's record comes first; the Intel GPU is an other adapter with a record of its own.
    ASSERT_EQ(library.getGpuCount(), 2u);
    uint32_t vendor = 0;
    ASSERT_TRUE(library.getGpuPciIds(0, &vendor, nullptr, nullptr, nullptr));
    EXPECT_EQ(vendor, 0x1002u);
    EXPECT_STREQ(library.getGpuName(1), "Intel Corporation TigerLake-LP GT2 [Iris Xe Graphics]");
    EXPECT_STREQ(library.getGpuCodename(1), "TigerLake-LP GT2");
    EXPECT_STREQ(library.getGpuDriverVersion(1), "6.5.0-14-generic iris");
    EXPECT_STREQ(library.getGpuDriverDate(1), "Mon Nov 20 18:15:30 UTC 2");
    EXPECT_EQ(library.getGpuTextureUnits(1), 0);  // the database's -1 reads 0 in a record
    EXPECT_EQ(library.getGpuTextureUnits(2), -1);
    EXPECT_TRUE(library.isPrimaryIntel());
    EXPECT_STREQ(library.getPrimaryGpuName(), "Intel Iris Xe Graphics");
    EXPECT_EQ(library.getPrimaryTmus(), -1);  // the summary shows the database's value as stored
    EXPECT_EQ(library.getCpuLogicalCores(), 6);
    EXPECT_STREQ(library.getOsDescription(), "Ubuntu 22.04.3 LTS 64-bit - kernel 6.5.0-14-generic");

    // The AMD reader's record: driver and kernel facts, but no attribute of the sleeping device.
    GpuRecord amd = vendorRecord(0x1002, 0x73FF);
    EXPECT_EQ(amd.displaySlot, 1u);
    ASSERT_TRUE(m_library->caps()->readGpuDriverRegistry(amd));
    EXPECT_STREQ(amd.driverVersion, "6.5.0-14-generic radeonsi");
    EXPECT_STREQ(amd.biosVersion, "");
    EXPECT_EQ(amd.memorySizeMb, 0u);
    EXPECT_EQ(amd.isCrimson, 0u);
}

// Identical neighbours make one display slot, as the operating system's own list does; each card is a GPU
// with a record of its own all the same.
TEST_F(FixtureMachine, TwoIdenticalCardsShareOneSlot) {
    Kalidor& library = start("two-identical");
    EXPECT_STREQ(slot(0).deviceId, "PCI\\VEN_8086&DEV_56A0&SUBSYS_10208086&REV_08");
    EXPECT_STREQ(slot(1).deviceId, "");
    HardwareCaps& caps = *m_library->caps();
    EXPECT_EQ(caps.findDisplaySlot(0x8086, 0x56A0, 0x8086, 0x1020, kNoDisplaySlot), 0u);
    EXPECT_EQ(caps.findDisplaySlot(0x8086, 0x56A0, 0x8086, 0x1020, 0), kNoDisplaySlot);
    ASSERT_EQ(library.getGpuCount(), 2u);
    EXPECT_EQ(library.getGpuBusId(0), 3);
    EXPECT_EQ(library.getGpuBusId(1), 4);
    EXPECT_STREQ(library.getGpuDisplayDeviceString(1), "");  // the slot went to the first card
    EXPECT_STREQ(library.getGpuName(1), library.getGpuName(0));
    EXPECT_STREQ(library.getGpuDriverVersion(1), library.getGpuDriverVersion(0));
    EXPECT_EQ(library.getGpuRopUnits(0), 128);
    EXPECT_EQ(library.getGpuShaderCores(0), 512);  // asked from the database on first use
    EXPECT_EQ(gGlobals.gpus.at(0)->shaderCores, 512);
    EXPECT_EQ(library.getGpuTdp(0), 225);
}

TEST_F(FixtureMachine, ServerBootsOnTheBmcAndListsTheDatacenterGpuAfterIt) {
    Kalidor& library = start("server-aspeed");
    // The ASPEED device sits later on the bus but is the boot VGA device, so it is the primary.
    EXPECT_STREQ(slot(0).deviceString, "ASPEED Technology, Inc. ASPEED Graphics Family");
    EXPECT_STREQ(slot(1).deviceString, "NVIDIA Corporation GH100 [H100 SXM5 80GB]");
    EXPECT_STREQ(slot(1).deviceName, "0000:01:00.0");  // no DRM node: the PCI address
    EXPECT_EQ(library.getPrimaryVendorKind(), int32_t(kPrimaryVendorOther));

    // The H100 has its NVIDIA record even without the driver library; NVIDIA records come first.
    ASSERT_EQ(library.getGpuCount(), 2u);
    uint32_t vendor = 0, device = 0;
    ASSERT_TRUE(library.getGpuPciIds(0, &vendor, &device, nullptr, nullptr));
    EXPECT_EQ(vendor, 0x10DEu);
    ASSERT_TRUE(library.getGpuPciIds(1, &vendor, &device, nullptr, nullptr));
    EXPECT_EQ(vendor, 0x1A03u);
    EXPECT_EQ(device, 0x2000u);
    EXPECT_STREQ(library.getGpuDriverVersion(1), "5.14.0-362.8.1.el9_3.x86_64 llvmpipe");
    EXPECT_STREQ(library.getGpuDriverDate(1), "Tue Oct 3 11:12:36 EDT 2023");

    // No database row for the primary: the name falls back to record 0's display string, the codename is
    // "n.a.".
    EXPECT_EQ(gGlobals.gpu_db_index, -1);
    EXPECT_STREQ(library.getPrimaryGpuName(), "NVIDIA Corporation GH100 [H100 SXM5 80GB]");
    EXPECT_STREQ(library.getPrimaryCodename(), "n.a.");
    EXPECT_EQ(library.getPrimaryShaderCores(), 0);
    EXPECT_STREQ(library.getCpuName(), "AMD EPYC 9454 48-Core Processor");
    EXPECT_EQ(library.getCpuLogicalCores(), 64);
}

TEST_F(FixtureMachine, SoftwareRasterizerStandsInWhenNoPciDisplayDeviceExists) {
    Kalidor& library = start("software-only", true);
    EXPECT_STREQ(slot(0).deviceId, "SWR\\VEN_0000&DEV_0000&SUBSYS_00000000&REV_00");
    EXPECT_STREQ(slot(0).deviceString, "Mesa software rasterizer");
    EXPECT_TRUE(library.hasDisplayDevice());
    ASSERT_EQ(library.getGpuCount(), 1u);
    EXPECT_STREQ(library.getGpuName(0), "Mesa software rasterizer");
    EXPECT_STREQ(library.getGpuDisplayDeviceId(0), "SWR\\VEN_0000&DEV_0000&SUBSYS_00000000&REV_00");
    // No sysfs directory, no driver values.
    EXPECT_STREQ(library.getGpuDriverVersion(0), "");
    EXPECT_FALSE(m_library->caps()->initGraphicsControllerData());
    EXPECT_STREQ(library.getPrimaryDriverVersion(), "Unknown version");
    EXPECT_STREQ(library.getPrimaryGpuName(), "Mesa software rasterizer");
    EXPECT_EQ(library.getPrimaryVendorKind(), int32_t(kPrimaryVendorOther));

    // The same tree with an EGL library that offers no software device has no display device at all.
    EXPECT_TRUE(listDisplayDevices(sourcesFor("software-only", false)).empty());
}

TEST_F(FixtureMachine, MachineWithNothingStartsWithoutADisplayDevice) {
    Kalidor& library = start("nothing");
    EXPECT_FALSE(library.hasDisplayDevice());
    EXPECT_FALSE(gGlobals.started);
    EXPECT_STREQ(library.getPrimaryGpuName(), "");
    EXPECT_EQ(library.getGpuCount(), 0u);
    EXPECT_EQ(library.getGpuDisplayDeviceId(0), nullptr);
    // The processor block is read all the same; the OS text reaches the summary only through the scan.
    EXPECT_STREQ(library.getCpuName(), "AMD EPYC");
    EXPECT_STREQ(library.getOsDescription(), "");
}

}  // namespace
