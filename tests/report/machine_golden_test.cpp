#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "machine_reports.h"

namespace {

std::string golden(const std::string& name) {
    std::ifstream in(std::filesystem::path(MACHINE_GOLDEN_DIR) / name, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

// Byte for byte, from the sysfs tree to the files: a reader that loses a GPU, a value or a driver row shows
// here. After a deliberate change regenerate with tools/regen_machine_golden.sh and read the diff.
TEST(MachineGolden, EveryFixtureMachineReportsAsItsGoldenFiles) {
    for (const ReportedMachine& machine : reportedMachines()) {
        const RenderedReport r = reportOfMachine(machine.sources);
        const std::string text = golden(machine.stem + ".txt");
        ASSERT_FALSE(text.empty()) << machine.stem << ": golden file missing";
        EXPECT_EQ(r.text, text) << machine.stem << ".txt";
        EXPECT_EQ(r.xml, golden(machine.stem + ".xml")) << machine.stem << ".xml";
        EXPECT_EQ(r.json, golden(machine.stem + ".json")) << machine.stem << ".json";
    }
}

// Reporting a machine twice in one process gives the same files: nothing of the first start-up (the AMD
// adapter filter's cards, the NVIDIA driver's state) leaks into the second.
TEST(MachineGolden, ASecondReportOfTheSameMachineIsIdentical) {
    for (const ReportedMachine& machine : reportedMachines()) {
        const RenderedReport first = reportOfMachine(machine.sources);
        const RenderedReport second = reportOfMachine(machine.sources);
        EXPECT_EQ(first.text, second.text) << machine.stem;
        EXPECT_EQ(first.json, second.json) << machine.stem;
    }
}

}  // namespace
