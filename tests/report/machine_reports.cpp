#include "tests/report/machine_reports.h"

#include <cstdlib>

#include "kalidor/library_globals.h"
#include "report/report_snapshot_from_facade.h"

namespace {

std::string nvmlSettings(const char* machine) { return std::string(NVML_FIXTURES) + "/" + machine + ".conf"; }

}  // namespace

std::vector<ReportedMachine> reportedMachines() {
    return {
        {"nvidia_desktop", {"nvidia-desktop", nvmlSettings("nvidia-desktop")}},
        {"amd_rx6800", {"amdgpu-rx6800", ""}},
        {"amd_rx7900xtx", {"amdgpu-rx7900xtx", ""}},
        {"amd_rx9070xt", {"amdgpu-rx9070xt", ""}},
        {"amd_apu_vangogh", {"amdgpu-apu-vangogh", ""}},
        {"amd_radeon_hd7850", {"radeon-hd7850", ""}},
        {"amd_rx580_deep_sleep", {"amdgpu-rx580-deep-sleep", ""}},
        {"hybrid_laptop", {"hybrid-laptop", ""}},
        {"nvidia_optimus_asleep", {"nvidia-optimus", nvmlSettings("nvidia-optimus")}},
        {"no_gpu", {"nothing", ""}},
    };
}

RenderedReport reportOfMachine(const FixtureMachineSources& sources) {
    unsetenv("DISPLAY");  // no display server: the mode is pinned below
    FixtureLibrary started(sources);
    Kalidornm::Kalidor& library = started.library();
    if (Kalidornm::HardwareCaps* caps = library.caps()) caps->cpuOs.cpuSpeedMhz = 3600;
    report::ReportSnapshot snapshot;
    report::fillReportSnapshot(snapshot, library);
    snapshot.system.cpuFamily = 6;
    snapshot.system.cpuModel = 158;
    snapshot.system.cpuStepping = 10;
    snapshot.displayMode = {1920, 1080, 60, 24};
    return renderReport(snapshot);
}
