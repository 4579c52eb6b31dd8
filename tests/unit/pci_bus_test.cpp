#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "kalidor/platform/pci_bus.h"
#include "kalidor/platform/pci_driver_facts.h"
#include "kalidor/platform/sysfs_files.h"
#include "support/sysfs_tree.h"

namespace {

using namespace Kalidornm;

const std::string kFixtures = SYSFS_FIXTURES;

PciAddress at(const char* text) { return *parsePciAddress(text); }

TEST(PciBus, OneScanOfAFixtureGivesTypedRecordsInAddressOrder) {
    const PciBus bus = PciBus::scan(kFixtures + "/amdgpu-two-cards");
    ASSERT_EQ(bus.devices().size(), 5u);  // two bridges, two cards, one audio function
    for (size_t i = 1; i < bus.devices().size(); ++i) EXPECT_LT(bus.devices()[i - 1].address, bus.devices()[i].address);

    const PciDevice* hawaii = bus.find(at("0000:03:00.0"));
    ASSERT_NE(hawaii, nullptr);
    EXPECT_EQ(hawaii->ids.vendor, 0x1002u);
    EXPECT_EQ(hawaii->ids.device, 0x67B0u);
    EXPECT_EQ(hawaii->driver, "amdgpu");
    EXPECT_EQ(hawaii->drmCard, "card0");
    EXPECT_EQ(hawaii->connectors, (std::vector<std::string>{"card0-DP-1", "card0-HDMI-A-1"}));
    EXPECT_NE(hawaii->hwmonDir.find("/hwmon/hwmon0"), std::string::npos);
    EXPECT_EQ(hawaii->sysfsPath, "/sys/bus/pci/devices/0000:03:00.0");
    EXPECT_FALSE(hawaii->asleep());

    const PciDevice* audio = bus.find(at("0000:03:00.1"));
    ASSERT_NE(audio, nullptr);
    EXPECT_FALSE(audio->isDisplay());
    EXPECT_EQ(audio->driver, "snd_hda_intel");
    EXPECT_EQ(bus.displayDevices().size(), 2u);
}

TEST(PciBus, TheBootDeviceLeadsTheDisplayDevicesAndSleepersAreKnown) {
    const PciBus bus = PciBus::scan(kFixtures + "/hybrid-laptop");
    const auto display = bus.displayDevices();
    ASSERT_EQ(display.size(), 2u);
    EXPECT_EQ(display[0]->address, at("0000:00:02.0"));
    EXPECT_TRUE(display[0]->bootVga);
    EXPECT_EQ(display[0]->driver, "i915");
    EXPECT_EQ(display[1]->address, at("0000:01:00.0"));
    EXPECT_EQ(display[1]->pciClass, 0x038000u);
    EXPECT_TRUE(display[1]->asleep());
    EXPECT_FALSE(bus.mayTouch(display[1]->address));
    EXPECT_TRUE(bus.mayTouch(display[0]->address));
    EXPECT_TRUE(bus.mayTouch(at("0000:7f:00.0")));  // not on this bus: nothing says it sleeps
}

// Cards on two PCI domains share bus numbers; they are two devices all the same.
TEST(PciBus, DevicesOnOtherDomainsAreDevicesOfTheirOwn) {
    SysfsTree tree;
    tree.addDevice(SysfsTree::gpu("0000:03:00.0", 0x1002, 0x73BF, "amdgpu"));
    tree.addDevice(SysfsTree::gpu("0001:03:00.0", 0x1002, 0x73BF, "amdgpu"));
    const PciBus bus = PciBus::scan(tree.root());
    ASSERT_EQ(bus.devices().size(), 2u);
    EXPECT_EQ(bus.devices()[1].address.domain, 1u);
    EXPECT_EQ(bus.devices()[0].address.bus, bus.devices()[1].address.bus);
    EXPECT_NE(bus.find(at("0001:03:00.0")), bus.find(at("0000:03:00.0")));
}

TEST(PciBus, TheRuntimeStateIsReadAgainWhenAskedWhetherADeviceMayBeTouched) {
    SysfsTree tree;
    const std::string dir = tree.addDevice(SysfsTree::gpu("0000:01:00.0", 0x10DE, 0x2204, "nvidia"));
    const PciBus bus = PciBus::scan(tree.root());
    EXPECT_TRUE(bus.mayTouch(at("0000:01:00.0")));
    tree.write(dir + "/power/runtime_status", "suspended\n");
    EXPECT_FALSE(bus.mayTouch(at("0000:01:00.0")));
    tree.write(dir + "/power/runtime_status", "suspending\n");
    EXPECT_FALSE(bus.mayTouch(at("0000:01:00.0")));
    tree.write(dir + "/power/runtime_status", "unsupported\n");
    EXPECT_TRUE(bus.mayTouch(at("0000:01:00.0")));
}

// Names that are not PCI addresses, entries whose device is gone and garbage ids leave no record or zeros,
// never a made-up number.
TEST(PciBus, StrangeEntriesAreSkippedAndGarbageIdsReadZero) {
    SysfsTree tree;
    const std::string dir = tree.addDevice(SysfsTree::gpu("0000:02:00.0", 0x8086, 0x56A0, "i915"));
    tree.write(dir + "/vendor", "0x18086\n");
    tree.write(dir + "/device", "Arc\n");
    tree.write("/sys/bus/pci/devices/not-an-address/vendor", "0x10de\n");
    tree.write("/sys/bus/pci/devices/0000:05:00.0", "a file, not a device directory\n");
    const PciBus bus = PciBus::scan(tree.root());
    ASSERT_EQ(bus.devices().size(), 1u);
    EXPECT_EQ(bus.devices()[0].ids.vendor, 0u);
    EXPECT_EQ(bus.devices()[0].ids.device, 0u);
    EXPECT_EQ(bus.devices()[0].driver, "i915");
    EXPECT_TRUE(PciBus::scan(tree.root() + "/no-such-root").devices().empty());
}

// A FIFO where a value file should be used to block the scan and every live read on open() or read().
TEST(SysfsFiles, AFifoInPlaceOfAValueFileIsNoValueAndNeverBlocks) {
    alarm(30);  // a hang fails the test instead of stalling the run
    SysfsTree tree;
    const std::string dir = tree.addDevice(SysfsTree::gpu("0000:01:00.0", 0x1002, 0x73BF, "amdgpu"));
    for (const char* file : {"/vendor", "/class", "/uevent", "/power/runtime_status", "/boot_vga",
                             "/mem_info_vram_total", "/vbios_version"})
        tree.makeFifo(dir + file);
    tree.makeFifo("/proc/sys/kernel/osrelease");

    EXPECT_FALSE(readSmallFile(tree.root() + dir + "/vendor"));
    const PciBus bus = PciBus::scan(tree.root());
    ASSERT_EQ(bus.devices().size(), 1u);
    const PciDevice& device = bus.devices()[0];
    EXPECT_EQ(device.ids.vendor, 0u);
    EXPECT_EQ(device.pciClass, 0u);
    EXPECT_EQ(device.driver, "amdgpu");  // the link still names it
    EXPECT_TRUE(bus.mayTouch(device.address));
    const SysfsDriverFacts facts = readDriverFacts(tree.root(), device);
    EXPECT_EQ(facts.vramBytes, 0u);
    EXPECT_EQ(facts.kernelRelease, "");
    alarm(0);
}

TEST(SysfsFiles, DirectoriesAreNoValuesAndBigFilesAreCut) {
    SysfsTree tree;
    tree.write("/proc/cpuinfo", std::string(kSmallFileLimit + 5000, 'x'));
    EXPECT_EQ(readSmallFile(tree.root() + "/proc/cpuinfo")->size(), kSmallFileLimit);
    EXPECT_FALSE(readSmallFile(tree.root() + "/proc"));
    EXPECT_FALSE(readFirstLine(tree.root() + "/proc/missing"));
}

TEST(DriverFacts, ASleepingDevicesAttributesStayUnreadAndNonsenseSizesAreNoSize) {
    SysfsTree tree;
    const std::string awake = tree.addDevice(SysfsTree::gpu("0000:03:00.0", 0x1002, 0x73BF, "amdgpu"));
    const std::string asleep =
        tree.addDevice(SysfsTree::gpu("0000:04:00.0", 0x1002, 0x73BF, "amdgpu", "suspended"));
    for (const std::string& dir : {awake, asleep}) {
        tree.write(dir + "/vbios_version", "113-D4120100-100\n");
        tree.write(dir + "/mem_info_vram_total", "17163091968\n");
    }
    tree.write("/sys/module/amdgpu/version", "6.8.5\n");
    const PciBus bus = PciBus::scan(tree.root());
    const SysfsDriverFacts woken = readDriverFacts(tree.root(), *bus.find(at("0000:03:00.0")));
    EXPECT_EQ(woken.vbiosVersion, "113-D4120100-100");
    EXPECT_EQ(woken.vramBytes, 17163091968u);
    EXPECT_EQ(woken.moduleVersion, "6.8.5");
    const SysfsDriverFacts sleeping = readDriverFacts(tree.root(), *bus.find(at("0000:04:00.0")));
    EXPECT_TRUE(sleeping.suspended);
    EXPECT_EQ(sleeping.vbiosVersion, "");
    EXPECT_EQ(sleeping.vramBytes, 0u);
    EXPECT_EQ(sleeping.moduleVersion, "6.8.5");  // the module tree is not the device

    for (const char* nonsense : {"-1\n", "18446744073709551615\n", "lots\n"}) {
        tree.write(awake + "/mem_info_vram_total", nonsense);
        EXPECT_EQ(readDriverFacts(tree.root(), *bus.find(at("0000:03:00.0"))).vramBytes, 0u) << nonsense;
    }
}

}  // namespace
