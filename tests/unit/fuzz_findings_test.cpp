// Faults the fuzz targets found, each kept as the smallest input that showed it.
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <string>

#include "kalidor/platform/proc_system.h"
#include "kalidor/platform/pci_names.h"

namespace {

using namespace Kalidornm;

// Two halves of the int range summed past it (undefined behaviour, a negative processor count in the report);
// a lone negative number counted as the range from -5 to 5.
TEST(CpuList, HugeOrNegativeRangesCountAsUnreadInsteadOfOverflowing) {
    EXPECT_EQ(countCpuList("0-1073741823,0-1073741823"), 0);
    EXPECT_EQ(countCpuList("0-4294967296"), 0);
    EXPECT_EQ(countCpuList("-5"), 0);
    EXPECT_EQ(countCpuList("0-8191"), 8192);
    EXPECT_EQ(countCpuList("0-3,8,10-11"), 7);
}

class DamagedIdList : public ::testing::Test {
protected:
    std::string write(const std::string& text) {
        m_path = ::testing::TempDir() + "damaged_pci_ids_" + std::to_string(getpid());
        std::ofstream(m_path) << text;
        return m_path;
    }
    void TearDown() override {
        if (!m_path.empty()) unlink(m_path.c_str());
    }

private:
    std::string m_path;
};

// libpci gives up on a damaged list through its error hook, which must not return; ours returned, which
// clang refuses to build. The lookup now comes back from libpci and names what the list held before the damage.
TEST_F(DamagedIdList, NamesWhatTheListHeldBeforeTheDamage) {
    const std::string list = write("10de  NVIDIA Corporation\n\t2484  GA104 [GeForce RTX 3070]\nzz\n");
    EXPECT_EQ(pciDeviceName(list, 0x10DE, 0x2484), "NVIDIA Corporation GA104 [GeForce RTX 3070]");
}

TEST_F(DamagedIdList, DamageOnTheFirstLineLeavesTheNumbers) {
    const std::string list = write("zz\n10de  NVIDIA Corporation\n");
    const std::string name = pciDeviceName(list, 0x10DE, 0x2484);
    EXPECT_NE(name.find("10de"), std::string::npos) << name;
    EXPECT_NE(name.find("2484"), std::string::npos) << name;
}

}  // namespace
