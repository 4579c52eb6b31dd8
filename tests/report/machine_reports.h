#pragma once

#include <string>
#include <vector>

#include "tests/report/rendered_report.h"
#include "support/fixture_library.h"

// Fixture machines reported end to end: the sysfs tree (and the fake management library where a machine has
// an NVIDIA driver) through the hardware library's facade into the three report files.
struct ReportedMachine {
    std::string stem;  // name of the golden files
    FixtureMachineSources sources;
};

std::vector<ReportedMachine> reportedMachines();

// The machine's reports. What the build machine itself would lend (CPU identity and speed, display mode) is
// pinned, so that the files depend on the fixture alone.
RenderedReport reportOfMachine(const FixtureMachineSources& sources);
