#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <utility>

#include "support/fixture_library.h"
#include "support/sysfs_tree.h"

namespace {

using namespace Kalidornm;

// One awake amdgpu card with a render node, in the tree and under /dev/dri.
struct AmdCardWithRenderNode {
    SysfsTree tree;
    std::string dir;
    explicit AmdCardWithRenderNode(const char* runtimeStatus = "active") {
        SysfsTree::Device card = SysfsTree::gpu("0000:03:00.0", 0x1002, 0x73BF, "amdgpu", runtimeStatus);
        card.drmCard = "card0";
        card.renderNode = "renderD128";
        dir = tree.addDevice(card);
        tree.write("/dev/dri/renderD128", "");
    }
};

std::string memoryTypeWith(const AmdCardWithRenderNode& machine, const char* vramType) {
    ::setenv("FAKE_AMDGPU_VRAM_TYPE", vramType, 1);
    FixtureLibrary started({machine.tree.root(), ""});
    ::unsetenv("FAKE_AMDGPU_VRAM_TYPE");
    const char* type = started.library().getGpuMemoryType(0);
    return type ? type : "(no record)";
}

// The "Memory type" row used never to appear: the kernel driver's device info names it now, and a type the
// program does not know leaves the row out as before.
TEST(AmdMemoryType, TheAmdgpuDriverNamesItAndUnknownTypesLeaveItOut) {
    AmdCardWithRenderNode machine;
    for (const auto& [number, name] : {std::pair{"5", "GDDR5"}, {"6", "HBM"}, {"9", "GDDR6"}, {"16", "GDDR7"},
                                       {"0", ""}, {"99", ""}, {"0xFFFFFFFF", ""}})
        EXPECT_EQ(memoryTypeWith(machine, number), name) << number;
}

TEST(AmdMemoryType, ASleepingCardIsNotAskedAndACardWithoutNodeHasNone) {
    const std::string log = ::testing::TempDir() + "amdgpu_calls_" + std::to_string(::getpid());
    std::remove(log.c_str());
    ::setenv("FAKE_AMDGPU_CALL_LOG", log.c_str(), 1);
    {
        AmdCardWithRenderNode sleeping("suspended");
        EXPECT_EQ(memoryTypeWith(sleeping, "9"), "");
        EXPECT_FALSE(std::ifstream(log).good());  // opening its node would have woken it
    }
    AmdCardWithRenderNode withoutNode;
    std::remove((withoutNode.tree.root() + "/dev/dri/renderD128").c_str());
    EXPECT_EQ(memoryTypeWith(withoutNode, "9"), "");
    ::unsetenv("FAKE_AMDGPU_CALL_LOG");
    std::remove(log.c_str());
}

}  // namespace
