// Writes the golden reports of the fixture machines into the folder given as the one argument. Run only
// through tools/regen_machine_golden.sh, after a deliberate change.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tests/report/machine_reports.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s GOLDEN_DIR\n", argv[0]);
        return 2;
    }
    const std::filesystem::path dir = argv[1];
    std::filesystem::create_directories(dir);
    for (const ReportedMachine& machine : reportedMachines()) {
        const RenderedReport r = reportOfMachine(machine.sources);
        std::ofstream(dir / (machine.stem + ".txt"), std::ios::binary) << r.text;
        std::ofstream(dir / (machine.stem + ".xml"), std::ios::binary) << r.xml;
        std::ofstream(dir / (machine.stem + ".json"), std::ios::binary) << r.json;
        std::printf("wrote %s.{txt,xml,json}\n", machine.stem.c_str());
    }
    return 0;
}
