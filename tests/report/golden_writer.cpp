// Writes the golden reports of the fixture machines into the folder given as the one argument. Run only
// through tools/regen_report_golden.sh, after a deliberate change of the report's form.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tests/report/rendered_report.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s GOLDEN_DIR\n", argv[0]);
        return 2;
    }
    const std::filesystem::path dir = argv[1];
    std::filesystem::create_directories(dir);
    for (const auto& [stem, snapshot] : goldenMachines()) {
        const RenderedReport r = renderReport(snapshot);
        std::ofstream(dir / (stem + ".txt"), std::ios::binary) << r.text;
        std::ofstream(dir / (stem + ".xml"), std::ios::binary) << r.xml;
        std::ofstream(dir / (stem + ".json"), std::ios::binary) << r.json;
        std::printf("wrote %s.{txt,xml,json}\n", stem.c_str());
    }
    return 0;
}
