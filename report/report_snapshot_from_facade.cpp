#include "report/report_snapshot_from_facade.h"

#include "base/version.h"
#include "kalidor/kalidor.h"

namespace report {

namespace {

constexpr const char* kHomePage = "https://lumenscope.example.org/";
constexpr uint32_t kVendorIntel = 0x8086;

}  // namespace

void fillSnapshotWithoutLibrary(ReportSnapshot& s) {
    s.programName = lumenscope::kDisplayName;
    s.programVersion = lumenscope::kVersionText;
    s.homePage = kHomePage;
    fillComputeSnapshot(s);
}

void fillReportSnapshot(ReportSnapshot& s, Kalidornm::Kalidor& k) {
    fillSnapshotWithoutLibrary(s);
    k.refreshLiveSample();
    const Kalidornm::MachineSnapshot& m = k.snapshot();
    s.system = m.system;
    s.hasDisplayDevice = m.hasDisplayDevice;
    s.primaryDisplayDeviceString = m.primary.displayDeviceString;
    s.displayMode = m.displayMode;
    s.primaryIsNvidia = m.primary.vendorKind == Kalidornm::kPrimaryVendorNvidia;
    s.driver.primaryDriverVersion = m.primary.driverVersion;
    s.driver.primaryDriverText = m.primary.driverText;
    s.driver.nvDriverVersionNumber = m.driver.nvDriverVersionNumber;
    s.driver.nvDriverBranch = m.driver.nvDriverBranch;
    s.gpus = m.gpus;
    // An Intel GPU first in the list is the primary device, whose BIOS and video memory the summary holds.
    if (!s.gpus.empty() && s.gpus[0].hasPciIds && s.gpus[0].vendorId == kVendorIntel) {
        s.gpus[0].biosVersion = m.primary.biosVersion;
        s.gpus[0].memorySizeMb = m.primary.videoMemoryMb;
    }
    s.gl = m.gl;
    // The Linux NVIDIA driver has no legacy control panel to read: the block stays absent and the Misc.
    // section leaves it out.
}

}  // namespace report
