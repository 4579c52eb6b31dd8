#include <gtest/gtest.h>

#include <cstdio>
#include <set>
#include <string>

#include "tests/unit/fake_nvml_machine.h"
#include "support/fixture_library.h"
#include "support/sysfs_tree.h"

namespace {

using namespace Kalidornm;

uint32_t vendorOf(Kalidor& library, int gpu) {
    uint32_t vendor = 0;
    library.getGpuPciIds(gpu, &vendor, nullptr, nullptr, nullptr);
    return vendor;
}

// Regression: a card on a kernel driver its vendor's backend does not read (nouveau) or on no driver at all
// got no record, so the report said "no GPU" for a machine whose log listed the cards.
TEST(EveryGpuRecord, CardsOnOtherDriversOrNoneGetRecordsFromThePciLayer) {
    SysfsTree tree;
    SysfsTree::Device nouveau = SysfsTree::gpu("0000:01:00.0", 0x10DE, 0x1C82, "nouveau");
    nouveau.bootVga = true;
    tree.addDevice(nouveau);
    tree.addDevice(SysfsTree::gpu("0000:02:00.0", 0x1002, 0x6798, "radeon"));
    tree.addDevice(SysfsTree::gpu("0000:03:00.0", 0x5333, 0x8A01, ""));
    tree.write("/proc/sys/kernel/osrelease", "6.1.0-18-amd64\n");
    FakeNvmlMachine nvml("gpu 0 pci_device 0x1C8210DE\ngpu 0 bus 1\n");
    FixtureLibrary started({tree.root(), nvml.path()});
    Kalidor& library = started.library();

    // The radeon card is the AMD backend's (it reads radeon's hwmon), so it comes before the PCI layer's records.
    ASSERT_EQ(library.getGpuCount(), 3u);
    EXPECT_EQ(vendorOf(library, 0), 0x1002u);
    EXPECT_STREQ(library.getGpuDriverVersion(0), "6.1.0-18-amd64 r600");
    EXPECT_EQ(vendorOf(library, 1), 0x10DEu);
    EXPECT_STREQ(library.getGpuName(1), "NVIDIA Corporation GP107 [GeForce GTX 1050 Ti]");
    EXPECT_STREQ(library.getGpuCodename(1), "GP107");  // figures from the GPU database
    EXPECT_STREQ(library.getGpuDriverVersion(1), "6.1.0-18-amd64 nouveau");
    EXPECT_EQ(vendorOf(library, 2), 0x5333u);
    EXPECT_EQ(library.getGpuBusId(2), 3);
    for (int gpu = 0; gpu < 3; ++gpu) {
        float percent = -2;
        EXPECT_FALSE(library.readGpuFanSpeed(gpu, &percent, nullptr)) << gpu;
        EXPECT_FALSE(library.readGpuPowerUsage(gpu, nullptr, nullptr)) << gpu;
        EXPECT_FLOAT_EQ(percent, -2.0f);
    }
    EXPECT_EQ(library.getDriverVersionNumber(), 0u);  // nouveau: NVIDIA's library was not asked
}

TEST(EveryGpuRecord, AnNvidiaGpuWhoseLibraryFailsOrRefusesItKeepsItsRecord) {
    SysfsTree tree;
    tree.addDevice(SysfsTree::gpu("0000:01:00.0", 0x10DE, 0x1180, "nvidia"));
    tree.addDevice(SysfsTree::gpu("0000:02:00.0", 0x10DE, 0x1180, "nvidia"));
    tree.write("/sys/module/nvidia/version", "550.54.15\n");
    {
        FakeNvmlMachine failing("init_fails\n");
        FixtureLibrary started({tree.root(), failing.path()});
        Kalidor& library = started.library();
        ASSERT_EQ(library.getGpuCount(), 2u);
        EXPECT_STREQ(library.getGpuName(1), "NVIDIA GeForce GTX 680");
        EXPECT_STREQ(library.getGpuDriverVersion(1), "550.54.15 nvidia");
        EXPECT_FALSE(library.readGpuClockFrequencies(1, 0, nullptr, nullptr));
    }
    // The driver knows the GPU on bus 1 only: the one on bus 2 still gets its record, without live values.
    FakeNvmlMachine oneKnown("gpu 0 pci_device 0x118010DE\ngpu 0 bus 1\ngpu 0 temp 50\n");
    FixtureLibrary started({tree.root(), oneKnown.path()});
    Kalidor& library = started.library();
    ASSERT_EQ(library.getGpuCount(), 2u);
    EXPECT_FLOAT_EQ(library.readGpuCoreTemperature(0), 50.0f);
    EXPECT_EQ(library.getGpuBusId(1), 2);
    EXPECT_STREQ(library.getGpuName(1), "NVIDIA GeForce GTX 680");
    EXPECT_FALSE(library.readGpuTemperatures(1, nullptr, nullptr, nullptr, nullptr));
}

// Regression: an S3 card with no kernel driver, and the primary driver row of two such cards, got the software
// rasterizer's driver line ("<kernel> llvmpipe").
TEST(EveryGpuRecord, CardsWithoutAKernelDriverHaveNoDriverValues) {
    SysfsTree tree;
    SysfsTree::Device first = SysfsTree::gpu("0000:01:00.0", 0x5333, 0x8A01, "");
    first.bootVga = true;
    tree.addDevice(first);
    SysfsTree::Device second = first;
    second.address = "0000:02:00.0";
    second.bootVga = false;
    tree.addDevice(second);
    tree.write("/proc/sys/kernel/osrelease", "6.1.0-18-amd64\n");
    FixtureLibrary started({tree.root(), ""});
    Kalidor& library = started.library();
    ASSERT_EQ(library.getGpuCount(), 2u);
    EXPECT_STREQ(library.getGpuDriverVersion(0), "");
    EXPECT_STREQ(library.getGpuDriverVersion(1), "");
    EXPECT_FALSE(library.caps()->initGraphicsControllerData());
    EXPECT_STREQ(library.getPrimaryOpenGLDriverName(), "");
    EXPECT_STREQ(library.getPrimaryDriverVersion(), "Unknown version");
}

// Regression: an amdgpu card without a DRM card node was dropped by the adapter filter.
TEST(EveryGpuRecord, AnAmdgpuCardWithoutACardNodeIsReadAsAnyOther) {
    SysfsTree tree;
    const std::string dir = tree.addDevice(SysfsTree::gpu("0000:03:00.0", 0x1002, 0x73BF, "amdgpu"));
    tree.write(dir + "/hwmon/hwmon1/temp1_input", "47000\n");
    FixtureLibrary started({tree.root(), ""});
    Kalidor& library = started.library();
    ASSERT_EQ(library.getGpuCount(), 1u);
    EXPECT_EQ(vendorOf(library, 0), 0x1002u);
    EXPECT_FLOAT_EQ(library.readGpuCoreTemperature(0), 47.0f);
    EXPECT_EQ(library.getAmdAdapterCount(), 1u);
}

// Regression: AMD cards were told apart by bus number alone, so cards on 64 PCI domains made one record.
TEST(EveryGpuRecord, CardsOnManyPciDomainsAreAsManyGpusEachReadFromItsOwnFiles) {
    SysfsTree tree;
    for (int domain = 0; domain < 64; ++domain) {
        char address[16];
        std::snprintf(address, sizeof address, "%04x:03:00.0", domain);
        SysfsTree::Device card = SysfsTree::gpu(address, 0x1002, 0x73BF, "amdgpu");
        card.drmCard = "card" + std::to_string(domain);
        card.connectors = {card.drmCard + "-DP-1"};
        const std::string dir = tree.addDevice(card);
        tree.write(dir + "/hwmon/hwmon" + std::to_string(domain) + "/temp1_input", std::to_string(30000 + domain * 500));
    }
    FixtureLibrary started({tree.root(), ""});
    Kalidor& library = started.library();
    ASSERT_EQ(library.getGpuCount(), 64u);
    EXPECT_EQ(library.getAmdAdapterCount(), 64u);
    std::set<float> temperatures;
    for (int gpu = 0; gpu < 64; ++gpu) temperatures.insert(library.readGpuCoreTemperature(gpu));
    EXPECT_EQ(temperatures.size(), 64u);
    EXPECT_FLOAT_EQ(library.readGpuCoreTemperature(1), 30.5f);
}

}  // namespace
