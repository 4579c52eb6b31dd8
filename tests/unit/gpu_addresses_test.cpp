#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "tests/unit/fake_nvml_machine.h"
#include "support/fixture_library.h"
#include "support/sysfs_tree.h"

namespace {

using namespace Kalidornm;

// An Intel GPU on bus 0 that the firmware booted on, an NVIDIA GPU on bus 1 and an AMD GPU on bus 2.
class ThreeVendorMachine {
public:
    ThreeVendorMachine()
        : m_nvml("driver 550.54.15\n"
                 "gpu 0 pci_device 0x118010DE\ngpu 0 pci_subsystem 0x096910DE\ngpu 0 bus 1\n"
                 "gpu 0 power 150000\ngpu 0 enforced 300000\ngpu 0 default_limit 300000\n"
                 "gpu 0 pcie_width 16\ngpu 0 fan 35\ngpu 0 temp 45\n") {
        SysfsTree::Device intel = SysfsTree::gpu("0000:00:02.0", 0x8086, 0x9A49, "i915");
        intel.bootVga = true;
        intel.drmCard = "card1";
        m_tree.addDevice(intel);
        m_tree.addDevice(SysfsTree::gpu("0000:01:00.0", 0x10DE, 0x1180, "nvidia"));
        SysfsTree::Device amd = SysfsTree::gpu("0000:02:00.0", 0x1002, 0x73BF, "amdgpu");
        amd.drmCard = "card0";
        amd.connectors = {"card0-DP-1", "card0-DP-2"};
        const std::string dir = m_tree.addDevice(amd);
        m_tree.write(dir + "/hwmon/hwmon3/temp1_input", "52000\n");
    }
    FixtureMachineSources sources() const { return {m_tree.root(), m_nvml.path()}; }

private:
    SysfsTree m_tree;
    FakeNvmlMachine m_nvml;
};

using GpuIdentity = std::tuple<std::string, int32_t, uint32_t>;  // name, bus, vendor

std::vector<GpuIdentity> gpusOf(Kalidor& library) {
    std::vector<GpuIdentity> gpus;
    for (uint32_t i = 0; i < library.getGpuCount(); ++i) {
        uint32_t vendor = 0;
        library.getGpuPciIds(int(i), &vendor, nullptr, nullptr, nullptr);
        gpus.emplace_back(library.getGpuName(int(i)), library.getGpuBusId(int(i)), vendor);
    }
    return gpus;
}

// The NVIDIA GPU on bus 1 sorts behind the Intel GPU on bus 0; every NVIDIA-only read follows it there.
TEST(GpuAddresses, SortingByBusChangesNoVendorRead) {
    ThreeVendorMachine machine;
    FixtureLibrary started(machine.sources());
    Kalidor& library = started.library();
    ASSERT_EQ(library.getGpuCount(), 3u);
    EXPECT_EQ(library.getGpuBusId(0), 1);  // NVIDIA records come first

    ASSERT_TRUE(library.sortGpusByBusId());
    EXPECT_EQ(library.getGpuBusId(0), 0);
    EXPECT_EQ(library.getGpuBusId(1), 1);
    EXPECT_EQ(library.getGpuBusId(2), 2);

    float percent = 0;
    uint32_t milliwatts = 0;
    ASSERT_TRUE(library.readGpuPowerUsage(1, &percent, &milliwatts));
    EXPECT_EQ(milliwatts, 150000u);
    EXPECT_FALSE(library.readGpuPowerUsage(0, &percent, &milliwatts));  // the Intel GPU has no such read
    float fan = 0;
    EXPECT_TRUE(library.readGpuFanSpeed(1, &fan, nullptr));
    EXPECT_FLOAT_EQ(fan, 35.0f);
    EXPECT_FLOAT_EQ(library.readGpuCoreTemperature(2), 52.0f);  // the AMD GPU's own files
}

// Start-up reads the scan's identities before the first snapshot (Vulkan's sleep rule needs them while the
// CPU clock is still being measured): they must name the same GPUs, in the same order, as the snapshot does,
// and follow a sort as the snapshot does.
TEST(GpuAddresses, TheScansIdentitiesAgreeWithTheSnapshotBeforeAndAfterSorting) {
    ThreeVendorMachine machine;
    FixtureLibrary started(machine.sources());
    Kalidor& library = started.library();
    for (const bool sorted : {false, true}) {
        if (sorted) {
            ASSERT_TRUE(library.sortGpusByBusId());
        }
        const std::vector<GpuSnapshot> scanned = library.scannedGpuIdentities();
        const std::vector<GpuSnapshot>& snapshot = library.snapshot().gpus;
        ASSERT_EQ(scanned.size(), 3u);
        ASSERT_EQ(scanned.size(), snapshot.size());
        for (size_t i = 0; i < scanned.size(); ++i) {
            EXPECT_EQ(scanned[i].vendorId, snapshot[i].vendorId) << i;
            EXPECT_EQ(scanned[i].deviceId, snapshot[i].deviceId) << i;
            EXPECT_EQ(scanned[i].hasPciIds, snapshot[i].hasPciIds) << i;
            EXPECT_EQ(scanned[i].pciAddress, snapshot[i].pciAddress) << i;
        }
        EXPECT_EQ(scanned[0].pciAddress, sorted ? "0000:00:02.0" : "0000:01:00.0");
    }
}

TEST(GpuAddresses, ASecondStartUpAfterShutdownGivesTheSameGpus) {
    ThreeVendorMachine machine;
    std::vector<GpuIdentity> first;
    {
        FixtureLibrary started(machine.sources());
        first = gpusOf(started.library());
    }
    ASSERT_EQ(first.size(), 3u);

    FixtureLibrary again(machine.sources());
    Kalidor& library = again.library();
    EXPECT_EQ(gpusOf(library), first);
    uint32_t milliwatts = 0;
    EXPECT_TRUE(library.readGpuPowerUsage(0, nullptr, &milliwatts));
    EXPECT_FLOAT_EQ(library.readGpuCoreTemperature(1), 52.0f);
    EXPECT_EQ(library.getAmdAdapterCount(), 1u);
}

}  // namespace
