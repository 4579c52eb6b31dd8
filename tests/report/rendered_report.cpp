#include "tests/report/rendered_report.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "report/json_report.h"
#include "report/report_generator.h"
#include "tests/report/report_fixtures.h"

namespace {

std::string readWhole(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

}  // namespace

RenderedReport renderReport(const report::ReportSnapshot& snapshot) {
    report::ReportBuffers buffers;
    report::generateReport(buffers, snapshot);

    const std::filesystem::path dir = std::filesystem::temp_directory_path() /
                                      ("report_render_" + std::to_string(getpid()));
    std::filesystem::create_directories(dir);
    report::writeTextReport(buffers, (dir / "report.txt").c_str());
    report::writeXmlReport(buffers, snapshot, (dir / "report.xml").c_str());
    report::writeJsonReport(snapshot, (dir / "report.json").c_str());
    RenderedReport r{buffers.displayText, readWhole(dir / "report.txt"), readWhole(dir / "report.xml"),
                     readWhole(dir / "report.json")};
    std::filesystem::remove_all(dir);
    return r;
}

std::vector<std::pair<std::string, report::ReportSnapshot>> goldenMachines() {
    return {{"nvidia", report_fixtures::nvidiaMachine()},
            {"amd_without_catalyst", report_fixtures::amdMachineWithoutCatalyst()},
            {"no_driver", report_fixtures::noDriverMachine()},
            {"intel_software", report_fixtures::intelSoftwareMachine()}};
}
