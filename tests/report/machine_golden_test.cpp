#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <cstdlib>
#include <nlohmann/json.hpp>
#include <sstream>

#include "tests/report/machine_reports.h"

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

// The whole road from a broken NVIDIA driver to the three files, in every way the fake driver can break (and
// under AddressSanitizer and UBSan in the sanitizer build): the card keeps its record, the JSON parses, the
// text names the card, and nothing the driver wrote past its buffers or in its texts crashes a report.
TEST(MachineReports, EveryWayTheNvidiaDriverBreaksStillGivesThreeWholeReports) {
    const std::vector<ReportedMachine> machines = reportedMachines();
    const auto nvidia = std::find_if(machines.begin(), machines.end(),
                                     [](const ReportedMachine& m) { return m.stem == "nvidia_desktop"; });
    ASSERT_NE(nvidia, machines.end());
    for (const char* fault : {"errors", "zero_count", "huge_count", "unterminated", "long_strings", "special_chars",
                              "huge_values"}) {
        setenv("FAKE_NVML_FAULT", fault, 1);
        const RenderedReport r = reportOfMachine(nvidia->sources);
        const nlohmann::json json = nlohmann::json::parse(r.json, nullptr, false);
        ASSERT_FALSE(json.is_discarded()) << fault;
        EXPECT_NE(r.text.find("Num GPUs: 1"), std::string::npos) << fault;
        EXPECT_NE(r.xml.find("</lumen_scope>"), std::string::npos) << fault;
        EXPECT_EQ(r.text.find("-1MHz"), std::string::npos) << fault;
        EXPECT_EQ(r.text.find("4294967295MHz"), std::string::npos) << fault;
    }
    unsetenv("FAKE_NVML_FAULT");
}

}  // namespace
