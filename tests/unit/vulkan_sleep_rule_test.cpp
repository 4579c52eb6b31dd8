#include <gtest/gtest.h>
#include <cstdlib>
#include <string>
#include <vector>

#include "fakes/vulkan/fake_vulkan_values.h"
#include "support/call_log_file.h"
#include "support/fixture_library.h"
#include "support/open_watch.h"
#include "support/sysfs_tree.h"
#include "unit/compute_test_log.h"
#include "vulkan/vulkan_discovery.h"
#include "vulkan/vulkan_sleep_filter.h"

// Vulkan enumeration must not wake a sleeping GPU: its vendor's drivers are left out through the loader's
// filter before the instance is made, or discovery does not run at all.
namespace {

using namespace vulkan;
namespace fv = fake_vulkan;

Kalidornm::GpuSnapshot gpu(uint32_t vendor, const char* address, bool asleep) {
    Kalidornm::GpuSnapshot g;
    g.vendorId = vendor;
    g.pciAddress = address;
    g.live.suspended = asleep;
    return g;
}

Kalidornm::MachineSnapshot machineOf(std::vector<Kalidornm::GpuSnapshot> gpus) {
    Kalidornm::MachineSnapshot m;
    m.gpus = std::move(gpus);
    return m;
}

TEST(VulkanSleepFilter, LeavesOutTheSleepingVendorsDriversOrSkipsWhereThatWouldHideAnAwakeGpu) {
    // Nobody sleeps: only the drivers of the vendors without a GPU here are left out.
    DriverFilterDecision d = decideDriverFilter(machineOf({gpu(0x8086, "0000:00:02.0", false)}));
    EXPECT_EQ(d.sleeping, "");
    EXPECT_EQ(d.absent, "*radeon*,*amd*,*nvidia*,*nouveau*,*virtio*");
    EXPECT_FALSE(d.skipReason);
    // A scan that listed nothing leaves every driver in.
    EXPECT_EQ(decideDriverFilter(machineOf({})).disable(), "");
    // A sleeping AMD and NVIDIA GPU beside an awake Intel one: both vendors' drivers, once each.
    d = decideDriverFilter(machineOf({gpu(0x8086, "0000:00:02.0", false), gpu(0x1002, "0000:01:00.0", true),
                                      gpu(0x10DE, "0000:02:00.0", true), gpu(0x10DE, "0000:03:00.0", true)}));
    EXPECT_EQ(d.sleeping, "*radeon*,*amd*,*nvidia*,*nouveau*");
    EXPECT_EQ(d.disable(), "*radeon*,*amd*,*nvidia*,*nouveau*,*virtio*");
    EXPECT_FALSE(d.skipReason);
    // Two NVIDIA GPUs, one awake: the filter would hide it too.
    d = decideDriverFilter(machineOf({gpu(0x10DE, "0000:01:00.0", false), gpu(0x10DE, "0000:02:00.0", true)}));
    ASSERT_TRUE(d.skipReason);
    EXPECT_NE(d.skipReason->find("0000:02:00.0 sleeps"), std::string::npos) << *d.skipReason;
    EXPECT_NE(d.skipReason->find("awake GPU at 0000:01:00.0"), std::string::npos) << *d.skipReason;
    // A vendor whose driver names are not known.
    d = decideDriverFilter(machineOf({gpu(0x1A03, "0000:05:00.0", true)}));
    ASSERT_TRUE(d.skipReason);
    EXPECT_NE(d.skipReason->find("0x1A03"), std::string::npos) << *d.skipReason;

    EXPECT_EQ(combinedFilter(nullptr, "*amd*"), "*amd*");
    EXPECT_EQ(combinedFilter("", "*amd*"), "*amd*");
    EXPECT_EQ(combinedFilter("*lvp*", "*amd*"), "*lvp*,*amd*");
    EXPECT_EQ(combinedFilter("*lvp*", ""), "*lvp*");
}

// What the fake loader saw at vkCreateInstance, one line per call; the driver filter starts and ends unset.
class CreateLog {
public:
    CreateLog() { ::unsetenv(kDriverFilterVariable); }
    ~CreateLog() { ::unsetenv(kDriverFilterVariable); }
    std::vector<std::string> lines() const { return m_file.lines(); }

private:
    CallLogFile m_file{fv::kCallLogVariable, "vulkan_calls"};
};

// The hybrid laptop: an awake Intel GPU and a sleeping AMD one. The AMD drivers are filtered out before the
// instance is made, and nothing of the sleeping GPU's folder is opened by the view or the discovery.
TEST(VulkanSleepRule, OnTheHybridLaptopTheSleepingGpusDriversAreLeftOutAndItsFilesUnopened) {
    const std::string sleeping =
        std::string(SYSFS_FIXTURES) + "/hybrid-laptop/sys/devices/pci0000:00/0000:00:01.0/0000:01:00.0";
    CreateLog creates;
    TestLog log;
    {
        FixtureLibrary started({"hybrid-laptop", ""});
        Kalidornm::Kalidor& library = started.library();
        ASSERT_EQ(library.getGpuCount(), 2u);
        OpenWatch watch;
        ASSERT_TRUE(watch.watch(sleeping));
        ASSERT_TRUE(watch.watch(sleeping + "/power"));
        const Kalidornm::MachineSnapshot view = sleepView(library);
        discoverVulkan(view, log.log(), FAKE_VULKAN_LIBRARY);
        // Only the power state, which is how the library knows the GPU sleeps.
        for (const std::string& name : watch.opened()) EXPECT_EQ(name, "runtime_status");
    }
    EXPECT_EQ(vulkanInfo().status, VulkanStatus::Read);
    EXPECT_EQ(creates.lines(), std::vector<std::string>{
                                   "vkCreateInstance *radeon*,*amd*,*nvidia*,*nouveau*,*virtio* layers ~implicit~"});
    EXPECT_EQ(std::getenv("VK_LOADER_LAYERS_DISABLE"), nullptr);  // only while the instance is made
    ASSERT_GE(log.messages().size(), 2u);
    EXPECT_EQ(log.messages()[0], "Vulkan: drivers of sleeping GPUs left out: *radeon*,*amd*");
    EXPECT_EQ(log.messages()[1],
              "Vulkan: drivers of vendors without a GPU here left out: *nvidia*,*nouveau*,*virtio*");
    freeVulkanInfo();
}

// A laptop whose two discrete GPUs both sleep, an NVIDIA and an AMD one, beside an awake Intel GPU: both
// vendors' drivers are left out, and neither sleeping GPU's folder is opened but for its power state.
TEST(VulkanSleepRule, ASleepingNvidiaAndASleepingAmdGpuAreBothLeftOutAndNeitherIsOpened) {
    SysfsTree tree;
    SysfsTree::Device intel = SysfsTree::gpu("0000:00:02.0", 0x8086, 0x9A49, "i915");
    intel.bootVga = true;
    tree.addDevice(intel);
    const std::string nvidia =
        tree.root() + tree.addDevice(SysfsTree::gpu("0000:01:00.0", 0x10DE, 0x25A2, "nvidia", "suspended"));
    const std::string amd =
        tree.root() + tree.addDevice(SysfsTree::gpu("0000:02:00.0", 0x1002, 0x73BF, "amdgpu", "suspended"));
    CreateLog creates;
    TestLog log;
    {
        FixtureLibrary started({tree.root(), ""});
        OpenWatch watch;
        for (const std::string& folder : {nvidia, amd}) {
            ASSERT_TRUE(watch.watch(folder)) << folder;
            ASSERT_TRUE(watch.watch(folder + "/power")) << folder;
        }
        discoverVulkan(sleepView(started.library()), log.log(), FAKE_VULKAN_LIBRARY);
        for (const std::string& name : watch.opened()) EXPECT_EQ(name, "runtime_status");
    }
    EXPECT_EQ(vulkanInfo().status, VulkanStatus::Read);
    const std::string leftOut = "*nvidia*,*nouveau*,*radeon*,*amd*,*virtio*";
    EXPECT_EQ(creates.lines(), std::vector<std::string>{"vkCreateInstance " + leftOut + " layers ~implicit~"});
    freeVulkanInfo();
}

// Two AMD GPUs, one asleep: no instance is made at all, and the log and the record say why.
TEST(VulkanSleepRule, ASleepingGpuBesideAnAwakeOneOfItsVendorStopsDiscovery) {
    SysfsTree tree;
    tree.addDevice(SysfsTree::gpu("0000:03:00.0", 0x1002, 0x73BF, "amdgpu"));
    tree.addDevice(SysfsTree::gpu("0000:04:00.0", 0x1002, 0x73BF, "amdgpu", "suspended"));
    CreateLog creates;
    TestLog log;
    {
        FixtureLibrary started({tree.root(), ""});
        discoverVulkan(sleepView(started.library()), log.log(), FAKE_VULKAN_LIBRARY);
    }
    EXPECT_TRUE(creates.lines().empty());
    EXPECT_EQ(vulkanInfo().status, VulkanStatus::SkippedForSleepingGpu);
    EXPECT_EQ(log.messages(), std::vector<std::string>{"Vulkan: " + vulkanInfo().statusText});
    EXPECT_NE(vulkanInfo().statusText.find("0000:04:00.0 sleeps"), std::string::npos) << vulkanInfo().statusText;
    EXPECT_EQ(std::getenv(kDriverFilterVariable), nullptr);
    freeVulkanInfo();
}

}  // namespace
