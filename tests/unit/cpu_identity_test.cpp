#include <gtest/gtest.h>

#include <cstring>
#include <map>

#include "kalidor/cpu_os_info.h"
#include "kalidor/platform/proc_system.h"

namespace {

using namespace Kalidornm;

// A processor described by its CPUID answers; leaves it lacks answer zeros, as real parts do past their
// highest leaf.
struct FakeCpu {
    std::map<uint32_t, CpuidRegs> leaves;

    FakeCpu(const char* vendor, uint32_t maxStandard, uint32_t maxExtended) {
        CpuidRegs leaf0{maxStandard, 0, 0, 0};
        std::memcpy(&leaf0.ebx, vendor, 4);
        std::memcpy(&leaf0.edx, vendor + 4, 4);
        std::memcpy(&leaf0.ecx, vendor + 8, 4);
        leaves[0] = leaf0;
        leaves[0x80000000u] = CpuidRegs{maxExtended, 0, 0, 0};
    }
    CpuidFunction function() const {
        return [this](uint32_t leaf, uint32_t, CpuidRegs* regs) {
            const auto it = leaves.find(leaf);
            *regs = it == leaves.end() ? CpuidRegs{} : it->second;
            return true;
        };
    }
};

constexpr uint32_t kHtt = 1u << 28, kMmx = 1u << 23, kSse = 1u << 25, kSse2 = 1u << 26;

TEST(CpuIdentity, NetBurstWithHyperThreadingKeepsOneCoreAndTheFlag) {
    FakeCpu p4("GenuineIntel", 2, 0x80000004u);
    p4.leaves[1] = CpuidRegs{0x00000F29, 2u << 16, 0, kHtt | kMmx | kSse | kSse2};
    CpuOsInfo info;
    ASSERT_TRUE(applyCpuid(info, p4.function()));
    EXPECT_EQ(info.cpuFamily, 15);
    EXPECT_EQ(info.cpuModel, 2);
    EXPECT_EQ(info.cpuStepping, 9);
    EXPECT_EQ(info.physicalCores, 1);
    EXPECT_TRUE(info.cpuFeatures[7]);
    EXPECT_TRUE(info.cpuFeatures[0] && info.cpuFeatures[2] && info.cpuFeatures[3]);
    EXPECT_FALSE(info.cpuFeatures[1] || info.cpuFeatures[4] || info.cpuFeatures[6]);
}

TEST(CpuIdentity, IntelCountsCoresByLeaf4AndTakesTheExtendedFieldsFromLeaf1) {
    // Family 6, extended model 9, model 14: a Coffee Lake part with 8 cores.
    FakeCpu coffee("GenuineIntel", 0x16, 0x80000008u);
    coffee.leaves[1] = CpuidRegs{0x000906EC, 16u << 16, 0x1 | 0x40, kHtt};
    coffee.leaves[4] = CpuidRegs{7u << 26, 0, 0, 0};
    coffee.leaves[0x80000001u] = CpuidRegs{0x0F0F0F0F, 0, 0, 0};
    CpuOsInfo info;
    ASSERT_TRUE(applyCpuid(info, coffee.function()));
    EXPECT_EQ(info.physicalCores, 8);
    EXPECT_EQ(info.cpuExtModel, 9);
    EXPECT_EQ(info.cpuExtFamily, 0);
    EXPECT_EQ(info.cpuExtStepping, 0);
    EXPECT_TRUE(info.cpuFeatures[4] && info.cpuFeatures[5]);
    EXPECT_FALSE(info.cpuFeatures[7]);

    // Two cores set the dual-core flag.
    coffee.leaves[4] = CpuidRegs{1u << 26, 0, 0, 0};
    ASSERT_TRUE(applyCpuid(info, coffee.function()));
    EXPECT_EQ(info.physicalCores, 2);
    EXPECT_TRUE(info.cpuFeatures[6]);
}

TEST(CpuIdentity, AmdCountsCoresByLeaf80000008AndTakesTheExtendedFieldsFromIt) {
    // An EPYC of family 0xF + 0xA = 25, model 0x11, stepping 1.
    FakeCpu epyc("AuthenticAMD", 0x10, 0x80000008u);
    epyc.leaves[1] = CpuidRegs{0x00A10F11, 0, 0, kHtt};
    epyc.leaves[0x80000001u] = CpuidRegs{0x00A10F11, 0, 0, 0};
    epyc.leaves[0x80000008u] = CpuidRegs{0, 0, 1, 0};
    CpuOsInfo info;
    ASSERT_TRUE(applyCpuid(info, epyc.function()));
    EXPECT_EQ(info.cpuFamily, 15);
    EXPECT_EQ(info.cpuExtFamily, 10);
    EXPECT_EQ(info.cpuModel, 1);
    EXPECT_EQ(info.cpuExtModel, 1);
    EXPECT_EQ(info.cpuStepping, 1);
    EXPECT_EQ(info.cpuExtStepping, 1);
    EXPECT_EQ(info.physicalCores, 2);
}

TEST(CpuIdentity, WithoutLeaf4OrCpuidTheDefaultsStay) {
    FakeCpu old("GenuineIntel", 2, 0x80000000u);
    old.leaves[1] = CpuidRegs{0x00000686, 0, 0, kMmx};
    CpuOsInfo info;
    ASSERT_TRUE(applyCpuid(info, old.function()));
    EXPECT_EQ(info.physicalCores, 1);
    EXPECT_EQ(info.cpuExtFamily, 0);

    CpuOsInfo untouched;
    untouched.physicalCores = 5;
    EXPECT_FALSE(applyCpuid(untouched, [](uint32_t, uint32_t, CpuidRegs*) { return false; }));
    EXPECT_EQ(untouched.physicalCores, 5);
}

TEST(OsTexts, DescriptionCarriesTheDistributionWidthAndKernel) {
    CpuOsInfo info;
    setLinuxOsTexts(info, "Debian GNU/Linux 12 (bookworm)", "6.1.0-18-amd64", "x86_64");
    EXPECT_STREQ(info.osDescription, "Debian GNU/Linux 12 (bookworm) 64-bit - kernel 6.1.0-18-amd64");
    EXPECT_STREQ(info.osShortName, "Linux 64-bit");
    setLinuxOsTexts(info, "", "5.10.0", "armv7l");
    EXPECT_STREQ(info.osDescription, "Linux 32-bit - kernel 5.10.0");
    EXPECT_STREQ(info.osShortName, "Linux 32-bit");
}

TEST(OsTexts, CpuListsCountEveryProcessorOfEveryRange) {
    EXPECT_EQ(countCpuList("0-7"), 8);
    EXPECT_EQ(countCpuList("0-3,6-7"), 6);
    EXPECT_EQ(countCpuList("0,2,4\n"), 3);
    EXPECT_EQ(countCpuList(""), 0);
}

}  // namespace
