#include "app/batch_reports.h"

#include <cstdio>
#include <system_error>

#include "app/app_state.h"
#include "report/json_report.h"
#include "report/report_generator.h"
#include "report/report_snapshot_from_facade.h"
#include "base/version.h"

namespace {

// The one line a script sees when a report is missing; the exit status stays 0 whatever happened.
void tellWriteFailure(const char* path, int error) {
    std::fprintf(stderr, "%s: could not write %s: %s\n", lumenscope::kDisplayName, path,
                 std::system_category().message(error).c_str());
}

}  // namespace

report::ReportSnapshot batchReportSnapshot(const AppState& state, Kalidornm::Kalidor& library) {
    report::ReportSnapshot snapshot;
    report::fillReportSnapshot(snapshot, library);
    // The tools panel never exists in a batch run, so its link tables are never chosen.
    snapshot.links.reset();
    snapshot.system.cpuSpeedMhz = state.cpuSpeedMhz;
    snapshot.system.physxVersion = state.physxVersion;
    snapshot.system.osIsVista = state.osIsVista;
    return snapshot;
}

void writeBatchReports(AppState& state, Kalidornm::Kalidor& library) {
    const report::ReportSnapshot snapshot = batchReportSnapshot(state, library);
    int error = 0;
    if (state.exportXmlReport) {
        report::generateReport(state.report, snapshot);
        if (!report::writeXmlReport(state.report, snapshot, kXmlReportFile, &error))
            tellWriteFailure(kXmlReportFile, error);
    }
    if (state.exportTxtReport) {
        report::generateReport(state.report, snapshot);
        if (!report::writeTextReport(state.report, kTextReportFile, &error)) tellWriteFailure(kTextReportFile, error);
    }
    if (state.exportJsonReport && !report::writeJsonReport(snapshot, kJsonReportFile, &error))
        tellWriteFailure(kJsonReportFile, error);
}
