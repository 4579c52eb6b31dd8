#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/report/rendered_report.h"

namespace {

std::string golden(const std::string& name) {
    std::ifstream in(std::filesystem::path(REPORT_GOLDEN_DIR) / name, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

// Byte for byte: a changed tab, line end or condition shows here. After a deliberate change of the form,
// regenerate with tools/regen_report_golden.sh and read the diff.
TEST(ReportGolden, EveryFixtureMachineMatchesItsGoldenTextXmlAndJson) {
    for (const auto& [stem, snapshot] : goldenMachines()) {
        const RenderedReport r = renderReport(snapshot);
        const std::string text = golden(stem + ".txt"), xml = golden(stem + ".xml"), json = golden(stem + ".json");
        ASSERT_FALSE(text.empty()) << stem << ": golden file missing";
        EXPECT_EQ(r.text, text) << stem << ".txt";
        EXPECT_EQ(r.xml, xml) << stem << ".xml";
        EXPECT_EQ(r.json, json) << stem << ".json";
    }
}

}  // namespace
